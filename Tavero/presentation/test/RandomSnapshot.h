#pragma once

#include "records/LiveSnapshot.h"

#include <random>

namespace tavero {

// A snapshot whose fields are absent, ordinary, negative, huge, NaN or infinite at random. The same
// generator state gives the same snapshot.
LiveSnapshot randomSnapshot(std::mt19937_64& random);

} // namespace tavero
