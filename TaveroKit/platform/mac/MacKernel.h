#pragma once

#include "platform/mac/VMStatistics.h"
#include "records/CPUSnapshot.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tavero {

// The calls to the Mac's kernel, each with its answer as the call leaves it. HostKernel makes them,
// SimKernel answers them for the simulated Mac; what the answers mean is decided above, in code
// that is the same on both.
class MacKernel {
  public:
    virtual ~MacKernel() = default;

    // Four integers a CPU, in the order user, system, idle, nice; each one's bits are an unsigned
    // count.
    struct ProcessorLoad {
        std::uint32_t cpuCount = 0;
        std::vector<std::int32_t> states;
    };

    // host_processor_info for PROCESSOR_CPU_LOAD_INFO; absent if it fails.
    virtual std::optional<ProcessorLoad> processorLoad() = 0;

    // host_statistics64 for HOST_VM_INFO64; absent if it fails.
    virtual std::optional<VMStatistics> vmStatistics() = 0;

    // host_page_size: the bytes in a page of the statistics; absent if it fails.
    virtual std::optional<std::uint64_t> pageSize() = 0;

    // getloadavg into zeroed numbers.
    virtual LoadAverage loadAverage() = 0;

    // sysctlbyname: 0 on success. `size` is the room in the buffer, and then what was written.
    virtual int sysctlByName(const char* name, void* buffer, std::size_t& size) = 0;

    // sysctl: the same by numbers. Without a buffer it only tells the size.
    virtual int sysctl(std::span<const int> numbers, void* buffer, std::size_t& size) = 0;

    // if_indextoname; absent if there is no such interface.
    virtual std::optional<std::string> interfaceName(std::uint32_t index) = 0;
};

} // namespace tavero
