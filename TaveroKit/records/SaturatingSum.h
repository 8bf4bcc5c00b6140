#pragma once

#include <cstdint>
#include <limits>

namespace tavero {

// The sum of two byte counts. One past 64 bits would mean a broken source; it stays at the largest
// value, so that a figure never wraps to a small one.
constexpr std::uint64_t saturatingSum(std::uint64_t a, std::uint64_t b) {
    return a > std::numeric_limits<std::uint64_t>::max() - b
               ? std::numeric_limits<std::uint64_t>::max()
               : a + b;
}

// The same for products: pages into bytes.
constexpr std::uint64_t saturatingProduct(std::uint64_t a, std::uint64_t b) {
    return b != 0 && a > std::numeric_limits<std::uint64_t>::max() / b
               ? std::numeric_limits<std::uint64_t>::max()
               : a * b;
}

} // namespace tavero
