#pragma once

#include "time/Worker.h"

#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace tavero {

// A worker with one thread of its own, which reports back through Qt's event loop. It sleeps
// without a wake-up while there is nothing to do.
class ThreadWorker final : public Worker {
  public:
    ThreadWorker();
    ~ThreadWorker() override;

  private:
    struct Job {
        std::function<void()> job;
        std::function<void()> done;
    };

    void run(std::function<void()> job, std::function<void()> done) override;
    void work(const std::stop_token& stop);

    QObject mainThread_; // calls queued to it vanish with it
    std::mutex mutex_;   // guards jobs_
    std::condition_variable_any wake_;
    std::deque<Job> jobs_;
    std::jthread thread_;
};

} // namespace tavero
