#include "platform/linux/BoundedCalls.h"

#include <system_error>
#include <thread>
#include <utility>

namespace tavero {

bool BoundedCalls::run(std::function<void()> work) {
    constexpr std::chrono::milliseconds now{0};
    if (last_.valid() && last_.wait_for(now) != std::future_status::ready) return false;
    std::packaged_task<void()> task(std::move(work));
    last_ = task.get_future();
    try {
        std::thread(std::move(task)).detach();
    } catch (const std::system_error&) { // no thread to be had
        last_ = {};
        return false;
    }
    return last_.wait_for(limit_) == std::future_status::ready;
}

} // namespace tavero
