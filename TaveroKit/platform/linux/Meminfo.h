#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tavero {

// What Tavero uses of /proc/meminfo, in KiB. A line that a kernel lacks counts 0.
struct Meminfo {
    std::uint64_t total = 0;                // MemTotal
    std::uint64_t free = 0;                 // MemFree
    std::optional<std::uint64_t> available; // MemAvailable
    std::uint64_t buffers = 0;              // Buffers
    std::uint64_t cached = 0;               // Cached
    std::uint64_t reclaimableSlab = 0;      // SReclaimable
    std::uint64_t shared = 0;               // Shmem
    std::uint64_t anonymous = 0;            // AnonPages
    std::uint64_t compressedSwap = 0;       // Zswap: the memory it takes, not what it holds
    std::uint64_t swapTotal = 0;            // SwapTotal
    std::uint64_t swapFree = 0;             // SwapFree

    bool operator==(const Meminfo&) const = default;
};

// Absent without a MemTotal above 0.
std::optional<Meminfo> parseMeminfo(std::string_view text);

// The share of the last ten seconds in which tasks waited for memory, in percent.
struct MemoryStall {
    double some = 0; // at least one task did
    double full = 0; // all that could run did

    bool operator==(const MemoryStall&) const = default;
};

// /proc/pressure/memory. Absent without its "some" line; "full" counts 0 if it is missing.
std::optional<MemoryStall> parseMemoryStall(std::string_view text);

// The memory that a zram device takes, in bytes: the third figure of its mm_stat.
std::optional<std::uint64_t> parseZramMemory(std::string_view text);

} // namespace tavero
