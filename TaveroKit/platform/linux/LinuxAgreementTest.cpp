#include "counters/DiskReader.h"
#include "counters/MemoryReader.h"
#include "platform/Machine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

// Tavero's figures beside those of the tools that everybody has. Both read at slightly different
// moments, hence the tolerances, which are a small part of the whole.
namespace tavero {
namespace {

std::string outputOf(const char* command) {
    std::string text;
    FILE* pipe = ::popen(command, "r");
    if (!pipe) return text;
    char buffer[4096];
    while (const std::size_t length = std::fread(buffer, 1, sizeof buffer, pipe))
        text.append(buffer, length);
    return ::pclose(pipe) == 0 ? text : "";
}

TEST(Agreement, MemoryIsWhatFreeTellsOnThisMachine) {
    const Machine machine = Machine::host();
    const auto memory = MemoryReader::read(*machine.memory);
    unsigned long long total = 0, used = 0, free = 0, shared = 0, cached = 0, swap = 0;
    ASSERT_EQ(std::sscanf(outputOf("LC_ALL=C free -b").c_str(),
                          "%*[^\n]\nMem: %llu %llu %llu %llu %llu %*u\nSwap: %llu", &total, &used,
                          &free, &shared, &cached, &swap),
              6);
    ASSERT_TRUE(memory);
    const double tolerance = 0.02 * static_cast<double>(total);
    EXPECT_EQ(memory->total, total);
    EXPECT_EQ(memory->swapTotal, swap);
    EXPECT_NEAR(static_cast<double>(memory->free()), static_cast<double>(free), tolerance);
    // Shared memory belongs to the apps that share it, not to the cache.
    EXPECT_NEAR(static_cast<double>(memory->cached + shared), static_cast<double>(cached),
                tolerance);
}

TEST(Agreement, FreeSpaceIsWhatDfTellsOnThisMachine) {
    const Machine machine = Machine::host();
    const DiskSnapshot disk = DiskReader::read(*machine.disk, "/", true);
    long long size = 0, available = 0;
    ASSERT_EQ(std::sscanf(outputOf("LC_ALL=C df -B1 --output=size,avail /").c_str(),
                          "%*[^\n]\n%lld %lld", &size, &available),
              2);
    EXPECT_EQ(disk.capacity, size);
    ASSERT_TRUE(disk.available);
    EXPECT_NEAR(static_cast<double>(*disk.available), static_cast<double>(available),
                0.01 * static_cast<double>(size));
}

} // namespace
} // namespace tavero
