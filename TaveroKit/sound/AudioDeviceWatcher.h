#pragma once

#include "platform/AudioObjects.h"
#include "platform/TaskQueue.h"
#include "sound/QueueEntrance.h"

#include <functional>
#include <memory>
#include <vector>

namespace tavero {

// Tells when a device comes or goes, or another becomes a default.
class AudioDeviceWatcher {
  public:
    // Calls `changed` on the queue, which may destroy the watcher. Objects and queue must outlive
    // the watcher, which is made and destroyed where the queue's tasks run.
    AudioDeviceWatcher(AudioObjects& objects, TaskQueue& queue, std::function<void()> changed);
    ~AudioDeviceWatcher();
    AudioDeviceWatcher(const AudioDeviceWatcher&) = delete;
    AudioDeviceWatcher& operator=(const AudioDeviceWatcher&) = delete;

  private:
    std::shared_ptr<std::function<void()>> changed_; // what is still on its way holds it weakly
    std::shared_ptr<QueueEntrance> entrance_;
    std::vector<std::unique_ptr<AudioListener>> listeners_;
};

} // namespace tavero
