#include "platform/linux/LinuxDisk.h"

#include "counters/DiskReader.h"
#include "platform/linux/BlockStat.h"
#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>

namespace tavero {
namespace {

std::string stat(std::uint64_t sectorsRead, std::uint64_t sectorsWritten) {
    return "    12 3 " + std::to_string(sectorsRead) + " 44 5 6 " + std::to_string(sectorsWritten) +
           " 77 0 88 99 0 0 0 0 0 0\n";
}

// A machine whose disks can be changed.
struct Disks {
    TemporaryTree tree;

    void plugIn(const std::string& name, std::uint64_t sectorsRead, std::uint64_t sectorsWritten) {
        tree.remove("sys/devices/" + name);
        tree.link("sys/devices/" + name + "/device", "../controller");
        tree.folder("sys/devices/" + name + "/slaves");
        set(name, sectorsRead, sectorsWritten);
        tree.link("sys/block/" + name, "../devices/" + name);
    }
    void unplug(const std::string& name) { tree.remove("sys/block/" + name); }
    void set(const std::string& name, std::uint64_t sectorsRead, std::uint64_t sectorsWritten) {
        tree.write("sys/devices/" + name + "/stat", stat(sectorsRead, sectorsWritten));
    }
};

DiskCounters sum(LinuxDisk& disk) {
    const DiskSnapshot snapshot = DiskReader::read(disk, "/", false);
    return {.bytesRead = snapshot.bytesRead, .bytesWritten = snapshot.bytesWritten};
}

DiskCounters sectors(std::uint64_t read, std::uint64_t written) {
    return {.bytesRead = read * 512, .bytesWritten = written * 512};
}

TEST(ParseBlockStat, SectorsAreOf512Bytes) {
    EXPECT_EQ(parseBlockStat(stat(10, 20)), (sectors(10, 20)));
    EXPECT_EQ(parseBlockStat("1 2 3 4 5 6 7"), (sectors(3, 7)));
}

TEST(ParseBlockStat, ATextCutShortIsAbsent) {
    for (const char* text : {"", "\n", "1 2", "1 2 3 4 5 6", "1 2 x 4 5 6 7", "garbage"})
        EXPECT_EQ(parseBlockStat(text), std::nullopt) << text;
}

TEST(ParseBlockStat, HugeFiguresStayAtTheLargestValue) {
    EXPECT_EQ(
        parseBlockStat("1 2 18446744073709551615 4 5 6 99999999999999999999"),
        (DiskCounters{.bytesRead = 18446744073709551615u, .bytesWritten = 18446744073709551615u}));
}

TEST(LinuxDisk, WholeDisksCountOnce) {
    Disks disks;
    disks.plugIn("sda", 10, 1);
    disks.plugIn("nvme0n1", 20, 2);
    disks.tree.write("sys/devices/sda/sda1/stat", stat(9, 1));
    LinuxDisk disk(disks.tree.root());
    EXPECT_EQ(sum(disk), sectors(30, 3));
}

TEST(LinuxDisk, WhatLiesOnAnotherDiskOrInMemoryDoesNotCount) {
    Disks disks;
    disks.plugIn("sda", 10, 1);
    for (const char* name : {"loop0", "ram0", "zram0", "dm-0", "md127"})
        disks.tree.write("sys/block/" + std::string(name) + "/stat", stat(1000, 1000));
    disks.plugIn("stacked", 1000, 1000);
    disks.tree.link("sys/devices/stacked/slaves/sda", "../../sda");
    disks.plugIn("nvme0c0n1", 1000, 1000);
    disks.tree.write("sys/devices/nvme0c0n1/hidden", "1\n");
    LinuxDisk disk(disks.tree.root());
    EXPECT_EQ(sum(disk), sectors(10, 1));
}

TEST(LinuxDisk, WithoutADiskTheSumsAreZero) {
    const TemporaryTree tree;
    LinuxDisk disk(tree.root());
    EXPECT_EQ(sum(disk), DiskCounters{});
}

TEST(LinuxDisk, ADiskPluggedInCountsAtOnceAndKeepsItsCountWhenItLeaves) {
    Disks disks;
    disks.plugIn("sda", 100, 100);
    LinuxDisk disk(disks.tree.root());
    EXPECT_EQ(sum(disk), sectors(100, 100));
    disks.plugIn("sdb", 7, 0);
    EXPECT_EQ(sum(disk), sectors(107, 100));
    disks.set("sdb", 50, 5);
    EXPECT_EQ(sum(disk), sectors(150, 105));
    disks.unplug("sdb");
    EXPECT_EQ(sum(disk), sectors(150, 105));
    disks.plugIn("sdb", 3, 0); // another one of the same name
    EXPECT_EQ(sum(disk), sectors(150, 105));
    disks.set("sdb", 10, 1);
    EXPECT_EQ(sum(disk), sectors(157, 106));
}

TEST(LinuxDisk, ACounterThatStepsBackMakesNoFalseStep) {
    Disks disks;
    disks.plugIn("sda", 4'294'967'295, 8); // about to wrap on an old kernel
    LinuxDisk disk(disks.tree.root());
    const DiskCounters before = sum(disk);
    disks.set("sda", 5, 10);
    EXPECT_EQ(sum(disk).bytesRead, before.bytesRead);
    EXPECT_EQ(sum(disk).bytesWritten, before.bytesWritten + 2 * 512);
    disks.set("sda", 9, 10);
    EXPECT_EQ(sum(disk).bytesRead, before.bytesRead + 4 * 512);
}

TEST(LinuxDisk, ATextThatBreaksKeepsTheLastCount) {
    Disks disks;
    disks.plugIn("sda", 10, 10);
    LinuxDisk disk(disks.tree.root());
    sum(disk);
    for (const char* text : {"", "x", "1 2 3"}) {
        disks.tree.write("sys/devices/sda/stat", text);
        EXPECT_EQ(sum(disk), sectors(10, 10)) << text;
    }
    disks.tree.remove("sys/devices/sda/stat");
    EXPECT_EQ(sum(disk), sectors(10, 10));
}

// Whatever happens to the disks, the sums follow what they read and wrote and nothing else.
TEST(LinuxDisk, SumsFollowOnlyWhatTheDisksDid) {
    for (unsigned seed = 0; seed < 8; ++seed) {
        std::mt19937 random(seed);
        const auto pick = [&](unsigned below) { return static_cast<unsigned>(random() % below); };
        Disks disks;
        LinuxDisk disk(disks.tree.root());
        std::map<std::string, std::uint64_t> raw;      // of the disks plugged in
        std::map<std::string, std::uint64_t> lastSeen; // of all there ever were
        DiskCounters expected;
        for (int step = 0; step < 60; ++step) {
            const std::string name = "sd" + std::string(1, static_cast<char>('a' + pick(3)));
            if (!raw.contains(name)) {
                raw[name] = pick(1000);
                disks.plugIn(name, raw[name], 2 * raw[name]);
            } else if (pick(4) == 0) {
                raw.erase(name);
                disks.unplug(name);
            } else {
                raw[name] = pick(5) == 0 ? pick(50) : raw[name] + pick(100); // reset or go on
                disks.set(name, raw[name], 2 * raw[name]);
            }
            for (const auto& [present, now] : raw) {
                const std::uint64_t before = std::exchange(lastSeen[present], now);
                const std::uint64_t done = now > before ? now - before : 0;
                expected.bytesRead += 512 * done;
                expected.bytesWritten += 1024 * done;
            }
            ASSERT_EQ(sum(disk), expected) << "seed " << seed << ", step " << step;
        }
    }
}

} // namespace
} // namespace tavero
