#pragma once

#include <cstddef>

namespace tavero {

// How often the test program has asked for memory, so that a pass can prove that it doesn't.
std::size_t allocationCount();

} // namespace tavero
