#include "sound/QueueEntrance.h"

#include <utility>

namespace tavero {

void QueueEntrance::async(std::function<void()> task) {
    const std::lock_guard lock(mutex_);
    if (queue_) queue_->async(std::move(task));
}

void QueueEntrance::close() {
    const std::lock_guard lock(mutex_);
    queue_ = nullptr;
}

} // namespace tavero
