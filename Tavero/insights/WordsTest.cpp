#include "insights/Words.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tavero {
namespace {

using namespace InsightsWords;

TEST(InsightsWords, ADurationBelowAMinuteReadsInRoundedSeconds) {
    EXPECT_EQ(duration(0), "0 s");
    EXPECT_EQ(duration(41.5), "42 s");
    EXPECT_EQ(duration(59.4), "59 s");
}

TEST(InsightsWords, TheTestForAMinuteComesBeforeTheRounding) {
    EXPECT_EQ(duration(59.6), "60 s");
    EXPECT_EQ(duration(60), "1 m");
}

TEST(InsightsWords, ANegativeDurationReadsAsZero) {
    EXPECT_EQ(duration(-0.4), "0 s");
    EXPECT_EQ(duration(-3e300), "0 s");
}

TEST(InsightsWords, MinutesAreTruncatedAndAnHourHasBoth) {
    EXPECT_EQ(duration(3599), "59 m");
    EXPECT_EQ(duration(3600), "1 h 0 m");
    EXPECT_EQ(duration(3660), "1 h 1 m");
    EXPECT_EQ(duration(2.5 * 3600), "2 h 30 m");
}

TEST(InsightsWords, ADurationThatIsNoNumberReadsAsThePlaceholder) {
    EXPECT_EQ(duration(std::nan("")), "–");
    EXPECT_EQ(duration(std::numeric_limits<double>::infinity()), "–");
}

TEST(InsightsWords, EnergyTurnsToKilowattHoursAtAThousandAndRoundsAfterThat) {
    EXPECT_EQ(energy(999.6), (Measure{"1000", "Wh"}));
    EXPECT_EQ(energy(1000.0), (Measure{"1.0", "kWh"}));
    EXPECT_EQ(energy(0), (Measure{"0", "Wh"}));
    EXPECT_EQ(energy(12'340), (Measure{"12.3", "kWh"}));
}

TEST(InsightsWords, UnknownEnergyReadsAsThePlaceholder) {
    EXPECT_EQ(energy(std::nullopt), (Measure{"–", "Wh"}));
    EXPECT_EQ(energy(std::nan("")), (Measure{"–", "Wh"}));
}

TEST(InsightsWords, BytesAreTruncatedAndStayInRange) {
    EXPECT_EQ(wholeBytes(1.99), 1u);
    EXPECT_EQ(wholeBytes(-5), 0u);
    EXPECT_EQ(wholeBytes(std::nan("")), 0u);
    EXPECT_EQ(wholeBytes(1e30), std::numeric_limits<std::uint64_t>::max());
}

TEST(InsightsWords, CountsReadAsAPersonSaysThem) {
    EXPECT_EQ(times(1), "once");
    EXPECT_EQ(times(2), "twice");
    EXPECT_EQ(times(3), "3 times");
}

} // namespace
} // namespace tavero
