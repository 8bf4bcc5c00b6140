#include "presentation/NumberText.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(NumberText, RoundsTheBinaryValueHalfToEven) {
    EXPECT_EQ(fixed(0.5, 0), "0");
    EXPECT_EQ(fixed(1.5, 0), "2");
    EXPECT_EQ(fixed(2.5, 0), "2");
    EXPECT_EQ(fixed(0.25, 1), "0.2");
    EXPECT_EQ(fixed(1.005, 2), "1.00");
}

TEST(NumberText, NothingIsNeverNegative) {
    EXPECT_EQ(fixed(-0.0, 0), "0");
    EXPECT_EQ(fixed(-0.04, 1), "0.0");
    EXPECT_EQ(fixed(-0.06, 1), "-0.1");
    EXPECT_EQ(percent(-0.001), "0");
}

TEST(NumberText, WhatIsNoNumberReadsAsThePlaceholder) {
    EXPECT_EQ(fixed(std::nullopt, 1), "–");
    EXPECT_EQ(fixed(infinity, 1), "–");
    EXPECT_EQ(fixed(-infinity, 0), "–");
    EXPECT_EQ(fixed(std::numeric_limits<double>::quiet_NaN(), 0), "–");
    EXPECT_EQ(percent(std::nullopt), "–");
}

TEST(NumberText, TheLargestNumberIsWrittenOut) {
    const std::string digits = fixed(std::numeric_limits<double>::lowest(), 2);
    EXPECT_EQ(digits.size(), 1 + 309 + 3u);
    EXPECT_EQ(digits.substr(0, 6), "-17976");
}

TEST(NumberText, WholeGigabytesRoundHalfAwayFromZero) {
    constexpr std::uint64_t half = 512ull << 20;
    EXPECT_EQ(wholeGibibytes(half), "1");
    EXPECT_EQ(wholeGibibytes(half - 1), "0");
    EXPECT_EQ(wholeGibibytes(5 * half), "3");
    EXPECT_EQ(gibibytes(3 * half), "1.5");
}

TEST(NumberText, ThousandsAreGroupedFromTheRight) {
    EXPECT_EQ(grouped("0", ","), "0");
    EXPECT_EQ(grouped("999", ","), "999");
    EXPECT_EQ(grouped("2350", ","), "2,350");
    EXPECT_EQ(grouped("123456", "."), "123.456");
    EXPECT_EQ(grouped("1234567", "\u202F"), "1\u202F234\u202F567");
    EXPECT_EQ(grouped("-123456", ","), "-123,456");
    EXPECT_EQ(grouped("1234", ""), "1234");
    EXPECT_EQ(grouped("–", ","), "–");
}

} // namespace
} // namespace tavero
