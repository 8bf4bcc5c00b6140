#pragma once

#include "records/AppIdentity.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tavero {

// The counters of one process at one moment.
struct ProcessCounters {
    std::int32_t pid = 0; // below 1 is the kernel itself and is passed over
    // When it started, in whatever unit, 0 if unknown. Tells it from a later process with its pid.
    std::uint64_t start = 0;
    // Changes when the path or the owner may have changed though it is the same process: it
    // replaced its program, or was moved. Stays 0 where that isn't noticed.
    std::uint32_t revision = 0;

    bool hasUsage = false;         // false if the system refuses what follows
    std::uint64_t cpuTime = 0;     // ticks of the timebase, user and system
    std::uint64_t memory = 0;      // footprint, bytes
    std::uint64_t diskRead = 0;    // bytes, cumulative
    std::uint64_t diskWritten = 0; // likewise
    std::int64_t threads = 0;      // 0 unless asked for

    bool operator==(const ProcessCounters&) const = default;
};

// A tick is numer / denom nanoseconds.
struct Timebase {
    std::uint32_t numer = 1;
    std::uint32_t denom = 1;
};

// What one process of the operating system does, in plain words.
struct SystemProcess {
    std::string_view name;
    std::string_view purpose;
};
using SystemVocabulary = std::span<const SystemProcess>;

// Where the processes of a machine come from.
class ProcessSource {
  public:
    virtual ~ProcessSource() = default;

    // All processes now, in the order of the system's list. The table is the source's own and valid
    // until the next call, so that a pass in which little changed costs little.
    virtual std::span<const ProcessCounters> processes(bool threads) = 0;

    // The path of the executable. Absent if the process is gone or the system refuses.
    virtual std::optional<std::string> path(std::int32_t pid) = 0;

    // Who the process belongs to. Absent where the path alone tells; an owner without an id is a
    // tool to be named by its path.
    virtual std::optional<AppIdentity> owner(std::int32_t pid, const std::string& path) {
        static_cast<void>(pid), static_cast<void>(path);
        return std::nullopt;
    }

    // A clock that only goes forward, in ticks of the timebase.
    virtual std::uint64_t clock() = 0;
    virtual Timebase timebase() { return {}; }

    // The system processes that this machine can have. Empty means those of macOS.
    virtual SystemVocabulary vocabulary() { return {}; }
};

} // namespace tavero
