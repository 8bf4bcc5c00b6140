#include "Readers.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

TEST(Readers, AMachineWithoutSourcesHasNoReaders) {
    const Readers none = readers(Machine{});
    EXPECT_FALSE(none.cpu || none.memory || none.disk || none.volumes || none.network ||
                 none.sensors || none.wifi || none.processes || none.unusualActivity ||
                 none.appGPU || none.networkUsage || none.smc || none.gpu || none.battery ||
                 none.sound || none.connection);
}

TEST(Readers, ThisMachineHasTheReadersOfItsSourcesOnThisMachine) {
    const Readers host = readers(Machine::host());
    ASSERT_TRUE(host.cpu && host.memory && host.disk && host.volumes && host.network);
    const std::optional<MemorySnapshot> memory = host.memory();
    ASSERT_TRUE(memory);
    EXPECT_GT(memory->total, 0u);
    EXPECT_LE(memory->used(), memory->total);
    const std::optional<CPUSnapshot> cpu = host.cpu(); // averages since boot
    ASSERT_TRUE(cpu);
    EXPECT_FALSE(cpu->perCore.empty());
    EXPECT_GE(cpu->total(), 0);
    EXPECT_LE(cpu->total(), 1);
}

} // namespace
} // namespace tavero
