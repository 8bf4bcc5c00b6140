#include "sound/AudioDeviceWatcher.h"

#include <utility>

namespace tavero {

AudioDeviceWatcher::AudioDeviceWatcher(AudioObjects& objects, TaskQueue& queue,
                                       std::function<void()> changed)
    : changed_(std::make_shared<std::function<void()>>(std::move(changed))),
      entrance_(std::make_shared<QueueEntrance>(queue)) {
    const auto tell = [receiver = std::weak_ptr(changed_)] {
        if (const auto alive = receiver.lock()) (*alive)();
    };
    for (const std::uint32_t selector :
         {AudioSelector::devices, AudioSelector::defaultOutput, AudioSelector::defaultInput})
        listeners_.push_back(objects.listen(
            audioSystem, {selector}, [entrance = entrance_, tell] { entrance->async(tell); }));
}

AudioDeviceWatcher::~AudioDeviceWatcher() {
    listeners_.clear();
    entrance_->close();
}

} // namespace tavero
