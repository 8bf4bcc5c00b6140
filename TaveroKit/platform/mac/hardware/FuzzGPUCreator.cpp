#include "platform/mac/hardware/GPUReader.h"

#include <string>

// Whatever a client's creator is called, a pid read from it stands there in digits.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    const auto pid = tavero::GPUReader::creator(text);
    if (!pid) return 0;
    if (*pid < 0) __builtin_trap();
    if (text.find(std::to_string(*pid), 4) == text.npos) __builtin_trap();
    return 0;
}
