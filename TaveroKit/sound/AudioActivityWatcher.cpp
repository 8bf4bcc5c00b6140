#include "sound/AudioActivityWatcher.h"

#include "sound/AudioProperty.h"

#include <chrono>
#include <utility>

namespace tavero {

namespace {

// Folds the storm of changes that the start of an app causes.
constexpr std::chrono::milliseconds settleTime{50};

} // namespace

AudioActivityWatcher::AudioActivityWatcher(AudioObjects& objects, std::int32_t ownPid,
                                           std::unique_ptr<TaskQueue> queue,
                                           std::function<void()> changed)
    : objects_(objects), ownPid_(static_cast<std::uint32_t>(ownPid)), changed_(std::move(changed)),
      entrance_(std::make_shared<QueueEntrance>(*queue)), queue_(std::move(queue)) {
    queue_->sync([this] {
        list_ = listen(audioSystem, AudioSelector::processes, &AudioActivityWatcher::listChanged);
        watchProcesses();
    });
}

AudioActivityWatcher::~AudioActivityWatcher() {
    entrance_->close();
    queue_->sync([this] {
        list_.reset();
        watched_.clear();
    });
}

std::unique_ptr<AudioListener>
AudioActivityWatcher::listen(AudioObjectID object, std::uint32_t selector, Handler handler) {
    // Only the queue touches `this`; it drops its tasks when it ends.
    return objects_.listen(object, {selector}, [this, entrance = entrance_, handler] {
        entrance->async([this, handler] { (this->*handler)(); });
    });
}

void AudioActivityWatcher::listChanged() {
    watchProcesses();
    notify();
}

void AudioActivityWatcher::watchProcesses() {
    std::map<AudioObjectID, std::unique_ptr<AudioListener>> now;
    for (const AudioObjectID process :
         AudioProperty::array(objects_, audioSystem, AudioSelector::processes)) {
        if (now.contains(process) || isOwn(process)) continue;
        const auto known = watched_.find(process);
        now[process] = known != watched_.end() ? std::move(known->second)
                                               : listen(process, AudioSelector::processIsRunning,
                                                        &AudioActivityWatcher::notify);
    }
    watched_ = std::move(now); // which ends those for processes that are gone
}

// A process that doesn't tell whose it is may be anybody's.
bool AudioActivityWatcher::isOwn(AudioObjectID process) {
    return objects_.word(process, {AudioSelector::processID}) == ownPid_;
}

void AudioActivityWatcher::notify() {
    if (pending_) return;
    pending_ = true;
    queue_->after(settleTime, [this] {
        pending_ = false;
        changed_();
    });
}

} // namespace tavero
