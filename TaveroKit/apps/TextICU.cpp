#include "apps/Text.h"

#include <unicode/ucasemap.h>

#include <cstdint>
#include <limits>
#include <memory>

namespace tavero {

namespace {

struct Close {
    void operator()(UCaseMap* map) const { ucasemap_close(map); }
};

// For no language in particular: a Turkish desktop must not change which names are equal.
const UCaseMap* caseMap() {
    static const std::unique_ptr<UCaseMap, Close> map = [] {
        UErrorCode error = U_ZERO_ERROR;
        return std::unique_ptr<UCaseMap, Close>(ucasemap_open("", 0, &error));
    }();
    return map.get();
}

} // namespace

std::string lowerCase(std::string_view text) {
    // A character may grow in lower case, to three times its bytes at most.
    constexpr std::size_t growth = 3;
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max() / growth;
    if (!caseMap() || text.size() > most) return std::string(text);
    std::string result(text.size() * growth, '\0');
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t length =
        ucasemap_utf8ToLower(caseMap(), result.data(), static_cast<std::int32_t>(result.size()),
                             text.data(), static_cast<std::int32_t>(text.size()), &error);
    if (U_FAILURE(error)) return std::string(text);
    result.resize(static_cast<std::size_t>(length));
    return result;
}

} // namespace tavero
