#pragma once

#include "components/SegmentList.h"
#include "presentation/Format.h"
#include "records/MemorySnapshot.h"

#include <vector>

namespace tavero {

// What the memory is used for, down to what is free: the segments of one bar. They never make more
// than the whole, also if the figures do.
std::vector<SegmentRow> memoryBreakdown(const MemorySnapshot& memory, const Format& format,
                                        bool isDark);

} // namespace tavero
