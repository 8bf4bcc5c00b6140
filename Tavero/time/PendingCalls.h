#pragma once

#include "time/Clock.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>

namespace tavero {

// The calls a clock has been asked for: ordered by when they are due, and among equals by when they
// were asked for. Times are whatever steady time the clock counts in.
class PendingCalls {
  public:
    struct Call {
        std::chrono::nanoseconds due;
        std::function<void()> action;
    };

    // The call is forgotten when the timer is destroyed, which may be after this list is gone.
    Timer add(std::chrono::nanoseconds due, std::function<void()> action);

    std::optional<std::chrono::nanoseconds> nextDue() const;
    std::size_t size() const { return calls_->size(); }

    // Takes out the first call if it is due by then. Its action can end its own timer.
    std::optional<Call> take(std::chrono::nanoseconds until);

  private:
    using Order = std::pair<std::chrono::nanoseconds, std::uint64_t>;
    using Calls = std::map<Order, std::function<void()>>;
    class Entry;

    std::shared_ptr<Calls> calls_ = std::make_shared<Calls>();
    std::uint64_t sequence_ = 0;
};

} // namespace tavero
