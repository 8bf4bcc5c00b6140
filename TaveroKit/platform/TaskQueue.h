#pragma once

#include <chrono>
#include <functional>

namespace tavero {

// Where tasks run one after another, never two at a time. Destroying it drops what is still to
// come, and waits for a task under way on another thread.
class TaskQueue {
  public:
    virtual ~TaskQueue() = default;

    // Runs `task` later, never from within this call. From any thread.
    virtual void async(std::function<void()> task) = 0;
    // The same when `delay` has passed. From a task of this queue only.
    virtual void after(std::chrono::nanoseconds delay, std::function<void()> task) = 0;
    // Runs `task` between two others and returns when it has. Not from a task of this queue.
    virtual void sync(const std::function<void()>& task) = 0;
};

} // namespace tavero
