#include "counters/DiskReader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tavero {
namespace {

struct Disks : DiskSource {
    std::vector<DiskCounters> counters;
    std::optional<VolumeSpace> root;
    std::vector<MountedVolume> mounted;

    std::vector<DiskCounters> disks() override { return counters; }
    std::optional<VolumeSpace> space(const std::string& path) override {
        return path == "/" ? root : std::nullopt;
    }
    std::vector<MountedVolume> volumes() override { return mounted; }
};

TEST(DiskReader, AllDisksCount) {
    Disks source;
    source.counters = {{.bytesRead = 5, .bytesWritten = 1}, {.bytesRead = 7}, {}};
    EXPECT_EQ(DiskReader::read(source, "/", false),
              (DiskSnapshot{.bytesRead = 12, .bytesWritten = 1}));
}

TEST(DiskReader, WithoutADiskTheCountersAreZero) {
    Disks source;
    EXPECT_EQ(DiskReader::read(source, "/", false), DiskSnapshot{});
}

TEST(DiskReader, SumsBeyond64BitsStayAtTheLargestValue) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    Disks source;
    source.counters = {{.bytesRead = most, .bytesWritten = 9}, {.bytesRead = 2, .bytesWritten = 9}};
    EXPECT_EQ(DiskReader::read(source, "/", false),
              (DiskSnapshot{.bytesRead = most, .bytesWritten = 18}));
}

TEST(DiskReader, FreeSpaceIsAbsentUnlessAskedFor) {
    Disks source;
    source.root = {
        .capacity = 100, .availableForImportantUsage = 40, .available = 30, .name = "Disk"};
    EXPECT_EQ(DiskReader::read(source, "/", false), DiskSnapshot{});
    EXPECT_EQ(DiskReader::read(source, "/", true),
              (DiskSnapshot{.capacity = 100, .available = 40, .purgeable = 10, .name = "Disk"}));
}

TEST(DiskReader, AVolumeThatCannotBeReadLeavesItsFieldsAbsent) {
    Disks source;
    source.counters = {{.bytesRead = 5}};
    source.root = {.capacity = 100};
    EXPECT_EQ(DiskReader::read(source, "/elsewhere", true), (DiskSnapshot{.bytesRead = 5}));
    EXPECT_EQ(DiskReader::read(source, "/", true), (DiskSnapshot{.bytesRead = 5, .capacity = 100}));
}

TEST(DiskReader, PurgeableNeedsBothFiguresAndIsNeverNegative) {
    Disks source;
    const auto purgeable = [&](std::optional<std::int64_t> most,
                               std::optional<std::int64_t> least) {
        source.root = {.availableForImportantUsage = most, .available = least};
        return DiskReader::read(source, "/", true).purgeable;
    };
    EXPECT_EQ(purgeable(40, std::nullopt), std::nullopt);
    EXPECT_EQ(purgeable(std::nullopt, 40), std::nullopt);
    EXPECT_EQ(purgeable(40, 40), 0);
    EXPECT_EQ(purgeable(40, 50), 0);
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(purgeable(most, least), most);
    EXPECT_EQ(purgeable(least, most), 0);
    EXPECT_EQ(purgeable(5, -2), 7);
    EXPECT_EQ(purgeable(-2, -5), 3);
}

TEST(DiskReader, AvailableCountsWhatTheSystemWouldGiveBack) {
    Disks source;
    source.root = {.available = 30};
    EXPECT_EQ(DiskReader::read(source, "/", true).available, std::nullopt);
    source.root = {.availableForImportantUsage = 40};
    EXPECT_EQ(DiskReader::read(source, "/", true).available, 40);
}

TEST(DiskVolumes, KeepTheOrderOfTheSource) {
    Disks source;
    source.mounted = {{.path = "/",
                       .name = "System",
                       .capacity = 100,
                       .available = 40,
                       .isInternal = true,
                       .isBrowsable = true},
                      {.path = "/Volumes/Stick", .name = "A stick", .capacity = 8, .available = 0}};
    EXPECT_EQ(
        DiskReader::volumes(source),
        (std::vector<VolumeInfo>{
            {.name = "System", .path = "/", .capacity = 100, .available = 40, .isInternal = true},
            {.name = "A stick", .path = "/Volumes/Stick", .capacity = 8, .available = 0}}));
}

TEST(DiskVolumes, WhatCannotBeBrowsedOrMeasuredIsLeftOut) {
    Disks source;
    source.mounted = {{.path = "/a", .capacity = 1, .available = 0, .isBrowsable = false},
                      {.path = "/b", .capacity = 0, .available = 0},
                      {.path = "/c", .capacity = -1, .available = 0},
                      {.path = "/d", .available = 0},
                      {.path = "/e", .capacity = 1},
                      {.path = "/f", .capacity = 1, .available = 0}};
    const auto volumes = DiskReader::volumes(source);
    ASSERT_EQ(volumes.size(), 1u);
    EXPECT_EQ(volumes.front().path, "/f");
}

TEST(DiskVolumes, WithoutANameTheFolderNamesThem) {
    Disks source;
    for (const char* path : {"/Volumes/Stick", "/Volumes/Stick//", "/", "Stick", ""})
        source.mounted.push_back({.path = path, .capacity = 1, .available = 0});
    std::vector<std::string> names;
    for (const VolumeInfo& volume : DiskReader::volumes(source)) names.push_back(volume.name);
    EXPECT_EQ(names, (std::vector<std::string>{"Stick", "Stick", "/", "Stick", ""}));
}

} // namespace
} // namespace tavero
