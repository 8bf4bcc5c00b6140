#pragma once

#include "records/SaturatingSum.h"

#include <cstdint>
#include <utility>

namespace tavero {

// A cumulative count over a kernel counter that may step back: idle time is corrected now and then,
// and a device that is reset starts over. What is handed out only ever grows, because a difference
// below 0 would be read as a wrap.
class MonotonicCounter {
  public:
    // Takes the kernel's counter; what it counted before the first call is included.
    void update(std::uint64_t raw) {
        const std::uint64_t before = std::exchange(raw_, raw);
        if (raw > before) total_ = saturatingSum(total_, raw - before);
    }

    // Another device takes over, which counts from 0.
    void startOver() { raw_ = 0; }

    std::uint64_t total() const { return total_; }

  private:
    std::uint64_t raw_ = 0;
    std::uint64_t total_ = 0;
};

} // namespace tavero
