#pragma once

#include "records/AppIdentity.h"

#include <cstdint>
#include <string>

namespace tavero {

// One process in one pass.
struct ProcessSample {
    std::int32_t pid = 0;
    std::string name;              // the last component of `path`
    std::string path;              // of the executable, whole
    double cpu = 0;                // cores since the previous pass; 0 on first appearance
    std::uint64_t memory = 0;      // footprint, bytes
    std::uint64_t diskRead = 0;    // bytes, cumulative for the process
    std::uint64_t diskWritten = 0; // likewise
    // False if the system refused the usage; every number here is then 0.
    bool hasUsage = false;
    AppIdentity app;
    double diskReadRate = 0;  // bytes a second; 0 on first appearance
    double diskWriteRate = 0; // likewise
    std::int64_t threads = 0; // 0 unless asked for

    bool operator==(const ProcessSample&) const = default;
};

} // namespace tavero
