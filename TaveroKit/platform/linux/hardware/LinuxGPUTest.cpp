#include "platform/linux/hardware/LinuxGPU.h"

#include "platform/linux/TemporaryTree.h"
#include "platform/linux/hardware/test/FakeNvml.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace tavero {
namespace {

constexpr std::uint64_t second = 1'000'000'000;

// A machine whose graphics processors can be set.
class LinuxGPUTest : public testing::Test {
  protected:
    using Times = std::unordered_map<std::int32_t, std::uint64_t>;

    void addCard(int number, const std::string& driver, const std::string& address) {
        const std::string device = "sys/devices/" + address;
        tree.write(device + "/uevent", "DRIVER=" + driver + "\nPCI_CLASS=30000\nPCI_SLOT_NAME=" +
                                           address + "\nMODALIAS=pci:v1\n");
        for (const std::string& node :
             {"card" + std::to_string(number), "renderD" + std::to_string(128 + number)})
            tree.link("sys/class/drm/" + node + "/device", tree.root() / device);
        tree.folder("sys/class/drm/card" + std::to_string(number) + "-HDMI-A-1");
    }
    void addNvidia(const std::string& address) {
        addCard(2, "nvidia", address);
        tree.write("sys/bus/pci/drivers/nvidia/bind", "");
        tree.link("sys/bus/pci/drivers/nvidia/" + address, tree.root() / "sys/devices" / address);
    }
    void set(const std::string& address, const std::string& file, const std::string& text) {
        tree.write("sys/devices/" + address + "/" + file, text + "\n");
    }
    void hold(int pid, int number, const std::string& node, const std::string& info) {
        const std::string process = "proc/" + std::to_string(pid);
        tree.link(process + "/fd/" + std::to_string(number), "/dev/dri/" + node);
        write(pid, number, info);
    }
    void write(int pid, int number, const std::string& info) {
        tree.write("proc/" + std::to_string(pid) + "/fdinfo/" + std::to_string(number), info);
    }
    static std::string client(const std::string& address, int id, std::uint64_t gfx) {
        return "pos:\t0\ndrm-driver:\tany\ndrm-pdev:\t" + address + "\ndrm-client-id:\t" +
               std::to_string(id) + "\ndrm-engine-render:\t" + std::to_string(gfx) + " ns\n";
    }
    std::optional<GPUSnapshot> next() {
        now += second;
        return gpu.gpu();
    }
    Times nextTimes() {
        now += second;
        return gpu.gpuTimes();
    }

