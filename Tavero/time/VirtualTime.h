#pragma once

#include "time/Clock.h"
#include "time/Worker.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

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
    std::size_t pending() const { return calls_->size(); }

    // A worker whose jobs take no time and run when the clock next gets a chance. It must not
    // outlive this clock.
    std::unique_ptr<Worker> worker();

  private:
    using Due = std::pair<std::chrono::nanoseconds, std::uint64_t>;
    using Calls = std::map<Due, std::function<void()>>;
    class Call;

    // Shared with the pending calls, which may outlive the clock.
    std::shared_ptr<Calls> calls_ = std::make_shared<Calls>();
    std::uint64_t sequence_ = 0;
    std::chrono::nanoseconds elapsed_{};
    Date now_;
};

} // namespace tavero
