#include "platform/mac/hardware/PowerReader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace tavero {
namespace {

PropertyValue number(std::int64_t value) { return {value}; }

PropertyMap with(PropertyMap properties, const PropertyMap& more) {
    for (const auto& [key, value] : more) properties.insert_or_assign(key, value);
    return properties;
}

// A driver that leaves every estimate to us: unplugged, 4 Ah at 12 V, 1 A flowing out.
const PropertyMap unplugged{{"AppleRawCurrentCapacity", number(4000)},
                            {"InstantAmperage", number(-1000)},
                            {"Voltage", number(12'000)}};

PropertyMap internal(const PropertyMap& description) {
    return with({{"Type", {std::string("InternalBattery")}}}, description);
}

BatterySnapshot battery(const PropertyMap& properties,
                        const std::vector<PropertyMap>& sources = {}) {
    return PowerReader::battery(properties, sources).value();
}

std::vector<PropertyValue> everyKindButNumbers() {
    return {{std::string("12")},
            {std::numeric_limits<double>::quiet_NaN()},
            {std::numeric_limits<double>::infinity()},
            {1e300},
            {true},
            {PropertyData{std::byte{1}}},
            {PropertyList{number(1)}},
            {PropertyMap{{"key", number(1)}}}};
}

TEST(PowerReader, AnUninstalledBatteryIsNone) {
    EXPECT_EQ(PowerReader::battery({{"BatteryInstalled", {false}}}, {}), std::nullopt);
    EXPECT_TRUE(PowerReader::battery({{"BatteryInstalled", {true}}}, {}));
    EXPECT_TRUE(PowerReader::battery({{"BatteryInstalled", number(0)}}, {})); // no Boolean
}

TEST(PowerReader, ADriverThatTellsNothingGivesABatteryWithoutFigures) {
    EXPECT_EQ(battery({}), BatterySnapshot{.currentIsStale = true});
}

TEST(PowerReader, TheDriversChargeIsOnlyTheFallback) {
    const PropertyMap driver{{"CurrentCapacity", number(70)}};
    EXPECT_EQ(battery(driver).percent, 70);
    EXPECT_EQ(battery(driver, {internal({{"Current Capacity", number(71)}})}).percent, 71);
    EXPECT_EQ(battery(driver, {internal({{"Current Capacity", number(0)}})}).percent, 0);
    EXPECT_EQ(battery(driver, {internal({})}).percent, 70);
    for (const PropertyValue& value : everyKindButNumbers())
        EXPECT_EQ(battery(driver, {internal({{"Current Capacity", value}})}).percent, 70);
}

TEST(PowerReader, OnlyInternalBatteriesCount) {
    EXPECT_EQ(battery({}, {{{"Type", {std::string("UPS")}}, {"Current Capacity", number(5)}},
                           {{"Current Capacity", number(6)}},
                           {{"Type", number(1)}, {"Current Capacity", number(7)}}})
                  .percent,
              0);
}

TEST(PowerReader, OfSeveralInternalBatteriesTheLastCounts) {
    const BatterySnapshot two = battery({}, {internal({{"Current Capacity", number(40)},
                                                       {"Time to Empty", number(100)},
                                                       {"Time to Full Charge", number(30)}}),
                                             internal({{"Current Capacity", number(50)},
                                                       {"Time to Empty", number(0)},
                                                       {"Time to Full Charge", number(20)}})});
    EXPECT_EQ(two.percent, 50);
    EXPECT_EQ(two.minutesToEmpty, 100); // 0 is no time
    EXPECT_EQ(two.minutesToFull, 20);
}

TEST(PowerReader, TimesOfTheSystemBeatThoseOfTheDriver) {
    const PropertyMap driver = with(unplugged, {{"AvgTimeToEmpty", number(77)}});
    EXPECT_EQ(battery(driver, {internal({{"Time to Empty", number(90)}})}).minutesToEmpty, 90);
    EXPECT_EQ(battery(driver, {internal({{"Time to Empty", number(-1)}})}).minutesToEmpty, 77);
}

TEST(PowerReader, HealthIsWhatTheBatteryHoldsOfWhatItHeldWhenNew) {
    const auto health = [](PropertyMap properties) { return battery(properties).health; };
    EXPECT_DOUBLE_EQ(
        *health({{"DesignCapacity", number(5000)}, {"AppleRawMaxCapacity", number(4500)}}), 0.9);
    EXPECT_DOUBLE_EQ(
        *health({{"DesignCapacity", number(5000)}, {"FullChargeCapacity", number(4000)}}), 0.8);
    EXPECT_DOUBLE_EQ(
        *health({{"DesignCapacity", number(5000)}, {"AppleRawMaxCapacity", number(5200)}}), 1.0);
    EXPECT_EQ(health({{"DesignCapacity", number(0)}, {"AppleRawMaxCapacity", number(4500)}}),
              std::nullopt);
    EXPECT_EQ(health({{"DesignCapacity", number(5000)}}), std::nullopt);
    EXPECT_EQ(health({{"AppleRawMaxCapacity", number(4500)}}), std::nullopt);
}

TEST(PowerReader, AFigureThatTheDriverLacksIsInItsBatteryData) {
    const PropertyMap data{{"DesignCapacity", number(5000)},
                           {"AppleRawMaxCapacity", number(4000)},
                           {"CycleCount", number(12)},
                           {"Temperature", number(3012)}};
    const BatterySnapshot inData = battery({{"BatteryData", {data}}});
    EXPECT_DOUBLE_EQ(*inData.health, 0.8);
    EXPECT_EQ(inData.cycleCount, 12);
    EXPECT_DOUBLE_EQ(*inData.temperatureCelsius, 30.12);
    EXPECT_EQ(battery({{"BatteryData", {data}}, {"CycleCount", number(13)}}).cycleCount, 13);
    for (const PropertyValue& value : everyKindButNumbers())
        EXPECT_EQ(battery({{"BatteryData", {data}}, {"CycleCount", value}}).cycleCount, 12);
}

TEST(PowerReader, TheFirstNameOfAFigureIsLookedForInBothPlacesBeforeTheSecond) {
    EXPECT_EQ(battery({{"Voltage", number(10'000)},
                       {"Amperage", number(-500)},
                       {"BatteryData", {PropertyMap{{"InstantAmperage", number(-700)}}}}})
                  .watts,
              7.0);
}

TEST(PowerReader, PowerDrawnFromTheBatteryIsPositive) {
    EXPECT_DOUBLE_EQ(*battery(unplugged).watts, 12.0);
    EXPECT_DOUBLE_EQ(*battery(with(unplugged, {{"InstantAmperage", number(2000)}})).watts, -24.0);
    EXPECT_DOUBLE_EQ(*battery({{"Voltage", number(12'000)}, {"Amperage", number(-500)}}).watts,
                     6.0);
    EXPECT_EQ(battery({{"Voltage", number(12'000)}}).watts, std::nullopt);
    EXPECT_EQ(battery({{"Amperage", number(-500)}}).watts, std::nullopt);
}

TEST(PowerReader, NoCurrentIsZeroWattsWithoutASign) {
    const double watts = *battery(with(unplugged, {{"InstantAmperage", number(0)}})).watts;
    EXPECT_EQ(watts, 0);
    EXPECT_FALSE(std::signbit(watts));
}

TEST(PowerReader, TheTimeToEmptyFollowsFromCapacityAndCurrent) {
    EXPECT_EQ(battery(unplugged).minutesToEmpty, 240);
    EXPECT_EQ(battery(with(unplugged, {{"InstantAmperage", number(-999)}})).minutesToEmpty, 240);
    EXPECT_EQ(battery(with(unplugged, {{"InstantAmperage", number(-1001)}})).minutesToEmpty, 239);
    EXPECT_EQ(
        battery({{"RemainingCapacity", number(100)}, {"Amperage", number(-60)}}).minutesToEmpty,
        100);
}

TEST(PowerReader, ASmallCurrentGivesNoTimeUntilTheWholeMachinesDrawDoes) {
    EXPECT_EQ(battery(with(unplugged, {{"InstantAmperage", number(-51)}})).minutesToEmpty, 4705);
    for (const std::int64_t current : {-50, -30, 0, 500}) {
        BatterySnapshot small = battery(with(unplugged, {{"InstantAmperage", number(current)}}));
        EXPECT_EQ(small.minutesToEmpty, std::nullopt) << current;
        small.estimateTimeLeft(24.0);
        EXPECT_EQ(small.minutesToEmpty, 120) << current;
    }
}

TEST(PowerReader, TheDriversTimeToEmptyCountsFrom1To65534) {
    const auto minutes = [](std::int64_t gauged) {
        return battery(with(unplugged, {{"AvgTimeToEmpty", number(gauged)}})).minutesToEmpty;
    };
    EXPECT_EQ(minutes(1), 1);
    EXPECT_EQ(minutes(65534), 65534);
    EXPECT_EQ(minutes(65535), 240);
    EXPECT_EQ(minutes(65536), 240);
    EXPECT_EQ(minutes(0), 240);
    EXPECT_EQ(minutes(-1), 240);
}

TEST(PowerReader, OnExternalPowerNoTimeToEmptyIsWorkedOut) {
    EXPECT_EQ(
        battery(with(unplugged, {{"ExternalConnected", {true}}, {"AvgTimeToEmpty", number(100)}}))
            .minutesToEmpty,
        std::nullopt);
    EXPECT_EQ(battery(with(unplugged, {{"ExternalConnected", number(1)}})).minutesToEmpty, 240);
}

TEST(PowerReader, TheDriversTimeToFullCountsOnlyWhileCharging) {
    const auto minutes = [](PropertyValue isCharging, std::int64_t gauged) {
        return battery({{"IsCharging", std::move(isCharging)}, {"AvgTimeToFull", number(gauged)}})
            .minutesToFull;
    };
    EXPECT_EQ(minutes({true}, 45), 45);
    EXPECT_EQ(minutes({true}, 65534), 65534);
    EXPECT_EQ(minutes({true}, 65535), std::nullopt);
    EXPECT_EQ(minutes({true}, 0), std::nullopt);
    EXPECT_EQ(minutes({false}, 45), std::nullopt);
    EXPECT_EQ(minutes(number(1), 45), std::nullopt);
}

TEST(PowerReader, RemainingEnergyNeedsCapacityAndVoltage) {
    EXPECT_DOUBLE_EQ(*battery(unplugged).remainingWattHours, 48.0);
    EXPECT_EQ(battery({{"Voltage", number(12'000)}}).remainingWattHours, std::nullopt);
    EXPECT_EQ(battery({{"RemainingCapacity", number(4000)}}).remainingWattHours, std::nullopt);
}

TEST(PowerReader, OnBatteryACurrentThatDoesNotFlowOutIsAnOldReading) {
    const auto isStale = [](const PropertyMap& more) {
        return battery(with(unplugged, more)).currentIsStale;
    };
    EXPECT_FALSE(isStale({}));
    EXPECT_FALSE(isStale({{"InstantAmperage", number(-1)}}));
    EXPECT_TRUE(isStale({{"InstantAmperage", number(0)}}));
    EXPECT_TRUE(isStale({{"InstantAmperage", number(900)}}));
    EXPECT_TRUE(isStale({{"InstantAmperage", {true}}}));
    EXPECT_FALSE(isStale({{"InstantAmperage", number(0)}, {"ExternalConnected", {true}}}));
}

TEST(PowerReader, AnOldReadingGivesWayToTheWholeMachinesDrawTogetherWithTheTime) {
    const PropertyMap driver = with(unplugged, {{"InstantAmperage", number(0)}});
    BatterySnapshot estimated = battery(driver);
    ASSERT_TRUE(estimated.currentIsStale);
    estimated.estimateTimeLeft(1.0);
    EXPECT_EQ(estimated.watts, 0.0);
    estimated.estimateTimeLeft(8.0);
    EXPECT_EQ(estimated.minutesToEmpty, 360);
    EXPECT_EQ(estimated.watts, 8.0);

    BatterySnapshot known = battery(driver, {internal({{"Time to Empty", number(90)}})});
    known.estimateTimeLeft(8.0);
    EXPECT_EQ(known.minutesToEmpty, 90);
    EXPECT_EQ(known.watts, 0.0);
}

TEST(PowerReader, FiguresAtTheEndsOfTheirRangeGiveNoTimeThatIsNone) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(battery(with(unplugged, {{"AppleRawCurrentCapacity", number(most)},
                                       {"InstantAmperage", number(-51)}}))
                  .minutesToEmpty,
              std::nullopt);
    EXPECT_EQ(battery(with(unplugged, {{"InstantAmperage", number(least)}})).minutesToEmpty, 0);
    EXPECT_TRUE(battery({{"Voltage", number(least)}, {"Amperage", number(least)}}).watts);
}

TEST(PowerReader, HostileValuesOfEveryKindLeaveTheirFieldsAbsent) {
    for (const PropertyValue& value : everyKindButNumbers()) {
        PropertyMap driver;
        for (const char* key : {"CurrentCapacity", "DesignCapacity", "AppleRawMaxCapacity",
                                "FullChargeCapacity", "Voltage", "InstantAmperage", "Amperage",
                                "AvgTimeToEmpty", "AvgTimeToFull", "AppleRawCurrentCapacity",
                                "RemainingCapacity", "CycleCount", "Temperature", "BatteryData"})
            driver[key] = value;
        const PropertyMap source = internal({{"Current Capacity", value},
                                             {"Time to Empty", value},
                                             {"Time to Full Charge", value}});
        EXPECT_EQ(battery(driver, {source}), BatterySnapshot{.currentIsStale = true});
    }
}

} // namespace
} // namespace tavero
