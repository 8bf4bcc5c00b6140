#include "presentation/Format.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

constexpr std::uint64_t mebibyte = 1024 * 1024;
constexpr std::uint64_t gibibyte = 1024 * mebibyte;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

const Format plain;
const Format bits{.networkBits = true};
const Format fahrenheit{.fahrenheit = true};

TEST(Format, BytesChangeUnitAtExactlyOneGigabyte) {
    EXPECT_EQ(plain.bytes(gibibyte), "1.0 GB");
    EXPECT_EQ(plain.bytes(gibibyte - 1), "1024 MB");
    EXPECT_EQ(plain.bytes(0), "0 MB");
    EXPECT_EQ(plain.bytes(824 * mebibyte), "824 MB");
}

TEST(Format, BytesKnowNoLargerUnitThanGigabytes) {
    EXPECT_EQ(plain.bytes(2048 * gibibyte), "2048.0 GB");
    EXPECT_EQ(plain.bytes(std::numeric_limits<std::uint64_t>::max()), "17179869184.0 GB");
}

TEST(Format, CapacityChoosesUnitAndDecimalsBeforeItRounds) {
    EXPECT_EQ(plain.capacity(999'950'000'000), (Measure{"1000", "GB"}));
    EXPECT_EQ(plain.capacity(1'000'000'000'000), (Measure{"1.0", "TB"}));
    EXPECT_EQ(plain.capacity(1'940'000'000'000), (Measure{"1.9", "TB"}));
    EXPECT_EQ(plain.capacity(100'000'000'000), (Measure{"100", "GB"}));
    EXPECT_EQ(plain.capacity(99'960'000'000), (Measure{"100.0", "GB"}));
    EXPECT_EQ(plain.capacity(0), (Measure{"0.0", "GB"}));
}

TEST(Format, RateJustBelowAMegabyteStaysInKilobytes) {
    EXPECT_EQ(plain.rate(1'048'575).joined(), "1024 KB/s");
    EXPECT_EQ(plain.rate(1'048'576).joined(), "1.0 MB/s");
    EXPECT_EQ(plain.rate(0).joined(), "0 KB/s");
}

TEST(Format, RateInBitsHasDecimalThresholds) {
    EXPECT_EQ(bits.rate(124'999).joined(), "1000 Kb/s");
    EXPECT_EQ(bits.rate(125'000).joined(), "1.0 Mb/s");
    EXPECT_EQ(bits.rate(0).joined(), "0 Kb/s");
    EXPECT_EQ(bits.rate(3'000'000).joined(), "24.0 Mb/s");
}

TEST(Format, ShortRateHasTheSameThresholdsAndNoBlank) {
    EXPECT_EQ(plain.shortRate(1'048'575), "1024K");
    EXPECT_EQ(plain.shortRate(2.5 * 1'048'576), "2.5M");
    EXPECT_EQ(plain.shortRate(0), "0K");
    EXPECT_EQ(bits.shortRate(124'999), "1000K");
    EXPECT_EQ(bits.shortRate(125'000), "1.0M");
}

TEST(Format, ARateThatIsNoNumberIsThePlaceholder) {
    EXPECT_EQ(plain.rate(nan).value, "–");
    EXPECT_EQ(plain.rate(std::numeric_limits<double>::infinity()).value, "–");
    EXPECT_EQ(plain.shortRate(nan), "–K");
}

TEST(Format, DurationTellsHoursFromSixtyMinutes) {
    EXPECT_EQ(plain.duration(0), "0 m");
    EXPECT_EQ(plain.duration(59), "59 m");
    EXPECT_EQ(plain.duration(60), "1 h 0 m");
    EXPECT_EQ(plain.duration(125), "2 h 5 m");
    EXPECT_EQ(plain.duration(-5), "-5 m");
}

TEST(Format, BatteryStatusIsTheFirstThatFits) {
    BatterySnapshot battery{.percent = 98, .isCharging = true, .onExternalPower = true};
    EXPECT_EQ(plain.batteryStatus(battery), "Charging · estimating time to full…");
    battery.minutesToFull = 75;
    EXPECT_EQ(plain.batteryStatus(battery), "Full in 1 h 15 m");
    battery.isCharging = false;
    EXPECT_EQ(plain.batteryStatus(battery), "Plugged in");
    battery.percent = 99;
    EXPECT_EQ(plain.batteryStatus(battery), "Fully charged");
    battery.onExternalPower = false;
    EXPECT_EQ(plain.batteryStatus(battery), "Estimating time left…");
    battery.minutesToEmpty = 42;
    EXPECT_EQ(plain.batteryStatus(battery), "42 m left");
}

TEST(Format, TemperatureFollowsTheChosenUnit) {
    EXPECT_EQ(plain.temperature(64.4), (Measure{"64", "°C"}));
    EXPECT_EQ(fahrenheit.temperature(95), (Measure{"203", "°F"}));
    EXPECT_EQ(fahrenheit.temperature(-40).joined(""), "-40°F");
}

TEST(Format, AnAbsentTemperatureKeepsTheUnit) {
    EXPECT_EQ(fahrenheit.temperature(std::nullopt), (Measure{"–", "°F"}));
    EXPECT_EQ(plain.temperature(std::nullopt), (Measure{"–", "°C"}));
    EXPECT_EQ(plain.temperature(nan), (Measure{"–", "°C"}));
}

TEST(Format, ATemperatureJustBelowZeroHasNoSign) {
    EXPECT_EQ(plain.temperature(-0.4).value, "0");
    EXPECT_EQ(plain.temperature(-0.0).value, "0");
}

TEST(Format, FansAreToldByTheFastest) {
    EXPECT_EQ(plain.fans({}), "No fans");
    EXPECT_EQ(plain.fans({1200, 2350}), "2.4k rpm"); // 2.35 is a little above it in binary
    EXPECT_EQ(plain.fans({1000}), "1.0k rpm");
    EXPECT_EQ(plain.fans({999.4, 0}), "999 rpm");
    EXPECT_EQ(plain.fans({0}), "0 rpm");
}

TEST(Format, AFanWithoutASpeedIsNoFan) {
    EXPECT_EQ(plain.fans({nan, 800}), "800 rpm");
    EXPECT_EQ(plain.fans({nan}), "No fans");
}

} // namespace
} // namespace tavero
