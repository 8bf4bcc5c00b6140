#pragma once

#include "records/Date.h"

#include <chrono>
#include <functional>
#include <memory>

namespace tavero {

// A call that is still to come. Destroying it cancels the call.
class PendingCall {
  public:
    virtual ~PendingCall() = default;
};

using Timer = std::unique_ptr<PendingCall>;

// Every wait and every question for the time goes through here, so that a test can let a month pass
// in a moment. Main thread only.
class Clock {
  public:
    virtual ~Clock() = default;

    virtual Date now() const = 0;

    // Calls `action` once, from the event loop, when `delay` has passed; with a delay of 0 that is
    // at once, but never from within this call. Time that the machine sleeps counts.
    [[nodiscard]] virtual Timer after(std::chrono::nanoseconds delay,
                                      std::function<void()> action) = 0;
};

// The clock of this machine, on Qt's event loop. Defined by the one platform that is linked in.
std::unique_ptr<Clock> hostClock();

} // namespace tavero
