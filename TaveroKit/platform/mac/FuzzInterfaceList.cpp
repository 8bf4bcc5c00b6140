#include "platform/mac/InterfaceList.h"

// Any bytes are an interface list: the walk ends, inside them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    if (tavero::parseInterfaceList(bytes).size() > size) __builtin_trap();
    tavero::parseInterfaceData(bytes);
    return 0;
}
