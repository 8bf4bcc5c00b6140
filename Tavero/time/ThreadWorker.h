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
    // Lives on the main thread. An event to it says that something is finished; events vanish with
    // it.
    class Reporter : public QObject {
      public:
        explicit Reporter(ThreadWorker& worker) : worker_(worker) {}
        bool event(QEvent* event) override;

      private:
        ThreadWorker& worker_;
    };

    void run(std::function<void()> job, std::function<void()> done) override;
    void work(const std::stop_token& stop);
    void report();

    std::mutex mutex_; // guards jobs_ and finished_
    std::condition_variable_any wake_;
    std::deque<Job> jobs_;
    std::deque<std::function<void()>> finished_;
    Reporter reporter_{*this};
    std::jthread thread_; // last: it uses all of the above
};

} // namespace tavero
