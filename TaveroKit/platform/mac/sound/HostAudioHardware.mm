#include "platform/mac/sound/HostSound.h"

#import <CoreAudio/AudioHardwareTapping.h>
#import <CoreAudio/CATapDescription.h>
#import <CoreAudio/CoreAudio.h>
#import <Foundation/Foundation.h>
#import <Foundation/NSUUID.h>

#include <cstddef>
#include <utility>

namespace tavero {

namespace {

// What a block is given is passed on as it lies there.
static_assert(sizeof(AudioBuffer) == sizeof(::AudioBuffer));
static_assert(alignof(AudioBuffer) == alignof(::AudioBuffer));
static_assert(offsetof(AudioBuffer, channels) == offsetof(::AudioBuffer, mNumberChannels));
static_assert(offsetof(AudioBuffer, bytes) == offsetof(::AudioBuffer, mDataByteSize));
static_assert(offsetof(AudioBuffer, data) == offsetof(::AudioBuffer, mData));

std::span<const AudioBuffer> buffers(const AudioBufferList* list) {
    if (list == nullptr) return {};
    return {reinterpret_cast<const AudioBuffer*>(list->mBuffers), list->mNumberBuffers};
}

// Never nil; a text that is no UTF-8 is an empty one.
NSString* nsString(const std::string& text) {
    NSString* string = [NSString stringWithUTF8String:text.c_str()];
    return string != nil ? string : @"";
}

CATapDescription* native(const TapDescription& description) {
    NSMutableArray<NSNumber*>* processes = [NSMutableArray array];
    for (const AudioObjectID process : description.processes)
        [processes addObject:[NSNumber numberWithUnsignedInt:process]];
    CATapDescription* tap = [CATapDescription alloc];
    if (description.deviceUID)
        tap = [tap initWithProcesses:processes
                        andDeviceUID:nsString(*description.deviceUID)
                          withStream:0];
    else
        tap = [tap initStereoMixdownOfProcesses:processes];
    NSUUID* uuid = [[NSUUID alloc] initWithUUIDString:nsString(description.uuid)];
    if (uuid != nil) [tap setUUID:uuid];
    [tap setName:nsString(description.name)];
    [tap setPrivate:description.isPrivate];
    [tap setMuteBehavior:static_cast<CATapMuteBehavior>(description.muteBehavior)];
    return tap;
}

NSDictionary* native(const AggregateDescription& description) {
    NSMutableArray* subdevices = [NSMutableArray array];
    for (const std::string& uid : description.subdevices)
        [subdevices addObject:@{@"uid" : nsString(uid)}];
    NSMutableArray* taps = [NSMutableArray array];
    for (const AggregateDescription::Tap& tap : description.taps)
        [taps addObject:@{
            @"drift" : [NSNumber numberWithBool:tap.drift],
            @"uid" : nsString(tap.uid)
        }];
    return @{
        @"name" : nsString(description.name),
        @"uid" : nsString(description.uid),
        @"master" : nsString(description.main),
        @"private" : [NSNumber numberWithBool:description.isPrivate],
        @"stacked" : [NSNumber numberWithBool:description.isStacked],
        @"tapautostart" : [NSNumber numberWithBool:description.tapAutoStart],
        @"subdevices" : subdevices,
        @"taps" : taps,
    };
}

AudioDeviceIOProcID native(MacAudioHardware::IOProcID proc) {
    return reinterpret_cast<AudioDeviceIOProcID>(proc);
}

class HostAudioHardware final : public MacAudioHardware {
  public:
    std::string makeUUID() override {
        @autoreleasepool {
            return [NSUUID UUID].UUIDString.UTF8String;
        }
    }

    std::int32_t createTap(const TapDescription& description, AudioObjectID& tap) override {
        @autoreleasepool {
            return AudioHardwareCreateProcessTap(native(description), &tap);
        }
    }
    std::int32_t destroyTap(AudioObjectID tap) override {
        return AudioHardwareDestroyProcessTap(tap);
    }

    std::int32_t createAggregate(const AggregateDescription& description,
                                 AudioObjectID& device) override {
        @autoreleasepool {
            return AudioHardwareCreateAggregateDevice((__bridge CFDictionaryRef)native(description),
                                                      &device);
        }
    }
    std::int32_t destroyAggregate(AudioObjectID device) override {
        return AudioHardwareDestroyAggregateDevice(device);
    }

    std::int32_t createIOProc(AudioObjectID device, AudioIOBlock block, IOProcID& proc) override {
        dispatch_queue_t queue = ioQueue();
        AudioDeviceIOProcID created = nullptr;
        // It keeps the two pointers, and nothing that counts its references.
        const OSStatus status = AudioDeviceCreateIOProcIDWithBlock(
            &created, device, queue,
            ^(const AudioTimeStamp*, const AudioBufferList* input, const AudioTimeStamp*,
              AudioBufferList* output, const AudioTimeStamp*) {
              block.call(block.context, buffers(input), buffers(output));
            });
        if (status != noErr) return status;
        proc = reinterpret_cast<IOProcID>(created);
        running_.push_back({device, proc, queue});
        return status;
    }
    std::int32_t destroyIOProc(AudioObjectID device, IOProcID proc) override {
        std::erase_if(running_, [&](const Proc& one) {
            if (one.device != device || one.id != proc) return false;
            ending_.push_back(one.queue);
            return true;
        });
        return AudioDeviceDestroyIOProcID(device, native(proc));
    }
    std::int32_t start(AudioObjectID device, IOProcID proc) override {
        return AudioDeviceStart(device, native(proc));
    }
    std::int32_t stop(AudioObjectID device, IOProcID proc) override {
        return AudioDeviceStop(device, native(proc));
    }

    void drain() override {
        for (dispatch_queue_t queue : std::exchange(ending_, {}))
            dispatch_sync(queue, ^{
                          });
    }

  private:
    struct Proc {
        AudioObjectID device;
        IOProcID id;
        dispatch_queue_t queue;
    };

    // One for each block, so that no tap waits for another's.
    static dispatch_queue_t ioQueue() {
        return dispatch_queue_create("com.brimfold.tavero.app-audio",
                                     dispatch_queue_attr_make_with_qos_class(
                                         DISPATCH_QUEUE_SERIAL, QOS_CLASS_USER_INTERACTIVE, 0));
    }

    std::vector<Proc> running_;
    std::vector<dispatch_queue_t> ending_; // of destroyed blocks, one of which may yet run
};

} // namespace

std::shared_ptr<MacAudioHardware> hostAudioHardware() {
    static const std::shared_ptr<MacAudioHardware> hardware = std::make_shared<HostAudioHardware>();
    return hardware;
}

} // namespace tavero
