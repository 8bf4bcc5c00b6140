#include "platform/mac/hardware/GPUReader.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace tavero {
namespace {

PropertyValue number(std::int64_t value) { return {value}; }

PropertyMap accelerator(PropertyMap statistics) {
    return {{"PerformanceStatistics", {std::move(statistics)}}};
}

// An entry of "AppUsage".
PropertyValue used(std::int64_t nanoseconds) {
    return {
        PropertyMap{{"API", {std::string("Metal")}}, {"accumulatedGPUTime", number(nanoseconds)}}};
}

PropertyMap client(const std::string& creator, PropertyList usage) {
    return {{"IOUserClientCreator", {creator}}, {"AppUsage", {std::move(usage)}}};
}

using Times = std::unordered_map<std::int32_t, std::uint64_t>;

Times times(const std::vector<PropertyMap>& clients) { return GPUReader::times(clients); }

// One of every kind that a registry value can be of.
std::vector<PropertyValue> everyKind() {
    return {{std::string("12")},
            number(12),
            {std::numeric_limits<double>::quiet_NaN()},
            {std::numeric_limits<double>::infinity()},
            {true},
            {PropertyData{std::byte{1}}},
            {PropertyList{number(1)}},
            {PropertyMap{{"key", number(1)}}}};
}

TEST(GPUReader, ReadsStatisticsAndCores) {
    PropertyMap properties = accelerator({{"Device Utilization %", number(50)},
                                          {"Renderer Utilization %", number(40)},
                                          {"Tiler Utilization %", number(10)},
                                          {"In use system memory", number(1'000'000'000)},
                                          {"Alloc system memory", number(3'000'000'000)}});
    properties["gpu-core-count"] = number(10);
    EXPECT_EQ(GPUReader::read(properties), (GPUSnapshot{.device = 0.5,
                                                        .renderer = 0.4,
                                                        .tiler = 0.1,
                                                        .memoryInUse = 1'000'000'000,
                                                        .memoryAllocated = 3'000'000'000,
                                                        .cores = 10}));
}

TEST(GPUReader, AMissingFigureIsZeroAndMissingCoresAreAbsent) {
    EXPECT_EQ(GPUReader::read(accelerator({{"Device Utilization %", number(37)}})),
              (GPUSnapshot{.device = 0.37}));
    EXPECT_EQ(GPUReader::read(accelerator({})), GPUSnapshot{});
}

TEST(GPUReader, AnAcceleratorWithoutStatisticsTellsNothing) {
    EXPECT_EQ(GPUReader::read({}), std::nullopt);
    for (const PropertyValue& value : everyKind())
        EXPECT_EQ(GPUReader::read({{"PerformanceStatistics", value}}).has_value(),
                  std::holds_alternative<PropertyMap>(value.value));
}

TEST(GPUReader, AFigureOfAnotherKindIsZero) {
    for (const PropertyValue& value : everyKind()) {
        if (value == number(12)) continue;
        PropertyMap properties = accelerator({{"Device Utilization %", value},
                                              {"In use system memory", value},
                                              {"Alloc system memory", value}});
        properties["gpu-core-count"] = value;
        EXPECT_EQ(GPUReader::read(properties), GPUSnapshot{});
    }
}

TEST(GPUReader, MemoryIsUnsigned) {
    EXPECT_EQ(GPUReader::read(accelerator({{"In use system memory", number(-1)}}))->memoryInUse,
              std::numeric_limits<std::uint64_t>::max());
}

TEST(GPUReader, ACreatorIsThePidAtTheBeginning) {
    EXPECT_EQ(GPUReader::creator("pid 123, Finder"), 123);
    EXPECT_EQ(GPUReader::creator("pid 123"), 123);
    EXPECT_EQ(GPUReader::creator("pid 123abc"), 123);
    EXPECT_EQ(GPUReader::creator("pid 007, bond"), 7);
    EXPECT_EQ(GPUReader::creator("pid 2147483647, x"), 2147483647);
}

TEST(GPUReader, ATextThatIsNoCreatorHasNoPid) {
    for (const char* text :
         {"", "pid", "pid ", "pid x", "pid -1, x", "pid +1, x", "pid  1", "Pid 1", " pid 1", "123",
          "pid ,123", "pid \u0661\u0662", "pid 2147483648, x", "pid 99999999999999999999999, x"})
        EXPECT_EQ(GPUReader::creator(text), std::nullopt) << text;
}

TEST(GPUReader, TheTimesOfAllEntriesAndClientsOfAProcessAddUp) {
    EXPECT_EQ(times({client("pid 123, Film", {used(1), used(20)}), client("pid 7, Mail", {used(5)}),
                     client("pid 123, Film", {used(300), used(4000)})}),
              (Times{{123, 4321}, {7, 5}}));
}

TEST(GPUReader, AClientThatHasUsedNothingIsThereWithZero) {
    EXPECT_EQ(times({client("pid 123, Film", {})}), (Times{{123, 0}}));
}

TEST(GPUReader, AnEntryWithoutATimeAddsNothing) {
    for (const PropertyValue& value : everyKind()) {
        if (value == number(12)) continue;
        EXPECT_EQ(times({client(
                      "pid 1, a",
                      {{PropertyMap{{"accumulatedGPUTime", value}}}, {PropertyMap{}}, used(3)})}),
                  (Times{{1, 3}}));
    }
}

TEST(GPUReader, AListOfAnythingButDictionariesSkipsTheClient) {
    for (const PropertyValue& value : everyKind()) {
        if (std::holds_alternative<PropertyMap>(value.value)) continue;
        EXPECT_EQ(times({client("pid 1, a", {used(3), value}), client("pid 2, b", {used(4)})}),
                  (Times{{2, 4}}));
    }
}

TEST(GPUReader, AClientWithoutAListOrACreatorIsSkipped) {
    EXPECT_TRUE(times({{{"IOUserClientCreator", {std::string("pid 1, a")}}},
                       {{"AppUsage", {PropertyList{used(3)}}}},
                       {}})
                    .empty());
    for (const PropertyValue& value : everyKind()) {
        if (!std::holds_alternative<PropertyList>(value.value)) {
            EXPECT_TRUE(
                times({{{"IOUserClientCreator", {std::string("pid 1, a")}}, {"AppUsage", value}}})
                    .empty());
        }
        EXPECT_TRUE(
            times({{{"IOUserClientCreator", value}, {"AppUsage", {PropertyList{}}}}}).empty());
    }
}

TEST(GPUReader, ASumPastSixtyFourBitsStaysAtTheLargest) {
    EXPECT_EQ(times({client("pid 1, a", {used(-1), used(-1)}), client("pid 1, a", {used(5)})}),
              (Times{{1, std::numeric_limits<std::uint64_t>::max()}}));
}

} // namespace
} // namespace tavero
