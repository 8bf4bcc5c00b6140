#include "platform/linux/processes/DesktopEntry.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto entry = tavero::parseDesktopEntry(text); entry && entry->program.size() > size)
        std::abort();
    // A locale may be anything too.
    const auto locales = tavero::localeCandidates(text.substr(0, text.find('\n')));
    if (locales.size() > 4) std::abort();
    const auto entry = tavero::parseDesktopEntry(text, tavero::localeCandidates("de_AT@x"));
    if (entry && entry->name.size() > size) std::abort();
    return 0;
}
