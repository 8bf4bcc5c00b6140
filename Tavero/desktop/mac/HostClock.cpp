#include "time/Clock.h"

#include <dispatch/dispatch.h>

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

// One timer source on the main queue, which the event loop of the application serves. Wall time is
// the only time of these sources that goes on while the machine sleeps.
class DispatchTimer final : public PendingCall {
  public:
    DispatchTimer(std::chrono::nanoseconds delay, std::function<void()> action)
        : action_(std::make_shared<std::function<void()>>(std::move(action))),
          source_(dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, DISPATCH_TIMER_STRICT,
                                         dispatch_get_main_queue())) {
        dispatch_source_set_timer(source_, dispatch_walltime(nullptr, delay.count()),
                                  DISPATCH_TIME_FOREVER, 0);
        const std::weak_ptr<std::function<void()>> call = action_;
        dispatch_source_set_event_handler(source_, ^{
          // Held for the length of the call: the action may destroy its own timer.
          if (const auto alive = call.lock()) (*alive)();
        });
        dispatch_resume(source_);
    }

    ~DispatchTimer() override {
        dispatch_source_cancel(source_);
        dispatch_release(source_);
    }

  private:
    std::shared_ptr<std::function<void()>> action_;
    dispatch_source_t source_;
};

class DispatchClock final : public Clock {
  public:
    Date now() const override { return std::chrono::system_clock::now(); }

    Timer after(std::chrono::nanoseconds delay, std::function<void()> action) override {
        return std::make_unique<DispatchTimer>(std::max(delay, std::chrono::nanoseconds{}),
                                               std::move(action));
    }
};

} // namespace

std::unique_ptr<Clock> hostClock() { return std::make_unique<DispatchClock>(); }

} // namespace tavero
