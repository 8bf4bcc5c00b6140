#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavero {

// Stands for a value that is not known, on every surface.
inline constexpr char placeholder[] = "–";

// The value if it is a number: what a source gives as NaN or infinity counts as not read.
std::optional<double> known(std::optional<double> value);

// Digits with so many decimals, as C's "%.Nf" in the C locale gives them, but never "-0".
// The placeholder if the value is not known.
std::string fixed(std::optional<double> value, int decimals);

// 0.47 as "47", without the sign.
std::string percent(std::optional<double> fraction);

// Memory in GB of 2^30 bytes, one decimal, without the unit.
std::string gibibytes(std::uint64_t bytes);

// The same as a whole number, rounded half away from zero.
std::string wholeGibibytes(std::uint64_t bytes);

// "2350" as "2,350": whole digits, which may have a sign, with `separator` between thousands.
std::string grouped(std::string digits, std::string_view separator);

} // namespace tavero
