#include "platform/mac/sound/HostSound.h"

#include <dispatch/dispatch.h>

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

// A serial dispatch queue. Whether it has ended is read and written on that queue only.
class HostAudioQueue final : public TaskQueue {
  public:
    HostAudioQueue() { dispatch_queue_set_specific(queue_, this, this, nullptr); }
    // A task of this queue itself may destroy it.
    ~HostAudioQueue() override {
        const std::shared_ptr<bool> ended = ended_;
        if (dispatch_get_specific(this) != nullptr)
            *ended = true;
        else
            dispatch_sync(queue_, ^{
              *ended = true;
            });
        dispatch_queue_set_specific(queue_, this, nullptr, nullptr);
    }

    void async(std::function<void()> task) override {
        dispatch_async(queue_, unlessEnded(std::move(task)));
    }
    void after(std::chrono::nanoseconds delay, std::function<void()> task) override {
        const std::int64_t wait = std::max<std::int64_t>(delay.count(), 0);
        dispatch_after(dispatch_time(DISPATCH_TIME_NOW, wait), queue_,
                       unlessEnded(std::move(task)));
    }
    void sync(const std::function<void()>& task) override {
        const std::function<void()>* const run = &task;
        dispatch_sync(queue_, ^{
          (*run)();
        });
    }

  private:
    dispatch_block_t unlessEnded(std::function<void()> task) {
        const std::shared_ptr<const bool> ended = ended_;
        return ^{
          if (!*ended) task();
        };
    }

    std::shared_ptr<bool> ended_ = std::make_shared<bool>(false);
    dispatch_queue_t queue_ =
        dispatch_queue_create("com.brimfold.tavero.audio-activity", DISPATCH_QUEUE_SERIAL);
};

} // namespace

std::unique_ptr<TaskQueue> hostAudioQueue() { return std::make_unique<HostAudioQueue>(); }

} // namespace tavero
