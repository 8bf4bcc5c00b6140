#pragma once

#include "platform/TaskQueue.h"
#include "time/Clock.h"

#include <chrono>
#include <functional>
#include <list>
#include <memory>

namespace tavero {

// A task queue of the main thread, in the time of a clock: for what a platform tells there anyway,
// and for what other threads have to bring over. Made and destroyed on the main thread, and never
// by one of its own tasks.
class ClockQueue final : public TaskQueue {
  public:
    // The clock must outlive the queue.
    explicit ClockQueue(Clock& clock);
    ~ClockQueue() override;

    void async(std::function<void()> task) override;
    void after(std::chrono::nanoseconds delay, std::function<void()> task) override;
    void sync(const std::function<void()>& task) override;

    // async() for whoever may outlive this queue: a task that comes too late is dropped.
    using Poster = std::function<void(std::function<void()>)>;
    Poster poster() const;

  private:
    class Receiver;
    struct Inbox;

    static void post(Inbox& inbox, std::function<void()> task);
    void runNext();
    void call(std::chrono::nanoseconds delay, std::function<void()> action);

    Clock& clock_;
    std::unique_ptr<Receiver> receiver_;
    std::shared_ptr<Inbox> inbox_;
    std::list<Timer> timers_;
};

} // namespace tavero
