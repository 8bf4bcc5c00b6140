#include "time/VirtualTime.h"

#include <algorithm>
#include <list>
#include <utility>

namespace tavero {

namespace {

class VirtualWorker final : public Worker {
  public:
    VirtualWorker(Clock& clock, std::chrono::nanoseconds jobTime)
        : clock_(clock), jobTime_(jobTime) {}

  private:
    void run(std::function<void()> job, std::function<void()> done) override {
        const auto slot = timers_.emplace(timers_.end());
        *slot = clock_.after(jobTime_, [this, slot, job = std::move(job), done = std::move(done)] {
            timers_.erase(slot);
            job();
            done();
        });
    }

    Clock& clock_;
    std::chrono::nanoseconds jobTime_;
    std::list<Timer> timers_;
};

} // namespace

VirtualTime::VirtualTime(Date start) : now_(start) {}

Timer VirtualTime::after(std::chrono::nanoseconds delay, std::function<void()> action) {
    return calls_.add(elapsed_ + std::max(delay, std::chrono::nanoseconds{}), std::move(action));
}

void VirtualTime::advance(std::chrono::nanoseconds time) {
    const std::chrono::nanoseconds end = elapsed_ + time;
    while (const auto call = calls_.take(end)) {
        moveTo(call->due);
        call->action();
    }
    moveTo(end);
}

void VirtualTime::moveTo(std::chrono::nanoseconds elapsed) {
    now_ += elapsed - elapsed_;
    elapsed_ = elapsed;
}

std::unique_ptr<Worker> VirtualTime::worker(std::chrono::nanoseconds jobTime) {
    return std::make_unique<VirtualWorker>(*this, jobTime);
}

} // namespace tavero
