#include "history/Calendar.h"

#include "history/WholeSeconds.h"
#include "history/test/TimeZone.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// A moment in UTC.
Date utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0) {
    return std::chrono::sys_days(std::chrono::year(year) / static_cast<int>(month) /
                                 static_cast<int>(day)) +
           std::chrono::hours(hour) + std::chrono::minutes(minute) + std::chrono::seconds(second);
}

Date startOfDay(Date moment) { return Calendar::current().startOfDay(moment); }

// The local day of a moment, as the C library tells it.
std::string localDay(Date moment) {
    const time_t seconds = wholeSeconds(moment);
    tm local = {};
    ::localtime_r(&seconds, &local);
    std::array<char, 32> text = {};
    std::strftime(text.data(), text.size(), "%Y-%m-%d", &local);
    return text.data();
}

TEST(Calendar, ADayBeginsAtLocalMidnight) {
    const TimeZone zone(Zones::berlin);
    EXPECT_EQ(startOfDay(utc(2025, 7, 10, 12)), utc(2025, 7, 9, 22));
    EXPECT_EQ(startOfDay(utc(2025, 7, 9, 22)), utc(2025, 7, 9, 22));
    EXPECT_EQ(startOfDay(utc(2025, 7, 9, 21, 59, 59)), utc(2025, 7, 8, 22));
    EXPECT_EQ(startOfDay(utc(2025, 1, 10, 12)), utc(2025, 1, 9, 23));
}

TEST(Calendar, AFractionOfASecondBelongsToItsSecond) {
    const TimeZone zone(Zones::berlin);
    EXPECT_EQ(startOfDay(utc(2025, 7, 9, 21, 59, 59) + 999ms), utc(2025, 7, 8, 22));
    EXPECT_EQ(startOfDay(utc(2025, 7, 9, 22) + 1ms), utc(2025, 7, 9, 22));
}

TEST(Calendar, OffsetsAreThoseInForceAtTheMoment) {
    const TimeZone zone(Zones::newYork);
    EXPECT_EQ(Calendar::current().secondsFromGMT(utc(2025, 1, 10)), -5 * 3600);
    EXPECT_EQ(Calendar::current().secondsFromGMT(utc(2025, 7, 10)), -4 * 3600);
}

TEST(Calendar, OffsetsMayHaveHalfHours) {
    {
        const TimeZone zone(Zones::kolkata);
        EXPECT_EQ(Calendar::current().secondsFromGMT(utc(2025, 1, 10)), 19800);
        EXPECT_EQ(startOfDay(utc(2025, 1, 10)), utc(2025, 1, 9, 18, 30));
    }
    const TimeZone zone(Zones::lordHowe);
    EXPECT_EQ(Calendar::current().secondsFromGMT(utc(2025, 1, 10)), 39600);
    EXPECT_EQ(Calendar::current().secondsFromGMT(utc(2025, 7, 10)), 37800);
}

TEST(Calendar, ADayOnWhichClocksAreSetForwardBeginsBeforeThat) {
    {
        const TimeZone zone(Zones::berlin);
        EXPECT_EQ(startOfDay(utc(2025, 3, 30, 12)), utc(2025, 3, 29, 23));
        EXPECT_EQ(startOfDay(utc(2025, 3, 31, 12)), utc(2025, 3, 30, 22));
    }
    const TimeZone zone(Zones::sydney);
    EXPECT_EQ(startOfDay(utc(2025, 10, 5, 2)), utc(2025, 10, 4, 14));
    EXPECT_EQ(startOfDay(utc(2025, 10, 6, 2)), utc(2025, 10, 5, 13));
}

