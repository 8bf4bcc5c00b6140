#pragma once

#include "platform/TaskQueue.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace tavero {

// The tasks of queues whose time stands still until the test moves it. Tasks come from any thread
// and run on the test's, those due at the same time in the order in which they came.
class ManualTasks {
  public:
    // Must be destroyed before these tasks.
    std::unique_ptr<TaskQueue> queue() { return std::make_unique<Queue>(*this); }

    // Runs what is due now, and what that brings along.
    void run() { advance(std::chrono::nanoseconds(0)); }
    void advance(std::chrono::nanoseconds time) {
        const std::chrono::nanoseconds end = now() + time;
        while (std::function<void()> task = next(end)) task();
        const std::lock_guard lock(mutex_);
        now_ = end;
    }
    bool isEmpty() {
        const std::lock_guard lock(mutex_);
        return tasks_.empty();
    }

  private:
    struct Task {
        std::chrono::nanoseconds due{};
        const TaskQueue* queue = nullptr;
        std::function<void()> run;
    };

    class Queue final : public TaskQueue {
      public:
        explicit Queue(ManualTasks& owner) : tasks_(owner) {}
        ~Queue() override {
            const std::lock_guard lock(tasks_.mutex_);
            std::erase_if(tasks_.tasks_, [this](const Task& task) { return task.queue == this; });
        }
        void async(std::function<void()> task) override { after({}, std::move(task)); }
        void after(std::chrono::nanoseconds delay, std::function<void()> task) override {
            const std::lock_guard lock(tasks_.mutex_);
            tasks_.tasks_.push_back({tasks_.now_ + delay, this, std::move(task)});
        }
        // After what was due before.
        void sync(const std::function<void()>& task) override {
            tasks_.run();
            task();
        }

      private:
        ManualTasks& tasks_;
    };

    std::chrono::nanoseconds now() {
        const std::lock_guard lock(mutex_);
        return now_;
    }
    // The next task up to `end`, taken off and its time come; empty if there is none.
    std::function<void()> next(std::chrono::nanoseconds end) {
        const std::lock_guard lock(mutex_);
        auto first = tasks_.begin();
        for (auto task = tasks_.begin(); task != tasks_.end(); ++task)
            if (task->due < first->due) first = task;
        if (first == tasks_.end() || first->due > end) return {};
        std::function<void()> run = std::move(first->run);
        now_ = first->due;
        tasks_.erase(first);
        return run;
    }

    std::mutex mutex_;
    std::vector<Task> tasks_;
    std::chrono::nanoseconds now_{};
};

} // namespace tavero
