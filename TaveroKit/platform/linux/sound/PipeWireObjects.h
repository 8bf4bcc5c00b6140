#pragma once

#include "platform/AudioObjects.h"
#include "platform/linux/sound/PipeWireGraph.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tavero {

// PipeWire's graph as objects with properties: devices by the ids of their nodes, processes as
// PipeWireGraph numbers them. Answers come from the mirror and cost no round trip; only the first
// question waits, for a moment, if the connection is still on its way. What was written is read
// back at once.
//
// A volume is that of the loudest channel on the scale of the desktops' own sliders, the cube root
// of the factor; above full volume it is 1. Setting it keeps the balance.
class PipeWireObjects : public AudioObjects, private PipeWireObserver {
  public:
    PipeWireObjects(std::shared_ptr<PipeWireGraph> graph, std::int32_t ownPid);
    ~PipeWireObjects() override;
    PipeWireObjects(const PipeWireObjects&) = delete;

    bool has(AudioObjectID object, const AudioAddress& address) override;
    bool isSettable(AudioObjectID object, const AudioAddress& address) override;
    std::optional<std::vector<std::uint32_t>> words(AudioObjectID object,
                                                    const AudioAddress& address) override;
    std::optional<std::uint32_t> word(AudioObjectID object, const AudioAddress& address) override;
    std::optional<float> real(AudioObjectID object, const AudioAddress& address) override;
    std::optional<std::string> text(AudioObjectID object, const AudioAddress& address) override;
    bool set(AudioObjectID object, const AudioAddress& address, std::uint32_t word) override;
    bool set(AudioObjectID object, const AudioAddress& address, float real) override;
    std::unique_ptr<AudioListener> listen(AudioObjectID object, const AudioAddress& address,
                                          std::function<void()> changed) override;

  private:
    using Words = std::vector<std::uint32_t>;
    // Nothing: there is no such object or property.
    using Value = std::variant<std::monostate, Words, std::uint32_t, float, std::string>;
    struct Listening;
    class Listener;

    void changed() override;

    // With the graph locked.
    Value value(AudioObjectID object, const AudioAddress& address) const;
    Value systemValue(const AudioAddress& address) const;
    Value deviceValue(const SoundNode& device, const AudioAddress& address) const;
    Value levelValue(const SoundNode& device, const AudioAddress& address) const;
    Value processValue(std::int32_t pid, const AudioAddress& address) const;
    const SoundNode* device(AudioObjectID object) const;
    Words devices() const;
    Words processes() const;
    bool knows(std::int32_t pid) const;
    std::vector<float> shapeOf(const SoundNode& target) const;
    void keepShape(std::uint64_t serial, const std::vector<float>& channels);

    template <class Form>
    std::optional<Form> read(AudioObjectID object, const AudioAddress& address);
    void settle();

    std::shared_ptr<PipeWireGraph> graph_;
    std::int32_t ownPid_;
    std::shared_ptr<std::vector<std::shared_ptr<Listening>>> listening_;
    bool hasSettled_ = false;
    // The channels of devices as they were when they could last be heard, to keep the balance of
    // one that was turned down to nothing.
    std::map<std::uint64_t, std::vector<float>> shapes_; // by serial
};

} // namespace tavero
