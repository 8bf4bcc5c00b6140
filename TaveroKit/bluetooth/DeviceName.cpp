#include "bluetooth/DeviceName.h"

#include <algorithm>
#include <iterator>

namespace tavero {

namespace {

// Unicode's White_Space, as UTF-8.
constexpr std::string_view spaces[] = {" ",
                                       "\t",
                                       "\n",
                                       "\v",
                                       "\f",
                                       "\r",
                                       "\xC2\x85",
                                       "\xC2\xA0",
                                       "\xE1\x9A\x80",
                                       "\xE2\x80\x80",
                                       "\xE2\x80\x81",
                                       "\xE2\x80\x82",
                                       "\xE2\x80\x83",
                                       "\xE2\x80\x84",
                                       "\xE2\x80\x85",
                                       "\xE2\x80\x86",
                                       "\xE2\x80\x87",
                                       "\xE2\x80\x88",
                                       "\xE2\x80\x89",
                                       "\xE2\x80\x8A",
                                       "\xE2\x80\xA8",
                                       "\xE2\x80\xA9",
                                       "\xE2\x80\xAF",
                                       "\xE2\x81\x9F",
                                       "\xE3\x80\x80"};

template <typename IsAt>
std::size_t spaceLength(IsAt isAt) {
    const auto found = std::find_if(std::begin(spaces), std::end(spaces), isAt);
    return found == std::end(spaces) ? 0 : found->size();
}

} // namespace

std::string deviceName(std::string_view text) {
    while (const std::size_t length =
               spaceLength([&](std::string_view space) { return text.starts_with(space); }))
        text.remove_prefix(length);
    while (const std::size_t length =
               spaceLength([&](std::string_view space) { return text.ends_with(space); }))
        text.remove_suffix(length);
    return std::string(text);
}

} // namespace tavero
