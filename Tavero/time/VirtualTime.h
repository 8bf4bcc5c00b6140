#pragma once

#include "time/Clock.h"
#include "time/PendingCalls.h"
#include "time/Worker.h"

#include <chrono>
#include <functional>
#include <memory>

namespace tavero {

// A clock that stands still until it is told to move on: the time of tests. Calls come in the order
// of their times, and among equals in the order in which they were asked for.
class VirtualTime final : public Clock {
  public:
    explicit VirtualTime(Date start = Date(std::chrono::seconds(1'800'000'000)));

    Date now() const override { return now_; }
    Timer after(std::chrono::nanoseconds delay, std::function<void()> action) override;

    // Lets `time` pass, with everything that becomes due on the way. 0 runs what is due now.
    void advance(std::chrono::nanoseconds time);

    // Turns the wall clock without letting time pass, as a user or a time server would.
    void setWallClock(Date now) { now_ = now; }

    // How many calls are still to come.
    std::size_t pending() const { return calls_.size(); }

    // A worker whose jobs take this long. The clock must outlive it.
    std::unique_ptr<Worker> worker(std::chrono::nanoseconds jobTime = {});

  private:
    void moveTo(std::chrono::nanoseconds elapsed);

    PendingCalls calls_;
    std::chrono::nanoseconds elapsed_{};
    Date now_;
};

} // namespace tavero
