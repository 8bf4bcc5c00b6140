#pragma once

#include "platform/TaskQueue.h"

#include <functional>
#include <mutex>

namespace tavero {

// The way from listeners to a queue. They call on any thread, and maybe once more after they ended,
// when the queue may be gone: so they share the entrance, and who owns them closes it.
class QueueEntrance {
  public:
    explicit QueueEntrance(TaskQueue& queue) : queue_(&queue) {}

    // From any thread. Nothing once it is closed.
    void async(std::function<void()> task);
    // What is on the queue stays there.
    void close();

  private:
    std::mutex mutex_;
    TaskQueue* queue_; // null once closed
};

} // namespace tavero