    TemporaryTree tree{{"proc/stat", ""}};
    std::uint64_t now = second;
    FakeNvml& fake = FakeNvml::open(TAVERO_FAKE_NVML);
    LinuxGPU gpu{tree.root(), std::make_shared<ProcessFiles>(tree.root()), [this] { return now; },
                 TAVERO_FAKE_NVML, std::chrono::minutes(10)};
};

const std::string amd = "0000:c1:00.0";
const std::string intel = "0000:00:02.0";
const std::string nvidia = "0000:01:00.0";

TEST_F(LinuxGPUTest, WithoutAProcessorThereIsNothing) {
    EXPECT_EQ(next(), std::nullopt);
    EXPECT_EQ(nextTimes(), Times{});
    EXPECT_EQ(fake.inits, 0);
}

TEST_F(LinuxGPUTest, AmdTellsItsLoadAndMemory) {
    addCard(1, "amdgpu", amd);
    set(amd, "gpu_busy_percent", "37");
    set(amd, "mem_info_vram_used", "1073741824");
    set(amd, "mem_info_gtt_used", "268435456");
    EXPECT_EQ(
        next(),
        (GPUSnapshot{.device = 0.37, .memoryInUse = 1342177280, .memoryAllocated = 1342177280}));
}

TEST_F(LinuxGPUTest, StatisticsWithOnlyTheLoadGiveZeroForTheRest) {
    addCard(1, "amdgpu", amd);
    set(amd, "gpu_busy_percent", "37");
    EXPECT_EQ(next(), GPUSnapshot{.device = 0.37});
}

TEST_F(LinuxGPUTest, GarbageIsAbsentOrClamped) {
    addCard(1, "amdgpu", amd);
    for (const char* text : {"", "busy", "-1", "\n"}) {
        set(amd, "gpu_busy_percent", text);
        EXPECT_EQ(next(), std::nullopt) << text;
    }
    set(amd, "gpu_busy_percent", "250");
    set(amd, "mem_info_vram_used", "99999999999999999999");
    set(amd, "mem_info_gtt_used", "5");
    EXPECT_EQ(next(), (GPUSnapshot{.device = 1,
                                   .memoryInUse = ~std::uint64_t{0},
                                   .memoryAllocated = ~std::uint64_t{0}}));
}

TEST_F(LinuxGPUTest, AProcessorThatDisappearsIsAbsent) {
    addCard(1, "amdgpu", amd);
    set(amd, "gpu_busy_percent", "37");
    EXPECT_TRUE(next());
    tree.remove("sys/class/drm/card1");
    tree.remove("sys/class/drm/renderD129");
    EXPECT_EQ(next(), std::nullopt);
}

TEST_F(LinuxGPUTest, IntelsLoadIsThatOfItsClients) {
    addCard(0, "i915", intel);
    hold(100, 5, "renderD128", client(intel, 1, 0));
    nextTimes();
    write(100, 5, client(intel, 1, second / 2));
    EXPECT_EQ(next(), (GPUSnapshot{.device = 0.5, .renderer = 0.5}));
}

TEST_F(LinuxGPUTest, WithoutClientsIntelsLoadIsTheTimeItDidNotSleep) {
    addCard(0, "i915", intel);
    tree.write("sys/class/drm/card0/gt/gt0/rc6_residency_ms", "5000\n");
    EXPECT_EQ(next(), std::nullopt);
    tree.write("sys/class/drm/card0/gt/gt0/rc6_residency_ms", "5750\n");
    EXPECT_EQ(next(), GPUSnapshot{.device = 0.25});
}

TEST_F(LinuxGPUTest, AnIntelProcessorThatNeverSleepsIsNotTakenForBusy) {
    addCard(0, "i915", intel);
    tree.write("sys/class/drm/card0/gt/gt0/rc6_residency_ms", "0\n");
    next();
    EXPECT_EQ(next(), std::nullopt);
}

TEST_F(LinuxGPUTest, ASleepingProcessorIsNotRead) {
    addCard(1, "amdgpu", amd);
    set(amd, "power/runtime_status", "suspended");
    set(amd, "gpu_busy_percent", "37"); // would be read if it were awake
    hold(100, 5, "renderD129", client(amd, 1, 500));
    EXPECT_EQ(next(), std::nullopt);
    EXPECT_EQ(nextTimes(), (Times{{100, 0}}));
    set(amd, "power/runtime_status", "active");
    EXPECT_EQ(next()->device, 0.37);
    set(amd, "power/runtime_status", "suspended");
    EXPECT_EQ(next(), GPUSnapshot{}); // there is one, and it does nothing
}

TEST_F(LinuxGPUTest, OneThatMaySleepAndIsIdleIsLeftAloneForAsLongAsItTakes) {
    addCard(1, "amdgpu", amd);
    set(amd, "power/runtime_status", "active");
    set(amd, "power/control", "auto");
    set(amd, "power/autosuspend_delay_ms", "5000");
    set(amd, "gpu_busy_percent", "0");
    for (int i = 0; i < 3; ++i) EXPECT_EQ(next(), GPUSnapshot{});
    set(amd, "gpu_busy_percent", "90");
    for (int i = 0; i < 6; ++i) EXPECT_EQ(next(), GPUSnapshot{}) << i;
    EXPECT_EQ(next()->device, 0.9);
    EXPECT_EQ(next()->device, 0.9);
}

TEST_F(LinuxGPUTest, OneThatDrivesTheScreenIsAlwaysRead) {
    addCard(1, "amdgpu", amd);
    set(amd, "boot_vga", "1");
    set(amd, "power/runtime_status", "active");
    set(amd, "power/control", "auto");
    set(amd, "gpu_busy_percent", "0");
    for (int i = 0; i < 5; ++i) next();
    set(amd, "gpu_busy_percent", "90");
    EXPECT_EQ(next()->device, 0.9);
}

TEST_F(LinuxGPUTest, OfSeveralTheBusiestAwakeOneIsTold) {
    addCard(0, "amdgpu", intel);
    addCard(1, "amdgpu", amd);
    set(intel, "gpu_busy_percent", "10");
    set(amd, "gpu_busy_percent", "20");
    EXPECT_EQ(next()->device, 0.2);
    set(amd, "power/runtime_status", "suspended");
    EXPECT_EQ(next()->device, 0.1);
    set(intel, "gpu_busy_percent", "0");
    EXPECT_EQ(next()->device, 0);
}

TEST_F(LinuxGPUTest, TheTimesOfAllClientsOfAProcessAddUp) {
    addCard(0, "i915", intel);
    addCard(1, "amdgpu", amd);
    hold(100, 5, "renderD128", client(intel, 1, 100));
    hold(100, 6, "renderD129", client(amd, 1, 30));
    hold(100, 7, "card1", client(amd, 1, 30)); // the same once more
    hold(200, 5, "card1", client(amd, 2, 7));
    hold(300, 5, "card1", "pos:\t0\n"); // no client
    tree.link("proc/400/fd/3", "socket:[77]");
    nextTimes();
    EXPECT_EQ(nextTimes(), (Times{{100, 130}, {200, 7}}));
    tree.remove("proc/200");
    EXPECT_EQ(nextTimes(), (Times{{100, 130}}));
}

TEST_F(LinuxGPUTest, OnePassIsOneReading) {
    addCard(0, "i915", intel);
    hold(100, 5, "renderD128", client(intel, 1, 100));
    nextTimes();
    write(100, 5, client(intel, 1, 150));
    gpu.gpu();
    EXPECT_EQ(gpu.gpuTimes(), (Times{{100, 100}}));
    EXPECT_EQ(nextTimes(), (Times{{100, 150}}));
}

class LinuxGPUWithNvidiaTest : public LinuxGPUTest {
  protected:
    LinuxGPUWithNvidiaTest() {
        fake.devices = {{.address = nvidia, .load = 37, .memory = 4096, .cores = 10}};
        addNvidia(nvidia);
    }
};

TEST_F(LinuxGPUWithNvidiaTest, ItsLibraryTellsLoadMemoryAndCores) {
    EXPECT_EQ(
        next(),
        (GPUSnapshot{.device = 0.37, .memoryInUse = 4096, .memoryAllocated = 4096, .cores = 10}));
}

TEST_F(LinuxGPUWithNvidiaTest, ItsProcessesGetTheirTime) {
    fake.devices[0].samples = {
        {.pid = 100, .timeStamp = 1, .smUtil = 1, .memUtil = 0, .encUtil = 0, .decUtil = 0}};
    next();
    EXPECT_TRUE(gpu.gpuTimes().contains(100));
}

TEST_F(LinuxGPUWithNvidiaTest, TheLibraryIsNotOpenedWhileTheProcessorSleeps) {
    set(nvidia, "power/runtime_status", "suspended");
    for (int i = 0; i < 5; ++i) EXPECT_EQ(next(), std::nullopt);
    EXPECT_EQ(fake.inits, 0);
    set(nvidia, "power/runtime_status", "active");
    EXPECT_EQ(next()->device, 0.37);
}

TEST_F(LinuxGPUWithNvidiaTest, AnIdleProcessorThatMaySleepIsLetGoOf) {
    set(nvidia, "power/runtime_status", "active");
    set(nvidia, "power/control", "auto");
    fake.devices[0].load = 0;
    EXPECT_EQ(next()->device, 0);
    next();
    next();
    EXPECT_EQ(fake.on, 1);
    EXPECT_EQ(next()->device, 0); // known without asking
    EXPECT_EQ(fake.on, 0);
    set(nvidia, "power/runtime_status", "suspended");
    for (int i = 0; i < 20; ++i) EXPECT_EQ(next()->device, 0);
    EXPECT_EQ(fake.inits, 1);
}

TEST(LinuxGPUHost, WhatIsToldMakesSenseOnThisMachine) {
    std::uint64_t now = second;
    LinuxGPU gpu(
        "/", std::make_shared<ProcessFiles>("/"), [&] { return now; }, "libnvidia-ml.so.1",
        std::chrono::milliseconds(250));
    for (int i = 0; i < 3; ++i, now += second) {
        const auto snapshot = gpu.gpu();
        EXPECT_TRUE(!snapshot || (snapshot->device >= 0 && snapshot->device <= 1));
        for (const auto& [pid, time] : gpu.gpuTimes()) EXPECT_GE(pid, 1);
    }
}

} // namespace
} // namespace tavero
