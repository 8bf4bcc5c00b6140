#include "platform/mac/sound/HostSound.h"

#import <CoreAudio/CoreAudio.h>
#import <Foundation/Foundation.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace tavero {

namespace {

AudioObjectPropertyAddress native(const AudioAddress& address) {
    return {address.selector, address.scope, address.element};
}

// The bytes of a property. Absent if the system doesn't say.
std::optional<UInt32> byteCount(AudioObjectID object, const AudioObjectPropertyAddress& address) {
    UInt32 bytes = 0;
    const OSStatus status = AudioObjectGetPropertyDataSize(object, &address, 0, nullptr, &bytes);
    return status == noErr ? std::optional(bytes) : std::nullopt;
}

// A property of one value. Absent if it has another size.
template <typename Value>
std::optional<Value> value(AudioObjectID object, const AudioAddress& asked) {
    const AudioObjectPropertyAddress address = native(asked);
    if (byteCount(object, address) != sizeof(Value)) return std::nullopt;
    Value result{};
    UInt32 bytes = sizeof result;
    const OSStatus status =
        AudioObjectGetPropertyData(object, &address, 0, nullptr, &bytes, &result);
    return status == noErr && bytes == sizeof result ? std::optional(result) : std::nullopt;
}

template <typename Value>
bool write(AudioObjectID object, const AudioAddress& asked, Value value) {
    const AudioObjectPropertyAddress address = native(asked);
    return AudioObjectSetPropertyData(object, &address, 0, nullptr, sizeof value, &value) == noErr;
}

class HostAudioListener final : public AudioListener {
  public:
    HostAudioListener(AudioObjectID object, const AudioAddress& address, dispatch_queue_t queue,
                      std::function<void()> changed)
        : object_(object), address_(native(address)), queue_(queue) {
        const std::shared_ptr<std::atomic<bool>> ended = ended_;
        block_ = ^(UInt32, const AudioObjectPropertyAddress*) {
          if (!*ended) changed();
        };
    }
    ~HostAudioListener() override {
        *ended_ = true; // what is queued already comes to nothing
        if (isAdded_) AudioObjectRemovePropertyListenerBlock(object_, &address_, queue_, block_);
    }

    bool add() {
        isAdded_ = AudioObjectAddPropertyListenerBlock(object_, &address_, queue_, block_) == noErr;
        return isAdded_;
    }

  private:
    AudioObjectID object_;
    AudioObjectPropertyAddress address_;
    dispatch_queue_t queue_;
    AudioObjectPropertyListenerBlock block_; // the removal needs the same one
    std::shared_ptr<std::atomic<bool>> ended_ = std::make_shared<std::atomic<bool>>(false);
    bool isAdded_ = false;
};

class HostAudioObjects final : public AudioObjects {
  public:
    bool has(AudioObjectID object, const AudioAddress& asked) override {
        const AudioObjectPropertyAddress address = native(asked);
        return AudioObjectHasProperty(object, &address);
    }
    bool isSettable(AudioObjectID object, const AudioAddress& asked) override {
        const AudioObjectPropertyAddress address = native(asked);
        Boolean settable = false;
        return AudioObjectIsPropertySettable(object, &address, &settable) == noErr && settable;
    }

    std::optional<std::vector<std::uint32_t>> words(AudioObjectID object,
                                                    const AudioAddress& asked) override {
        const AudioObjectPropertyAddress address = native(asked);
        const std::optional<UInt32> size = byteCount(object, address);
        if (!size) return std::nullopt;
        std::vector<std::uint32_t> list(*size / sizeof(std::uint32_t));
        if (list.empty()) return list;
        UInt32 bytes = static_cast<UInt32>(list.size() * sizeof(std::uint32_t));
        const OSStatus status =
            AudioObjectGetPropertyData(object, &address, 0, nullptr, &bytes, list.data());
        if (status != noErr) return std::nullopt;
        // It may have become shorter in the meantime.
        list.resize(std::min<std::size_t>(list.size(), bytes / sizeof(std::uint32_t)));
        return list;
    }
    std::optional<std::uint32_t> word(AudioObjectID object, const AudioAddress& address) override {
        return value<UInt32>(object, address);
    }
    std::optional<float> real(AudioObjectID object, const AudioAddress& address) override {
        return value<Float32>(object, address);
    }
    std::optional<std::string> text(AudioObjectID object, const AudioAddress& address) override {
        @autoreleasepool {
            const std::optional<CFStringRef> read = value<CFStringRef>(object, address);
            if (!read) return std::nullopt;
            NSString* string = (__bridge_transfer NSString*)*read; // ours to release
            const char* characters = string.UTF8String;
            return characters ? std::optional<std::string>(characters) : std::nullopt;
        }
    }

    bool set(AudioObjectID object, const AudioAddress& address, std::uint32_t word) override {
        return write<UInt32>(object, address, word);
    }
    bool set(AudioObjectID object, const AudioAddress& address, float real) override {
        return write<Float32>(object, address, real);
    }

    std::unique_ptr<AudioListener> listen(AudioObjectID object, const AudioAddress& address,
                                          std::function<void()> changed) override {
        auto listener =
            std::make_unique<HostAudioListener>(object, address, queue_, std::move(changed));
        return listener->add() ? std::move(listener) : nullptr;
    }

  private:
    // Of this program's own, so that no news comes from within a call.
    dispatch_queue_t queue_ =
        dispatch_queue_create("com.brimfold.tavero.audio-objects", DISPATCH_QUEUE_SERIAL);
};

} // namespace

std::shared_ptr<AudioObjects> hostAudioObjects() {
    static const std::shared_ptr<AudioObjects> objects = std::make_shared<HostAudioObjects>();
    return objects;
}

} // namespace tavero
