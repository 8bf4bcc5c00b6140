#include "platform/linux/processes/UnitNames.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view name(reinterpret_cast<const char*>(data), size);
    const std::string plain = tavero::unescapeUnitName(name);
    if (plain.size() > name.size()) std::abort();
    if (name.find('\\') == name.npos && plain != name) std::abort();
    for (const std::string& id : tavero::appIdCandidates(name))
        if (id.empty()) std::abort();
    tavero::snapUnit(name);
    tavero::containerName(name, "docker");
    if (tavero::flatpakOfControlGroup(name).find('/') != name.npos && name.find('\\') == name.npos)
        std::abort();
    return 0;
}
