#include "platform/linux/sound/PipeWireValues.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

// The value of a setting that names the default device. A plain name that is found can be written
// and found again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tavero::PipeWireValues;
    const std::string name = nameIn({reinterpret_cast<const char*>(data), size});
    const bool isPlain = std::all_of(name.begin(), name.end(),
                                     [](char letter) { return letter >= ' ' && letter <= '~'; });
    if (isPlain && nameIn(withName(name)) != name) __builtin_trap();
    return 0;
}