TEST(Calendar, ADayOnWhichClocksAreSetBackBeginsBeforeThat) {
    {
        const TimeZone zone(Zones::berlin);
        EXPECT_EQ(startOfDay(utc(2025, 10, 26, 12)), utc(2025, 10, 25, 22));
        EXPECT_EQ(startOfDay(utc(2025, 10, 27, 12)), utc(2025, 10, 26, 23));
    }
    const TimeZone zone(Zones::sydney);
    EXPECT_EQ(startOfDay(utc(2025, 4, 6, 2)), utc(2025, 4, 5, 13));
    EXPECT_EQ(startOfDay(utc(2025, 4, 7, 2)), utc(2025, 4, 6, 14));
}

TEST(Calendar, ADayWithoutAMidnightBeginsAnHourLater) {
    const TimeZone zone(Zones::santiago);
    EXPECT_EQ(startOfDay(utc(2025, 9, 7, 15)), utc(2025, 9, 7, 4)); // 01:00 there
    EXPECT_EQ(startOfDay(utc(2025, 9, 7, 3, 59)), utc(2025, 9, 6, 4));
}

TEST(Calendar, ADayWithTwoMidnightsBeginsAtTheFirst) {
    const TimeZone zone(Zones::havana);
    EXPECT_EQ(startOfDay(utc(2025, 11, 2, 15)), utc(2025, 11, 2, 4));
    EXPECT_EQ(startOfDay(utc(2025, 11, 2, 4, 30)), utc(2025, 11, 2, 4));
    EXPECT_EQ(startOfDay(utc(2025, 11, 2, 5)), utc(2025, 11, 2, 4));
}

TEST(Calendar, ADayThatComesAfterASkippedOneBeginsAtItsMidnight) {
    // Samoa crossed the date line at the end of December 29, 2011.
    const std::int64_t crossing = wholeSeconds(utc(2011, 12, 30, 10));
    const Calendar samoa([&](std::int64_t at) { return (at < crossing ? -10 : 14) * 3600; });
    EXPECT_EQ(samoa.startOfDay(utc(2011, 12, 30, 22)), utc(2011, 12, 30, 10));
    EXPECT_EQ(samoa.startOfDay(utc(2011, 12, 30, 9)), utc(2011, 12, 29, 10));
}

TEST(Calendar, DaysBefore1970BeginAtMidnightToo) {
    const Calendar ahead([](std::int64_t) { return 3600; });
    EXPECT_EQ(ahead.startOfDay(utc(1969, 12, 31, 12)), utc(1969, 12, 30, 23));
    EXPECT_EQ(ahead.startOfDay(utc(1970, 1, 1)), utc(1969, 12, 31, 23));
}

TEST(Calendar, AtEveryHalfHourOfAYearTheDayBeginsWithItsFirstMoment) {
    for (const char* rule : {Zones::berlin, Zones::sydney, Zones::newYork, Zones::kolkata,
                             Zones::lordHowe, Zones::santiago, Zones::havana, "UTC0"}) {
        const TimeZone zone(rule);
        const Calendar calendar = Calendar::current();
        for (Date at = utc(2025, 1, 1); at < utc(2026, 1, 1); at += 30min) {
            const Date start = calendar.startOfDay(at);
            ASSERT_LE(start, at) << rule;
            ASSERT_EQ(localDay(start), localDay(at)) << rule << " " << wholeSeconds(at);
            ASSERT_LT(localDay(start - 1s), localDay(at)) << rule << " " << wholeSeconds(at);
        }
    }
}

TEST(Calendar, AZoneThatIsChangedIsSeenAtTheNextQuestion) {
    const TimeZone zone(Zones::berlin);
    EXPECT_EQ(Calendar::current().secondsFromGMT(utc(2025, 1, 1)), 3600);
    ::setenv("TZ", Zones::kolkata, 1);
    EXPECT_EQ(Calendar::current().secondsFromGMT(utc(2025, 1, 1)), 19800);
}

TEST(Calendar, TheDayHasBegunOnThisMachine) {
    const Date now = std::chrono::system_clock::now();
    const double since = secondsBetween(Calendar::current().startOfDay(now), now);
    EXPECT_GE(since, 0);
    EXPECT_LT(since, 26 * 3600);
}

} // namespace
} // namespace tavero
