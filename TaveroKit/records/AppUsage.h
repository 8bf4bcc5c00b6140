#pragma once

#include "records/AppIdentity.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// One row of the app tables. The first six fields are given when a row is made; the rest start at
// zero, absent or empty.
struct AppUsage {
    AppIdentity identity;
    std::string name;                      // as a person would call it
    std::optional<std::string> bundlePath; // for an app; absent for tools and the system
    double cpu = 0;                        // cores, sum over its processes
    std::uint64_t memory = 0;              // bytes, sum over its processes
    std::int64_t processCount = 0;

    double diskReadRate = 0;         // bytes a second
    double diskWriteRate = 0;        // likewise
    std::optional<double> gpu;       // fraction; absent if no process has a GPU reading
    std::optional<double> watts;     // estimated share of the system's power
    std::optional<std::string> flag; // short badge
    std::optional<std::string> note; // remark of one line
    std::int64_t threads = 0;
    std::optional<double> cpuAverage;         // cores, mean of the last minute
    std::optional<double> gpuAverage;         // likewise
    std::optional<double> gpuPeak;            // largest value of the last minute
    std::optional<std::int64_t> memoryChange; // bytes, positive is growth
    std::optional<double> memoryShare;        // fraction of installed memory
    double networkInRate = 0;          // bytes a second; 0 on a light pass and the first read
    double networkOutRate = 0;         // likewise
    std::uint64_t networkInTotal = 0;  // bytes since the engine started
    std::uint64_t networkOutTotal = 0; // likewise
    std::vector<AppUsage> children;    // one row a process name; empty for a single process

    const std::string& id() const { return identity.id; }

    bool operator==(const AppUsage&) const = default;
};

} // namespace tavero
