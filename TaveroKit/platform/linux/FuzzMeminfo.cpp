#include "platform/linux/Meminfo.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto memory = tavero::parseMeminfo(text); memory && memory->total == 0) std::abort();
    tavero::parseZramMemory(text);
    return 0;
}
