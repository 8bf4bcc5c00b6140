#pragma once

#include "platform/AudioObjects.h"
#include "platform/mac/sound/MacAudioHardware.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tavero {

// The hardware calls of a Mac for the tests: written down as they come, and failing when told to.
class FakeMacHardware final : public MacAudioHardware {
  public:
    static constexpr AudioObjectID tapID = 70;
    static constexpr AudioObjectID aggregateID = 80;

    std::vector<std::string> calls;               // with the object that each was given
    std::map<std::string, std::int32_t> failures; // the status, by the name of the call
    TapDescription tap;
    AggregateDescription aggregate;
    AudioIOBlock block;

    std::string makeUUID() override { return "uuid-" + std::to_string(++uuids_); }

    std::int32_t createTap(const TapDescription& description, AudioObjectID& created) override {
        tap = description;
        return make("createTap", created, tapID);
    }
    std::int32_t destroyTap(AudioObjectID object) override { return note("destroyTap", object); }

    std::int32_t createAggregate(const AggregateDescription& description,
                                 AudioObjectID& created) override {
        aggregate = description;
        return make("createAggregate", created, aggregateID);
    }
    std::int32_t destroyAggregate(AudioObjectID object) override {
        return note("destroyAggregate", object);
    }

    std::int32_t createIOProc(AudioObjectID object, AudioIOBlock given, IOProcID& proc) override {
        block = given;
        const std::int32_t status = note("createIOProc", object);
        if (status == 0) proc = &proc_;
        return status;
    }
    std::int32_t destroyIOProc(AudioObjectID object, IOProcID proc) override {
        return note("destroyIOProc", object, proc);
    }
    std::int32_t start(AudioObjectID object, IOProcID proc) override {
        return note("start", object, proc);
    }
    std::int32_t stop(AudioObjectID object, IOProcID proc) override {
        return note("stop", object, proc);
    }
    void drain() override { calls.emplace_back("drain"); }

  private:
    std::int32_t note(const std::string& name, AudioObjectID object) {
        calls.push_back(name + " " + std::to_string(object));
        const auto failure = failures.find(name);
        return failure != failures.end() ? failure->second : 0;
    }
    std::int32_t note(const std::string& name, AudioObjectID object, IOProcID proc) {
        return note(proc == &proc_ ? name : name + " of no proc,", object);
    }
    std::int32_t make(const std::string& name, AudioObjectID& created, AudioObjectID id) {
        calls.push_back(name);
        const auto failure = failures.find(name);
        if (failure != failures.end()) return failure->second;
        created = id;
        return 0;
    }

    int uuids_ = 0;
    int proc_ = 0;
};

// The words of the aggregate device, which can be set.
class FakeMacObjects final : public AudioObjects {
  public:
    std::map<std::pair<AudioObjectID, AudioAddress>, std::uint32_t> values;
    bool refuses = false;

    bool has(AudioObjectID object, const AudioAddress& address) override {
        return values.contains({object, address});
    }
    bool isSettable(AudioObjectID, const AudioAddress&) override { return !refuses; }
    std::optional<std::uint32_t> word(AudioObjectID object, const AudioAddress& address) override {
        const auto found = values.find({object, address});
        return found != values.end() ? std::optional(found->second) : std::nullopt;
    }
    bool set(AudioObjectID object, const AudioAddress& address, std::uint32_t word) override {
        if (!refuses) values[{object, address}] = word;
        return !refuses;
    }

    std::optional<std::vector<std::uint32_t>> words(AudioObjectID, const AudioAddress&) override {
        return std::nullopt;
    }
    std::optional<float> real(AudioObjectID, const AudioAddress&) override { return std::nullopt; }
    std::optional<std::string> text(AudioObjectID, const AudioAddress&) override {
        return std::nullopt;
    }
    bool set(AudioObjectID, const AudioAddress&, float) override { return false; }
    std::unique_ptr<AudioListener> listen(AudioObjectID, const AudioAddress&,
                                          std::function<void()>) override {
        return nullptr;
    }
};

} // namespace tavero
