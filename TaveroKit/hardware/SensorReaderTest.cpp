#include "hardware/SensorReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <optional>
#include <utility>

namespace tavero {
namespace {

using testing::ElementsAre;

struct SettableSensors : SensorSource {
    std::vector<std::pair<std::string, std::optional<double>>> all;

    std::vector<std::string> sensors() override {
        std::vector<std::string> names;
        for (const auto& [name, celsius] : all) names.push_back(name);
        return names;
    }
    std::optional<double> celsius(std::size_t sensor) override { return all.at(sensor).second; }
};

std::vector<std::string> namesOf(const TemperatureSnapshot& snapshot) {
    std::vector<std::string> names;
    for (const TemperatureReading& reading : snapshot.all) names.push_back(reading.name);
    return names;
}

// Six dies, of which the later ones are hotter, with a battery in between.
SettableSensors sixDies() {
    SettableSensors source;
    source.all = {{"tdie1", 41.0}, {"tdie2", 42.0}, {"gas gauge battery", 30.0},
                  {"tdie3", 43.0}, {"tdie4", 44.0}, {"tdie5", 45.0},
                  {"tdie6", 46.0}};
    return source;
}

TEST(SensorReader, KeepsOnlyDiesAndBatteries) {
    SettableSensors source;
    source.all = {{"PMU tdie1", 40.0},         {"PMU tdev1", 41.0},
                  {"NAND CH0 temp", 42.0},     {"PMU TDIE2", 43.0},
                  {"gas gauge battery", 44.0}, {"", 45.0},
                  {"My Battery 2", 46.0},      {"BATTERY", 47.0}};
    SensorReader reader(source);
    const TemperatureSnapshot snapshot = reader.read();
    EXPECT_EQ(
        snapshot.all,
        (std::vector<TemperatureReading>{
            {"PMU tdie1", 40}, {"gas gauge battery", 44}, {"My Battery 2", 46}, {"BATTERY", 47}}));
    EXPECT_EQ(snapshot.cpu(), 40);
    EXPECT_EQ(snapshot.battery(), 47);
    EXPECT_EQ(snapshot.ssd(), std::nullopt);
}

TEST(SensorReader, EveryTwelfthReadIsFullAndTheOthersAskTheFourHottest) {
    SettableSensors source = sixDies();
    SensorReader reader(source);
    for (int read = 1; read <= 37; ++read) {
        const bool full = read == 1 || read == 13 || read == 25 || read == 37;
        EXPECT_EQ(reader.read().all.size(), full ? 7u : 5u) << read;
    }
}

TEST(SensorReader, APartialReadGoesFromTheHottestDieDownAndThenToTheOthers) {
    SettableSensors source = sixDies();
    SensorReader reader(source);
    EXPECT_THAT(namesOf(reader.read()), ElementsAre("tdie1", "tdie2", "gas gauge battery", "tdie3",
                                                    "tdie4", "tdie5", "tdie6"));
    EXPECT_THAT(namesOf(reader.read()),
                ElementsAre("tdie6", "tdie5", "tdie4", "tdie3", "gas gauge battery"));
}

TEST(SensorReader, ThreeDiesAreAllAmongTheHottest) {
    SettableSensors source;
    source.all = {{"tdie1", 41.0}, {"tdie2", 43.0}, {"tdie3", 42.0}};
    SensorReader reader(source);
    reader.read();
    EXPECT_THAT(namesOf(reader.read()), ElementsAre("tdie2", "tdie3", "tdie1"));
}

TEST(SensorReader, TheHottestAreFoundAnewOnlyByAFullRead) {
    SettableSensors source = sixDies();
    SensorReader reader(source);
    reader.read();
    source.all[6].second = 20.0; // one of them cools far below the others
    source.all[0].second = 90.0; // and another gets hot
    for (int read = 2; read <= 12; ++read) {
        const TemperatureSnapshot snapshot = reader.read();
        EXPECT_THAT(namesOf(snapshot),
                    ElementsAre("tdie6", "tdie5", "tdie4", "tdie3", "gas gauge battery"));
        EXPECT_EQ(snapshot.cpu(), 45);
    }
    EXPECT_EQ(reader.read().cpu(), 90);
    EXPECT_THAT(namesOf(reader.read()),
                ElementsAre("tdie1", "tdie5", "tdie4", "tdie3", "gas gauge battery"));
}

TEST(SensorReader, AHotDieThatFallsSilentIsMissingUntilTheNextFullRead) {
    SettableSensors source = sixDies();
    SensorReader reader(source);
    reader.read();
    source.all[6].second = std::nullopt;
    for (int read = 2; read <= 12; ++read)
        EXPECT_THAT(namesOf(reader.read()),
                    ElementsAre("tdie5", "tdie4", "tdie3", "gas gauge battery"));
    reader.read();
    EXPECT_THAT(namesOf(reader.read()),
                ElementsAre("tdie5", "tdie4", "tdie3", "tdie2", "gas gauge battery"));
}

TEST(SensorReader, EqualTemperaturesKeepTheOrderOfTheSensors) {
    SettableSensors source;
    for (const char* name : {"tdie1", "tdie2", "tdie3", "tdie4", "tdie5", "tdie6"})
        source.all.emplace_back(name, 50.0);
    source.all[4].second = 60.0;
    SensorReader reader(source);
    reader.read();
    EXPECT_THAT(namesOf(reader.read()), ElementsAre("tdie5", "tdie1", "tdie2", "tdie3"));
}

TEST(SensorReader, OnlyTemperaturesOfAWorkingSensorAreKept) {
    SettableSensors source;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double celsius : {1.0, 1.01, 149.99, 150.0, 0.0, -40.0, nan, infinity, -infinity})
        source.all.emplace_back("tdie", celsius);
    SensorReader reader(source);
    EXPECT_EQ(reader.read().all,
              (std::vector<TemperatureReading>{{"tdie", 1.01}, {"tdie", 149.99}}));
}

TEST(SensorReader, WithoutAWorkingDieEveryReadIsFull) {
    SettableSensors source;
    source.all = {{"tdie1", std::nullopt}, {"battery", 30.0}};
    SensorReader reader(source);
    EXPECT_THAT(namesOf(reader.read()), ElementsAre("battery"));
    source.all[0].second = 50.0;
    EXPECT_THAT(namesOf(reader.read()), ElementsAre("tdie1", "battery"));
    EXPECT_EQ(reader.read().cpu(), 50);
}

TEST(SensorReader, WithoutSensorsThereAreNoReadings) {
    SettableSensors source;
    SensorReader reader(source);
    for (int read = 1; read <= 13; ++read) EXPECT_TRUE(reader.read().all.empty());
    source.all = {{"tdie1", 50.0}}; // looked for only once
    EXPECT_TRUE(reader.read().all.empty());
}

} // namespace
} // namespace tavero
