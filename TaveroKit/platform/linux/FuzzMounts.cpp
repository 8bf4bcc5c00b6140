#include "platform/linux/BlockDevices.h"
#include "platform/linux/MountInfo.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto mounts = tavero::parseMountInfo(text);
    const auto browsable = tavero::browsableMounts(mounts);
    if (browsable.size() > mounts.size()) std::abort();
    for (const tavero::Mount& mount : browsable)
        if (!mount.path.starts_with('/')) std::abort();
    if (tavero::decodedLabel(text).size() > size) std::abort();
    return 0;
}
