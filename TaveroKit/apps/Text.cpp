#include "apps/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tavero {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// Every character of category Cf in Unicode 15.0, in order.
constexpr std::array<Range, 21> formatCharacters{{
    {0x00AD, 0x00AD},   {0x0600, 0x0605},   {0x061C, 0x061C},   {0x06DD, 0x06DD},
    {0x070F, 0x070F},   {0x0890, 0x0891},   {0x08E2, 0x08E2},   {0x180E, 0x180E},
    {0x200B, 0x200F},   {0x202A, 0x202E},   {0x2060, 0x2064},   {0x2066, 0x206F},
    {0xFEFF, 0xFEFF},   {0xFFF9, 0xFFFB},   {0x110BD, 0x110BD}, {0x110CD, 0x110CD},
    {0x13430, 0x1343F}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0001, 0xE0001},
    {0xE0020, 0xE007F},
}};

bool isFormat(char32_t character) {
    const auto range =
        std::lower_bound(formatCharacters.begin(), formatCharacters.end(), character,
                         [](const Range& r, char32_t value) { return r.last < value; });
    return range != formatCharacters.end() && character >= range->first;
}

struct Decoded {
    char32_t character = 0;
    std::size_t length = 1;
    bool valid = false; // if not, `length` is 1: the byte is nobody's
};

// The first character of a text that is not empty. Overlong forms, surrogates and values past
// U+10FFFF are not UTF-8.
Decoded decode(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    if (lead < 0x80) return {lead, 1, true};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return {};
    char32_t character = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0u) != 0x80u) return {};
        character = character << 6 | (byte(i) & 0x3Fu);
    }
    constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    if (character < smallest[length] || character > 0x10FFFF) return {};
    if (character >= 0xD800 && character <= 0xDFFF) return {};
    return {character, length, true};
}

// The text with each character passed through `piece`, which gets what was decoded and its bytes.
template <typename Piece>
std::string rewritten(std::string_view text, Piece piece) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Decoded decoded = decode(text);
        result += piece(decoded, text.substr(0, decoded.length));
        text.remove_prefix(decoded.length);
    }
    return result;
}

} // namespace

std::string wellFormed(std::string_view text) {
    return rewritten(text, [](const Decoded& decoded, std::string_view bytes) {
        return decoded.valid ? bytes : std::string_view("\uFFFD");
    });
}

std::string withoutFormatCharacters(std::string_view text) {
    return rewritten(text, [](const Decoded& decoded, std::string_view bytes) {
        return decoded.valid && isFormat(decoded.character) ? std::string_view() : bytes;
    });
}

} // namespace tavero
