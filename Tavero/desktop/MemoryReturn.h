#pragma once

namespace tavero {

// Gives freed memory back to the system, as far as the allocator can. Takes some milliseconds: for
// the moment when something big has gone for good, like a window.
void returnFreedMemory();

} // namespace tavero
