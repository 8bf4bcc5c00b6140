#include "platform/linux/ProcStat.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

// /proc/stat, /proc/loadavg and lists of CPUs.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const tavero::CpuTime& cpu : tavero::parseProcStat(text))
        if (cpu.number >= 8192) std::abort();
    if (const auto load = tavero::parseLoadAverage(text); load && !(load->one >= 0)) std::abort();
    if (tavero::parseCpuList(text) < 0) std::abort();
    return 0;
}
