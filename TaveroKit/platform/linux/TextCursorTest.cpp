#include "platform/linux/TextCursor.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tavero {
namespace {

TEST(TextCursor, NumbersAndWordsAreTakenInTurn) {
    TextCursor cursor("cpu0  12\t34 name\nnext");
    EXPECT_TRUE(cursor.skip("cpu"));
    EXPECT_EQ(cursor.number(), 0u);
    EXPECT_EQ(cursor.number(), 12u);
    EXPECT_EQ(cursor.number(), 34u);
    EXPECT_EQ(cursor.word(), "name");
    EXPECT_EQ(cursor.word(), "");
    cursor.nextLine();
    EXPECT_EQ(cursor.rest(), "next");
}

TEST(TextCursor, ALineCutShortDoesNotBorrowFromTheNext) {
    TextCursor cursor("1 \n2");
    EXPECT_EQ(cursor.number(), 1u);
    EXPECT_EQ(cursor.number(), std::nullopt);
    EXPECT_EQ(cursor.upTo('2'), "");
    cursor.nextLine();
    EXPECT_EQ(cursor.number(), 2u);
}

TEST(TextCursor, ANumberBeyond64BitsIsTheLargestValue) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(TextCursor("18446744073709551615").number(), most);
    EXPECT_EQ(TextCursor("18446744073709551616").number(), most);
    EXPECT_EQ(TextCursor("99999999999999999999999999").number(), most);
    EXPECT_EQ(TextCursor("18446744073709551614").number(), most - 1);
}

TEST(TextCursor, WhatIsNoNumberIsAbsent) {
    for (const char* text : {"", " ", "x1", "-1", "+1", ".5", "\n1"})
        EXPECT_EQ(TextCursor(text).number(), std::nullopt) << text;
}

TEST(TextCursor, ADecimalMayHaveAFraction) {
    EXPECT_DOUBLE_EQ(TextCursor("2.21 x").decimal().value(), 2.21);
    EXPECT_DOUBLE_EQ(TextCursor("100").decimal().value(), 100);
    EXPECT_DOUBLE_EQ(TextCursor("3.").decimal().value(), 3);
    EXPECT_EQ(TextCursor("nan").decimal(), std::nullopt);
    EXPECT_EQ(TextCursor("inf").decimal(), std::nullopt);
}

TEST(TextCursor, UpToStopsAtItsMark) {
    TextCursor cursor("MemFree: 12 kB\n");
    EXPECT_EQ(cursor.upTo(':'), "MemFree");
    EXPECT_EQ(cursor.number(), 12u);
    EXPECT_EQ(cursor.upTo(':'), "");
    EXPECT_EQ(cursor.word(), "kB");
}

TEST(TextCursor, TheLastLineNeedsNoEnd) {
    TextCursor cursor("a\nb");
    cursor.nextLine();
    EXPECT_FALSE(cursor.atEnd());
    cursor.nextLine();
    EXPECT_TRUE(cursor.atEnd());
    cursor.nextLine();
    EXPECT_TRUE(cursor.atEnd());
}

} // namespace
} // namespace tavero
