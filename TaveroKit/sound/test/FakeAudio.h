#pragma once

#include "platform/AudioObjects.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tavero {

// An audio system that a test sets as it likes: properties with values, sense or not. Nothing here
// follows from anything else, and news are told only when the test says so. From any thread.
class FakeAudio final : public AudioObjects {
  public:
    // A property that exists and can't be read.
    struct Unreadable {};
    using Value =
        std::variant<Unreadable, std::uint32_t, std::vector<std::uint32_t>, float, std::string>;
    struct Property {
        Value value;
        bool settable = false;      // as it says; a write succeeds anyway
        bool refusesWrites = false; // fails, whatever it says
    };

    void put(AudioObjectID object, const AudioAddress& address, Value value,
             bool settable = false) {
        put(object, address, Property{std::move(value), settable, false});
    }
    void put(AudioObjectID object, const AudioAddress& address, Property property) {
        const std::lock_guard lock(mutex_);
        properties_[{object, address}] = std::move(property);
    }
    void remove(AudioObjectID object, const AudioAddress& address) {
        const std::lock_guard lock(mutex_);
        properties_.erase({object, address});
    }
    // With all its properties. It stays in whatever list it is in.
    void removeObject(AudioObjectID object) {
        const std::lock_guard lock(mutex_);
        std::erase_if(properties_, [&](const auto& entry) { return entry.first.first == object; });
    }

    // An object with what most tests want of it, added to the system's list.
    void addDevice(AudioObjectID object, const std::string& name, const std::string& uid,
                   std::uint32_t scope = AudioScope::output, const char (&transport)[5] = "bltn") {
        put(object, {AudioSelector::name}, name);
        put(object, {AudioSelector::uid}, uid);
        put(object, {AudioSelector::transport}, code(transport));
        put(object, {AudioSelector::streams, scope}, std::vector<std::uint32_t>{object * 100});
        append({AudioSelector::devices}, object);
    }
    void addProcess(AudioObjectID object, std::int32_t pid, bool plays = false,
                    bool records = false) {
        put(object, {AudioSelector::processID}, static_cast<std::uint32_t>(pid));
        put(object, {AudioSelector::processIsRunningOutput}, std::uint32_t{plays});
        put(object, {AudioSelector::processIsRunningInput}, std::uint32_t{records});
        put(object, {AudioSelector::processIsRunning}, std::uint32_t{plays || records});
        append({AudioSelector::processes}, object);
    }
    // The opposite of both: takes it off the lists and away.
    void drop(AudioObjectID object) {
        removeObject(object);
        for (const std::uint32_t selector : {AudioSelector::devices, AudioSelector::processes}) {
            std::vector<std::uint32_t> list = words(audioSystem, {selector}).value_or(Words{});
            if (std::erase(list, object) > 0) put(audioSystem, {selector}, std::move(list));
        }
    }

    // Tells all who listen, from this thread.
    void tell(AudioObjectID object, const AudioAddress& address) {
        for (const std::function<void()>& changed : callsUnderWay(object, address)) changed();
    }
    // The calls that telling makes, for a test to make later, when the listeners may have ended.
    std::vector<std::function<void()>> callsUnderWay(AudioObjectID object,
                                                     const AudioAddress& address) {
        const std::lock_guard lock(mutex_);
        std::vector<std::function<void()>> calls;
        for (const auto& [number, listener] : listeners_)
            if (listener.object == object && listener.address == address)
                calls.push_back(listener.changed);
        return calls;
    }
    bool isListenedTo(AudioObjectID object, const AudioAddress& address) {
        return !callsUnderWay(object, address).empty();
    }
    bool hasListeners() {
        const std::lock_guard lock(mutex_);
        return !listeners_.empty();
    }
    void refuseListeners(bool refuse) {
        const std::lock_guard lock(mutex_);
        refusesListeners_ = refuse;
    }

    bool has(AudioObjectID object, const AudioAddress& address) override {
        return find(object, address).has_value();
    }
    bool isSettable(AudioObjectID object, const AudioAddress& address) override {
        const std::optional<Property> property = find(object, address);
        return property && property->settable;
    }
    std::optional<std::vector<std::uint32_t>> words(AudioObjectID object,
                                                    const AudioAddress& address) override {
        return read<Words>(object, address);
    }
    std::optional<std::uint32_t> word(AudioObjectID object, const AudioAddress& address) override {
        return read<std::uint32_t>(object, address);
    }
    std::optional<float> real(AudioObjectID object, const AudioAddress& address) override {
        return read<float>(object, address);
    }
    std::optional<std::string> text(AudioObjectID object, const AudioAddress& address) override {
        return read<std::string>(object, address);
    }
    bool set(AudioObjectID object, const AudioAddress& address, std::uint32_t word) override {
        return write(object, address, word);
    }
    bool set(AudioObjectID object, const AudioAddress& address, float real) override {
        return write(object, address, real);
    }
    [[nodiscard]] std::unique_ptr<AudioListener> listen(AudioObjectID object,
                                                        const AudioAddress& address,
                                                        std::function<void()> changed) override {
        const std::lock_guard lock(mutex_);
        if (refusesListeners_) return nullptr;
        const int number = next_++;
        listeners_[number] = {object, address, std::move(changed)};
        return std::make_unique<Listener>(*this, number);
    }

  private:
    using Words = std::vector<std::uint32_t>;
    struct Listening {
        AudioObjectID object = 0;
        AudioAddress address;
        std::function<void()> changed;
    };
    struct Listener final : AudioListener {
        Listener(FakeAudio& owner, int of) : audio(owner), number(of) {}
        ~Listener() override {
            const std::lock_guard lock(audio.mutex_);
            audio.listeners_.erase(number);
        }
        FakeAudio& audio;
        int number;
    };

    static std::uint32_t code(const char (&text)[5]) {
        std::uint32_t code = 0;
        for (int i = 0; i < 4; ++i) code = code << 8 | static_cast<unsigned char>(text[i]);
        return code;
    }
    void append(const AudioAddress& list, AudioObjectID object) {
        std::vector<std::uint32_t> objects = words(audioSystem, list).value_or(Words{});
        objects.push_back(object);
        put(audioSystem, list, std::move(objects));
    }
    std::optional<Property> find(AudioObjectID object, const AudioAddress& address) {
        const std::lock_guard lock(mutex_);
        const auto found = properties_.find({object, address});
        return found == properties_.end() ? std::nullopt : std::optional(found->second);
    }
    template <typename Form>
    std::optional<Form> read(AudioObjectID object, const AudioAddress& address) {
        const std::optional<Property> property = find(object, address);
        const Form* value = property ? std::get_if<Form>(&property->value) : nullptr;
        return value ? std::optional(*value) : std::nullopt;
    }
    bool write(AudioObjectID object, const AudioAddress& address, Value value) {
        const std::lock_guard lock(mutex_);
        const auto found = properties_.find({object, address});
        if (found == properties_.end()) return false;
        Property& property = found->second;
        if (property.refusesWrites) return false;
        property.value = std::move(value);
        return true;
    }

    std::mutex mutex_;
    std::map<std::pair<AudioObjectID, AudioAddress>, Property> properties_;
    std::map<int, Listening> listeners_;
    int next_ = 0;
    bool refusesListeners_ = false;
};

} // namespace tavero
