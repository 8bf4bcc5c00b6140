#include "platform/linux/processes/ProcFiles.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto stat = tavero::parseStat(text); stat && (stat->parent < 0 || stat->threads < 0))
        std::abort();
    tavero::parseOwnPages(text);
    tavero::parseDiskBytes(text);
    tavero::parseForks(text);
    if (tavero::parseCgroup(text).find('\n') != text.npos) std::abort();
    tavero::scriptOf(text);
    tavero::variable(text, "APPIMAGE");
    if (tavero::parseInnermostPid(text).value_or(1) < 1) std::abort();
    if (tavero::parseFlatpakId(text).find('\n') != text.npos) std::abort();
    return 0;
}
