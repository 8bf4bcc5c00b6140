#pragma once

#include <string>
#include <string_view>

namespace tavero {

// What the app rules need to know about Unicode. Texts are UTF-8; any bytes are accepted.

// In Unicode lower case, independent of language. Defined once a platform.
std::string lowerCase(std::string_view text);

// Bytes that are not UTF-8 replaced by U+FFFD. Paths and process names may hold any.
std::string wellFormed(std::string_view text);

// Without the characters of category Format (Cf): invisible marks that steer the direction of text,
// join letters or tag languages. Bytes that are not UTF-8 stay as they are.
std::string withoutFormatCharacters(std::string_view text);

} // namespace tavero
