#include "time/Clock.h"
#include "time/PendingCalls.h"

#include <QObject>
#include <QSocketNotifier>

#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <ctime>

namespace tavero {

namespace {

// One kernel timer for all pending calls, on the clock that counts suspended time too: what fell
// due while the machine slept is called as soon as it wakes.
class BootTimeClock final : public Clock {
  public:
    BootTimeClock()
        : timer_(timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
          notifier_(timer_, QSocketNotifier::Read) {
        QObject::connect(&notifier_, &QSocketNotifier::activated, [this] { fire(); });
    }

    ~BootTimeClock() override { close(timer_); }

    Date now() const override { return std::chrono::system_clock::now(); }

    Timer after(std::chrono::nanoseconds delay, std::function<void()> action) override {
        Timer timer =
            calls_.add(elapsed() + std::max(delay, std::chrono::nanoseconds{}), std::move(action));
        arm();
        return timer;
    }

  private:
    static std::chrono::nanoseconds elapsed() {
        timespec time{};
        clock_gettime(CLOCK_BOOTTIME, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

    void fire() {
        std::uint64_t expirations = 0;
        // Only makes the descriptor quiet again; what is due is told by the clock.
        [[maybe_unused]] const ssize_t ignored = read(timer_, &expirations, sizeof expirations);
        const std::chrono::nanoseconds now = elapsed();
        while (const auto call = calls_.take(now)) call->action();
        arm();
    }

    void arm() {
        const auto due = calls_.nextDue();
        itimerspec time{};
        if (due) {
            const auto seconds = std::chrono::floor<std::chrono::seconds>(*due);
            time.it_value = {.tv_sec = seconds.count(), .tv_nsec = (*due - seconds).count()};
        }
        timerfd_settime(timer_, TFD_TIMER_ABSTIME, &time, nullptr);
    }

    int timer_;
    QSocketNotifier notifier_;
    PendingCalls calls_;
};

} // namespace

std::unique_ptr<Clock> hostClock() { return std::make_unique<BootTimeClock>(); }

} // namespace tavero
