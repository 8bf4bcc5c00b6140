#pragma once

#include "platform/AudioObjects.h"
#include "platform/TaskQueue.h"
#include "sound/QueueEntrance.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

namespace tavero {

// Tells when a process begins or ends to play or to record, or to know sound at all. A burst of
// such news costs one call.
class AudioActivityWatcher {
  public:
    // Calls `changed` on the queue, where all of this lives but for its creation and destruction;
    // so neither may happen in a task of the queue. This program's own process is passed over. The
    // objects must outlive the watcher.
    AudioActivityWatcher(AudioObjects& objects, std::int32_t ownPid,
                         std::unique_ptr<TaskQueue> queue, std::function<void()> changed);
    ~AudioActivityWatcher();
    AudioActivityWatcher(const AudioActivityWatcher&) = delete;
    AudioActivityWatcher& operator=(const AudioActivityWatcher&) = delete;

  private:
    using Handler = void (AudioActivityWatcher::*)();

    std::unique_ptr<AudioListener> listen(AudioObjectID object, std::uint32_t selector,
                                          Handler handler);
    void listChanged();
    void watchProcesses();
    bool isOwn(AudioObjectID process);
    void notify();

    AudioObjects& objects_;
    std::uint32_t ownPid_; // as the process objects tell it
    std::function<void()> changed_;
    std::unique_ptr<AudioListener> list_;
    std::map<AudioObjectID, std::unique_ptr<AudioListener>> watched_; // null: refused
    bool pending_ = false;
    std::shared_ptr<QueueEntrance> entrance_;
    std::unique_ptr<TaskQueue> queue_; // ends first: its tasks use the rest
};

} // namespace tavero
