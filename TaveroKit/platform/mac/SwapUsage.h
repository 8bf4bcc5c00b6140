#pragma once

#include <cstdint>

namespace tavero {

// What the sysctl vm.swapusage answers: xsw_usage of <sys/sysctl.h>. Bytes, apart from the last
// two.
struct SwapUsage {
    std::uint64_t total = 0;
    std::uint64_t available = 0;
    std::uint64_t used = 0;
    std::uint32_t pageSize = 0;
    std::int32_t isEncrypted = 0;
};

} // namespace tavero
