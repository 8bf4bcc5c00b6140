#include "platform/linux/BlockStat.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavero::parseBlockStat({reinterpret_cast<const char*>(data), size});
    return 0;
}
