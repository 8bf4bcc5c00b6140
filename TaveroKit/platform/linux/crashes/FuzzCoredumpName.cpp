#include "platform/linux/crashes/CoredumpName.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// Names of core dumps.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view name(reinterpret_cast<const char*>(data), size);
    const auto dump = tavero::coredumpName(name);
    if (!dump) return 0;
    if (dump->comm.empty() || dump->comm.size() > size || dump->pid < 0) std::abort();
    if (dump->time < tavero::Date()) std::abort();
    if (name.find(std::to_string(dump->pid)) == name.npos) std::abort();
    return 0;
}
