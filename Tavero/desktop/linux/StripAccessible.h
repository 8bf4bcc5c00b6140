#pragma once

namespace tavero {

// Lets screen readers see every StatusStrip: a tool bar with a button for each cell, which they can
// press. Any number of times.
void makeStripsAccessible();

} // namespace tavero
