#include "platform/linux/LinuxMachine.h"

#include "counters/CPUSampler.h"
#include "counters/DiskReader.h"
#include "counters/MemoryReader.h"
#include "counters/NetworkReader.h"
#include "platform/linux/LinuxDisk.h"
#include "platform/linux/LinuxNetwork.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <set>
#include <string>

namespace tavero {
namespace {

const std::filesystem::path machines = TAVERO_LINUX_MACHINES;

TEST(SmallVM, TellsItsCpuAndMemory) {
    const Machine machine = linuxMachine(machines / "small-vm-debian-12");
    CPUSampler sampler;
    const auto cpu = sampler.sample(*machine.cpu);
    EXPECT_EQ(cpu->perCore.size(), 2u);
    EXPECT_NEAR(cpu->user + cpu->system + cpu->idle, 1, 1e-9);
    EXPECT_EQ(cpu->performanceCores, 0);
    EXPECT_EQ(cpu->efficiencyCores, 0);

    const auto memory = MemoryReader::read(*machine.memory);
    EXPECT_EQ(memory->total, 24684092ull * 1024);
    EXPECT_EQ(memory->used() + memory->cached + memory->free(), memory->total);
    EXPECT_EQ(memory->compressed, 0u);
    EXPECT_EQ(memory->swapTotal, 0u);
    EXPECT_EQ(memory->pressure, MemoryPressure::normal);
}

TEST(SmallVM, IsPluggedIn) {
    const Machine machine = linuxMachine(machines / "small-vm-debian-12");
    EXPECT_TRUE(machine.power->onExternalPower());
    EXPECT_FALSE(machine.power->lowPowerMode());
}

TEST(SmallVM, CountsItsDiskAndItsCard) {
    LinuxDisk disk(machines / "small-vm-debian-12");
    const DiskSnapshot counters = DiskReader::read(disk, "/", false);
    EXPECT_EQ(counters.bytesRead, 18355698u * 512ull);
    EXPECT_EQ(counters.bytesWritten, 7673744u * 512ull);
    LinuxNetwork network(machines / "small-vm-debian-12");
    EXPECT_EQ(NetworkReader::read(network),
              (NetworkSnapshot{.bytesIn = 128502201, .bytesOut = 117224}));
}

TEST(SmallVM, HasOneVolumeWithoutALabel) {
    LinuxDisk disk(machines / "small-vm-debian-12");
    const auto volumes = DiskReader::volumes(disk);
    ASSERT_EQ(volumes.size(), 1u);
    EXPECT_EQ(volumes[0].name, "System");
    EXPECT_EQ(volumes[0].path, "/");
    EXPECT_TRUE(volumes[0].isInternal);
}

TEST(HybridLaptop, TellsItsTwoKindsOfCores) {
    const Machine machine = linuxMachine(machines / "composed-hybrid-laptop");
    CPUSampler sampler;
    const auto cpu = sampler.sample(*machine.cpu);
    EXPECT_EQ(cpu->perCore.size(), 16u);
    EXPECT_EQ(cpu->performanceCores, 8);
    EXPECT_EQ(cpu->efficiencyCores, 8);
    EXPECT_EQ(cpu->loadAverage, (LoadAverage{.one = 1.84, .five = 2.10, .fifteen = 1.97}));
}

TEST(HybridLaptop, CountsItsCompressedSwapAndItsShortage) {
    const Machine machine = linuxMachine(machines / "composed-hybrid-laptop");
    const auto memory = MemoryReader::read(*machine.memory);
    EXPECT_EQ(memory->compressed, 1181116416u);
    EXPECT_EQ(memory->app, (5411764u + 702144u) * 1024ull);
    EXPECT_EQ(memory->free(), 1204832u * 1024ull);
    EXPECT_EQ(memory->swapUsed, (8388604u - 5242876u) * 1024ull);
    EXPECT_EQ(memory->freeLevel, 40);
    EXPECT_EQ(memory->pressure, MemoryPressure::warning);
}

TEST(HybridLaptop, RunsOnItsBatteryAndSavesEnergy) {
    const Machine machine = linuxMachine(machines / "composed-hybrid-laptop");
    EXPECT_FALSE(machine.power->onExternalPower());
    EXPECT_TRUE(machine.power->lowPowerMode());
}

TEST(HybridLaptop, CountsItsDisksOnceAndOnlyPhysicalInterfaces) {
    LinuxDisk disk(machines / "composed-hybrid-laptop");
    const DiskSnapshot counters = DiskReader::read(disk, "/", false);
    EXPECT_EQ(counters.bytesRead, (41200128u + 81920u) * 512ull);
    EXPECT_EQ(counters.bytesWritten, (29120512u + 1024u) * 512ull);
    LinuxNetwork network(machines / "composed-hybrid-laptop");
    EXPECT_EQ(NetworkReader::read(network),
              (NetworkSnapshot{.bytesIn = 7312004411 + 1200500, .bytesOut = 612004100 + 300200}));
}

TEST(HybridLaptop, ShowsItsDiskAndItsStick) {
    LinuxDisk disk(machines / "composed-hybrid-laptop");
    const auto volumes = DiskReader::volumes(disk);
    ASSERT_EQ(volumes.size(), 2u);
    EXPECT_EQ(volumes[0].name, "fedora");
    EXPECT_EQ(volumes[0].path, "/");
    EXPECT_TRUE(volumes[0].isInternal);
    EXPECT_EQ(volumes[1].name, "Field notes");
    EXPECT_EQ(volumes[1].path, "/run/media/ana/Field notes");
    EXPECT_FALSE(volumes[1].isInternal);
    EXPECT_EQ(DiskReader::read(disk, "/", true).name, "fedora");
}

TEST(LinuxMachine, AnEmptyRootGivesNothing) {
    const Machine machine = linuxMachine(machines / "no-such-machine");
    EXPECT_EQ(machine.cpu->ticks(), std::nullopt);
    EXPECT_EQ(machine.memory->counts(), std::nullopt);
    EXPECT_TRUE(machine.power->onExternalPower());
}

TEST(LinuxMachine, CpuOnThisMachine) {
    const Machine machine = Machine::host();
    const auto before = machine.cpu->ticks();
    const auto after = machine.cpu->ticks();
    ASSERT_TRUE(before && after);
    EXPECT_GT(before->size(), 0u);
    EXPECT_GE(after->size(), before->size());
    const LoadAverage load = machine.cpu->loadAverage();
    EXPECT_GE(load.one, 0);
    EXPECT_TRUE(std::isfinite(load.fifteen));
    const CoreKinds kinds = machine.cpu->coreKinds();
    EXPECT_EQ(kinds.performance == 0, kinds.efficiency == 0);
}

TEST(LinuxMachine, MemoryOnThisMachine) {
    const Machine machine = Machine::host();
    const auto memory = MemoryReader::read(*machine.memory);
    ASSERT_TRUE(memory);
    EXPECT_GT(memory->total, 0u);
    EXPECT_LE(memory->used(), memory->total);
    EXPECT_GT(memory->app, 0u);
    EXPECT_LE(memory->swapUsed, memory->swapTotal);
    if (memory->freeLevel) {
        EXPECT_GE(*memory->freeLevel, 0);
        EXPECT_LE(*memory->freeLevel, 100);
    }
}

TEST(LinuxMachine, DiskOnThisMachine) {
    LinuxDisk disk("/");
    const DiskSnapshot before = DiskReader::read(disk, "/", true);
    const DiskSnapshot after = DiskReader::read(disk, "/", false);
    EXPECT_GE(after.bytesRead, before.bytesRead);
    EXPECT_GE(after.bytesWritten, before.bytesWritten);
    ASSERT_TRUE(before.capacity && before.available && before.name);
    EXPECT_GE(*before.capacity, *before.available);
    EXPECT_FALSE(before.name->empty());
    EXPECT_EQ(before.purgeable, std::nullopt);
    std::set<std::string> paths;
    for (const VolumeInfo& volume : DiskReader::volumes(disk))
        EXPECT_TRUE(paths.insert(volume.path).second) << volume.path;
}

TEST(LinuxMachine, NetworkOnThisMachine) {
    LinuxNetwork network("/");
    const auto before = NetworkReader::read(network);
    const auto after = NetworkReader::read(network);
    EXPECT_EQ(before.has_value(), after.has_value());
    if (!before || !after) return;
    EXPECT_GE(after->bytesIn, before->bytesIn);
    EXPECT_GE(after->bytesOut, before->bytesOut);
}

} // namespace
} // namespace tavero
