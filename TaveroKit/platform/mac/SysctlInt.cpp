#include "platform/mac/SysctlInt.h"

#include <cstddef>

namespace tavero {

std::optional<std::int64_t> sysctlInt(MacKernel& kernel, const char* name) {
    std::int64_t value = 0;
    std::size_t size = sizeof value;
    if (kernel.sysctlByName(name, &value, size) != 0) return std::nullopt;
    // The low half on its own, so that a negative one stays negative.
    if (size == sizeof(std::int32_t)) return static_cast<std::int32_t>(value);
    return value;
}

} // namespace tavero
