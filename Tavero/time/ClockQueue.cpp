#include "time/ClockQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThread>

#include <deque>
#include <future>
#include <mutex>
#include <utility>

namespace tavero {

// Lives on the main thread, where an event to it runs one task.
class ClockQueue::Receiver final : public QObject {
  public:
    explicit Receiver(ClockQueue& queue) : queue_(queue) {}

    ClockQueue& queue() { return queue_; }
    bool isHere() const { return thread() == QThread::currentThread(); }

  private:
    void customEvent(QEvent*) override { queue_.runNext(); }

    ClockQueue& queue_;
};

// What was brought and not yet run, in order.
struct ClockQueue::Inbox {
    std::mutex mutex; // guards the rest, and keeps the receiver alive while an event goes out
    std::deque<std::function<void()>> tasks;
    Receiver* receiver = nullptr; // null when the queue is gone
};

ClockQueue::ClockQueue(Clock& clock)
    : clock_(clock), receiver_(std::make_unique<Receiver>(*this)),
      inbox_(std::make_shared<Inbox>()) {
    inbox_->receiver = receiver_.get();
}

ClockQueue::~ClockQueue() {
    std::deque<std::function<void()>> dropped; // ends without the lock: a task may own anything
    const std::lock_guard lock(inbox_->mutex);
    inbox_->receiver = nullptr;
    dropped.swap(inbox_->tasks);
}

void ClockQueue::async(std::function<void()> task) { post(*inbox_, std::move(task)); }

void ClockQueue::after(std::chrono::nanoseconds delay, std::function<void()> task) {
    call(delay, std::move(task));
}

void ClockQueue::sync(const std::function<void()>& task) {
    if (receiver_->isHere()) return task();
    auto job = std::make_shared<std::packaged_task<void()>>(task);
    const std::future<void> done = job->get_future();
    async([job] { (*job)(); });
    job.reset(); // so that dropping the task ends the wait
    done.wait();
}

ClockQueue::Poster ClockQueue::poster() const {
    return [inbox = inbox_](std::function<void()> task) { post(*inbox, std::move(task)); };
}

// Each task comes with one call of runNext(): a timer's from here, an event's from elsewhere, since
// the clock is for the main thread alone.
void ClockQueue::post(Inbox& inbox, std::function<void()> task) {
    const std::lock_guard lock(inbox.mutex);
    if (!inbox.receiver) return;
    inbox.tasks.push_back(std::move(task));
    if (!inbox.receiver->isHere())
        return QCoreApplication::postEvent(inbox.receiver, new QEvent(QEvent::User));
    ClockQueue& queue = inbox.receiver->queue();
    queue.call({}, [&queue] { queue.runNext(); });
}

void ClockQueue::runNext() {
    std::function<void()> task;
    {
        const std::lock_guard lock(inbox_->mutex);
        if (inbox_->tasks.empty()) return;
        task = std::move(inbox_->tasks.front());
        inbox_->tasks.pop_front();
    }
    task();
}

void ClockQueue::call(std::chrono::nanoseconds delay, std::function<void()> action) {
    const auto slot = timers_.emplace(timers_.end());
    *slot = clock_.after(delay, [this, slot, action = std::move(action)] {
        timers_.erase(slot);
        action();
    });
}

} // namespace tavero
