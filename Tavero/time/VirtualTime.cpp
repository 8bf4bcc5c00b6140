#include "time/VirtualTime.h"

#include <algorithm>
#include <list>

namespace tavero {

class VirtualTime::Call final : public PendingCall {
  public:
    Call(std::shared_ptr<Calls> calls, Due due) : calls_(std::move(calls)), due_(due) {}
    ~Call() override { calls_->erase(due_); }

  private:
    std::shared_ptr<Calls> calls_;
    Due due_;
};

namespace {

class VirtualWorker final : public Worker {
  public:
    explicit VirtualWorker(Clock& clock) : clock_(clock) {}

  private:
    void run(std::function<void()> job, std::function<void()> done) override {
        const auto slot = timers_.emplace(timers_.end());
        *slot = clock_.after({}, [this, slot, job = std::move(job), done = std::move(done)] {
            const Timer finished = std::move(*slot); // its end must not end this call
            timers_.erase(slot);
            job();
            done();
        });
    }

    Clock& clock_;
    std::list<Timer> timers_;
};

} // namespace

VirtualTime::VirtualTime(Date start) : now_(start) {}

Timer VirtualTime::after(std::chrono::nanoseconds delay, std::function<void()> action) {
    const Due due{elapsed_ + std::max(delay, std::chrono::nanoseconds{}), sequence_++};
    calls_->emplace(due, std::move(action));
    return std::make_unique<Call>(calls_, due);
}

void VirtualTime::advance(std::chrono::nanoseconds time) {
    const std::chrono::nanoseconds end = elapsed_ + time;
    while (!calls_->empty() && calls_->begin()->first.first <= end) {
        auto next = calls_->extract(calls_->begin());
        now_ += next.key().first - elapsed_;
        elapsed_ = next.key().first;
        next.mapped()();
    }
    now_ += end - elapsed_;
    elapsed_ = end;
}

std::unique_ptr<Worker> VirtualTime::worker() { return std::make_unique<VirtualWorker>(*this); }

} // namespace tavero
