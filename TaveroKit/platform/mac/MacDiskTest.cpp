#include "platform/mac/MacDisk.h"

#include "platform/sim/SimMachine.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

// A block storage driver with these statistics, among the other things it tells.
PropertyMap driver(PropertyMap statistics) {
    return {{"IOClass", {std::string("IOBlockStorageDriver")}},
            {"IOMatchedAtBoot", {true}},
            {"Statistics", {std::move(statistics)}}};
}

std::vector<DiskCounters> disks(std::vector<PropertyMap> drivers) {
    SimMachine sim;
    sim.state().services["IOBlockStorageDriver"] = std::move(drivers);
    return MacDisk(sim.registry(), sim.volumes()).disks();
}

TEST(MacDisk, TakesTheBytesOfEveryDriver) {
    EXPECT_EQ(
        disks(
            {driver({{"Bytes (Read)", {std::int64_t{412'000'000'000}}},
                     {"Bytes (Write)", {std::int64_t{298'000'000'000}}},
                     {"Operations (Read)", {std::int64_t{7}}}}),
             driver({{"Bytes (Read)", {std::int64_t{1}}}, {"Bytes (Write)", {std::int64_t{2}}}})}),
        (std::vector<DiskCounters>{{.bytesRead = 412'000'000'000, .bytesWritten = 298'000'000'000},
                                   {.bytesRead = 1, .bytesWritten = 2}}));
}

TEST(MacDisk, ADriverWithoutStatisticsIsNoDisk) {
    EXPECT_TRUE(disks({{}, {{"Statistics", {std::int64_t{5}}}}}).empty());
}

TEST(MacDisk, AMissingFigureIsZero) {
    EXPECT_EQ(disks({driver({{"Bytes (Write)", {std::int64_t{2}}}}), driver({})}),
              (std::vector<DiskCounters>{{.bytesRead = 0, .bytesWritten = 2}, {}}));
}

TEST(MacDisk, AFigureOfAnotherKindIsZero) {
    EXPECT_EQ(disks({driver({{"Bytes (Read)", {true}}, {"Bytes (Write)", {std::string("5")}}})}),
              std::vector<DiskCounters>{{}});
}

TEST(MacDisk, AFigureOfSixtyFourBitsIsUnsigned) {
    EXPECT_EQ(disks({driver({{"Bytes (Read)", {std::int64_t{-1}}}})}).front().bytesRead,
              std::numeric_limits<std::uint64_t>::max());
}

TEST(MacDisk, AMacThatTellsOfNoDriverHasNoDisks) {
    EXPECT_TRUE(disks({}).empty());
    SimMachine sim;
    sim.state().services.clear();
    EXPECT_TRUE(MacDisk(sim.registry(), sim.volumes()).disks().empty());
}

TEST(MacDisk, VolumesArePassedOnAsTheyAre) {
    SimMachine sim;
    MacDisk disk(sim.registry(), sim.volumes());
    EXPECT_EQ(disk.space("/")->name, "Macintosh HD");
    EXPECT_EQ(disk.space("/nowhere"), std::nullopt);
    sim.state().volumes.push_back({.path = "/Volumes/Backup"});
    EXPECT_EQ(disk.volumes(), sim.state().volumes);
}

} // namespace
} // namespace tavero
