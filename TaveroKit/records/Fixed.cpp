#include "records/Fixed.h"

#include <array>
#include <charconv>

namespace tavero {

std::string fixedDigits(double value, int decimals) {
    // Not snprintf, whose decimal separator follows the locale. The largest double has 309 digits.
    std::array<char, 400> buffer;
    char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                    std::chars_format::fixed, decimals)
                          .ptr;
    std::string text(buffer.data(), end);
    const bool isZero = text.find_first_not_of("-0.") == std::string::npos;
    if (isZero && text.front() == '-') text.erase(0, 1);
    return text;
}

} // namespace tavero
