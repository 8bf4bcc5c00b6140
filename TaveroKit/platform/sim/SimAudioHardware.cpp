#include "platform/sim/SimAudioSeams.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace tavero {

namespace {

// The statuses of Core Audio are four characters too.
constexpr std::int32_t status(const std::uint32_t code) { return static_cast<std::int32_t>(code); }
constexpr std::int32_t noError = 0;
constexpr std::int32_t badObject = status(fourCC("!obj"));
constexpr std::int32_t badDevice = status(fourCC("!dev"));
constexpr std::int32_t illegal = status(fourCC("nope"));

// This program as a process that touched sound, from its first start on.
constexpr AudioObjectID ownObject = 99'999;

// The next call of this kind may have been told to fail.
std::int32_t takeFailure(SimAudio& audio, SimAudioCall call) {
    const auto failure = audio.failures.extract(call);
    return failure ? failure.mapped() : noError;
}

std::int32_t judge(SimAudio& audio, const TapDescription& tap) {
    if (tap.processes.empty() || tap.uuid.empty() || audio.tap(tap.uuid)) return illegal;
    const auto isKnown = [&](AudioObjectID id) { return audio.process(id) != nullptr; };
    if (!std::all_of(tap.processes.begin(), tap.processes.end(), isKnown)) return badObject;
    return tap.deviceUID && !audio.device(*tap.deviceUID) ? badDevice : noError;
}

bool isTaken(const SimAudio& audio, const std::string& uid) {
    return audio.device(uid) || std::any_of(audio.aggregates.begin(), audio.aggregates.end(),
                                            [&](const SimAudioAggregate& aggregate) {
                                                return aggregate.description.uid == uid;
                                            });
}

std::int32_t judge(const SimAudio& audio, const AggregateDescription& aggregate) {
    const std::vector<std::string>& uids = aggregate.subdevices;
    if (aggregate.name.empty() || aggregate.uid.empty() || uids.empty()) return illegal;
    if (isTaken(audio, aggregate.uid)) return illegal;
    if (std::find(uids.begin(), uids.end(), aggregate.main) == uids.end()) return badDevice;
    for (const std::string& uid : uids)
        if (const SimAudioDevice* device = audio.device(uid);
            !device || device->output.streams.empty())
            return badDevice;
    for (const AggregateDescription::Tap& part : aggregate.taps) {
        const SimAudioTap* tap = audio.tap(part.uid);
        if (!tap) return badObject;
        // What others can see can't be made of what they can't.
        if (tap->description.isPrivate && !aggregate.isPrivate) return illegal;
    }
    return noError;
}

class SimAudioHardware final : public MacAudioHardware {
  public:
    explicit SimAudioHardware(std::shared_ptr<SimAudioControl> control)
        : control_(std::move(control)) {}

    std::string makeUUID() override {
        const std::uint64_t number =
            control_->ask([](SimAudio& audio) { return audio.nextUUID++; });
        char text[37];
        std::snprintf(text, sizeof text, "5A5A5A5A-0000-4000-8000-%012llX",
                      static_cast<unsigned long long>(number));
        return text;
    }

    std::int32_t createTap(const TapDescription& description, AudioObjectID& tap) override {
        return call(SimAudioCall::createTap, [&](SimAudio& audio) {
            if (const std::int32_t fault = judge(audio, description)) return fault;
            tap = audio.nextObject++;
            audio.taps.push_back({.id = tap, .description = description});
            return noError;
        });
    }

    std::int32_t destroyTap(AudioObjectID tap) override {
        return call(SimAudioCall::destroyTap, [&](SimAudio& audio) {
            const auto isIt = [&](const SimAudioTap& candidate) { return candidate.id == tap; };
            return std::erase_if(audio.taps, isIt) ? noError : badObject;
        });
    }

    std::int32_t createAggregate(const AggregateDescription& description,
                                 AudioObjectID& device) override {
        return call(SimAudioCall::createAggregate, [&](SimAudio& audio) {
            if (const std::int32_t fault = judge(audio, description)) return fault;
            device = audio.nextObject++;
            audio.aggregates.push_back({.id = device, .description = description});
            return noError;
        });
    }

    std::int32_t destroyAggregate(AudioObjectID device) override {
        return call(SimAudioCall::destroyAggregate, [&](SimAudio& audio) {
            const auto isIt = [&](const auto& candidate) { return candidate.id == device; };
            return std::erase_if(audio.aggregates, isIt) ? noError : badObject;
        });
    }

    std::int32_t createIOProc(AudioObjectID device, AudioIOBlock block, IOProcID& proc) override {
        return call(SimAudioCall::createIOProc, [&](SimAudio& audio) {
            SimAudioAggregate* aggregate = audio.aggregate(device);
            if (!aggregate) return badObject;
            if (!block.call) return illegal;
            auto id = std::make_shared<int>();
            proc = id.get();
            aggregate->procs.push_back({.id = std::move(id), .block = block});
            return noError;
        });
    }

    std::int32_t destroyIOProc(AudioObjectID device, IOProcID proc) override {
        return call(SimAudioCall::destroyIOProc, [&](SimAudio& audio) {
            SimAudioAggregate* aggregate = audio.aggregate(device);
            const auto isIt = [&](const auto& candidate) { return candidate.id.get() == proc; };
            return aggregate && std::erase_if(aggregate->procs, isIt) ? noError : badObject;
        });
    }

    std::int32_t start(AudioObjectID device, IOProcID proc) override {
        return call(SimAudioCall::start, [&](SimAudio& audio) {
            addOwnProcess(audio);
            return setStarted(audio, device, proc, true);
        });
    }

    std::int32_t stop(AudioObjectID device, IOProcID proc) override {
        return call(SimAudioCall::stop,
                    [&](SimAudio& audio) { return setStarted(audio, device, proc, false); });
    }

    void drain() override { control_->waitForCycle(); }

  private:
    template <typename Do>
    std::int32_t call(SimAudioCall call, Do act) {
        return control_->ask([&](SimAudio& audio) -> std::int32_t {
            if (const std::int32_t failure = takeFailure(audio, call)) return failure;
            const std::int32_t result = act(audio);
            audio.settle();
            return result;
        });
    }

    static void addOwnProcess(SimAudio& audio) {
        if (!audio.process(ownObject))
            audio.processes.push_back({.id = ownObject, .pid = simOwnPid});
    }

    static std::int32_t setStarted(SimAudio& audio, AudioObjectID device, IOProcID id,
                                   bool isStarted) {
        if (SimAudioAggregate* aggregate = audio.aggregate(device))
            for (SimAudioIOProc& proc : aggregate->procs)
                if (proc.id.get() == id) {
                    proc.isStarted = isStarted;
                    return noError;
                }
        return badObject;
    }

    std::shared_ptr<SimAudioControl> control_;
};

} // namespace

std::shared_ptr<MacAudioHardware> simAudioHardware(std::shared_ptr<SimAudioControl> control) {
    return std::make_shared<SimAudioHardware>(std::move(control));
}

} // namespace tavero
