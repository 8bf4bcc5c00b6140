#pragma once

#include <chrono>
#include <functional>
#include <future>

namespace tavero {

// Questions to the kernel that may take long: a busy embedded controller, a driver that waits for
// its firmware. Each is asked on a thread of its own, which ends with it, and waited for only so
// long. One that hangs holds nobody up twice: until it has ended, no other is begun.
class BoundedCalls {
  public:
    explicit BoundedCalls(std::chrono::milliseconds limit) : limit_(limit) {}

    // True if the work is done. Otherwise it was not begun, or it goes on without being waited for
    // and must therefore own whatever it touches.
    bool run(std::function<void()> work);

  private:
    std::chrono::milliseconds limit_;
    std::future<void> last_;
};

} // namespace tavero
