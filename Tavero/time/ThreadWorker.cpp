#include "time/ThreadWorker.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace tavero {

ThreadWorker::ThreadWorker() : thread_([this](const std::stop_token& stop) { work(stop); }) {}

ThreadWorker::~ThreadWorker() {
    thread_.request_stop();
    thread_.join();
}

void ThreadWorker::run(std::function<void()> job, std::function<void()> done) {
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back({std::move(job), std::move(done)});
    }
    wake_.notify_one();
}

void ThreadWorker::work(const std::stop_token& stop) {
    for (;;) {
        Job next;
        {
            std::unique_lock lock(mutex_);
            if (!wake_.wait(lock, stop, [this] { return !jobs_.empty(); })) return;
            next = std::move(jobs_.front());
            jobs_.pop_front();
        }
        if (stop.stop_requested()) return;
        next.job();
        {
            const std::lock_guard lock(mutex_);
            finished_.push_back(std::move(next.done));
        }
        QCoreApplication::postEvent(&reporter_, new QEvent(QEvent::User));
    }
}

bool ThreadWorker::Reporter::event(QEvent* event) {
    if (event->type() != QEvent::User) return QObject::event(event);
    worker_.report();
    return true;
}

// One finished job for each event.
void ThreadWorker::report() {
    std::function<void()> done;
    {
        const std::lock_guard lock(mutex_);
        if (finished_.empty()) return;
        done = std::move(finished_.front());
        finished_.pop_front();
    }
    done();
}

} // namespace tavero
