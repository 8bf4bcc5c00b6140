#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// Something that the audio system knows: itself, a device, a process that touched sound.
using AudioObjectID = std::uint32_t;

// Four characters as the audio system writes them, the first one highest.
consteval std::uint32_t fourCC(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i) code = code << 8 | static_cast<unsigned char>(text[i]);
    return code;
}

// The system's own object, which has the lists and the defaults.
inline constexpr AudioObjectID audioSystem = 1;

namespace AudioScope {
inline constexpr std::uint32_t global = fourCC("glob");
inline constexpr std::uint32_t input = fourCC("inpt");
inline constexpr std::uint32_t output = fourCC("outp");
} // namespace AudioScope

// What can be asked. The numbers are the values of Core Audio's constants.
namespace AudioSelector {
// Of the system: words, words, word, word.
inline constexpr std::uint32_t devices = fourCC("dev#");
inline constexpr std::uint32_t processes = fourCC("prs#");
inline constexpr std::uint32_t defaultOutput = fourCC("dOut");
inline constexpr std::uint32_t defaultInput = fourCC("dIn ");
// Of a device. Streams (words), volume (real, fraction) and mute (word) have a direction as scope;
// a volume has element 0 for the whole, 1 and 2 for the channels.
inline constexpr std::uint32_t streams = fourCC("stm#");
inline constexpr std::uint32_t name = fourCC("lnam");      // text
inline constexpr std::uint32_t uid = fourCC("uid ");       // text, the same across restarts
inline constexpr std::uint32_t transport = fourCC("tran"); // word
inline constexpr std::uint32_t volume = fourCC("volm");
inline constexpr std::uint32_t mute = fourCC("mute");
inline constexpr std::uint32_t isRunning = fourCC("goin");       // word
inline constexpr std::uint32_t bufferFrameSize = fourCC("fsiz"); // word
// Of a process: words of 0 or 1, but for its pid.
inline constexpr std::uint32_t processID = fourCC("ppid");
inline constexpr std::uint32_t processIsRunning = fourCC("pir?"); // plays or records
inline constexpr std::uint32_t processIsRunningOutput = fourCC("piro");
inline constexpr std::uint32_t processIsRunningInput = fourCC("piri");
} // namespace AudioSelector

struct AudioAddress {
    std::uint32_t selector = 0;
    std::uint32_t scope = AudioScope::global;
    std::uint32_t element = 0;

    // clang-tidy 14 takes the 0 in what the compiler makes of it for a pointer.
    auto operator<=>(const AudioAddress&) const = default; // NOLINT(modernize-use-nullptr)
};

// Destroying it ends the listening. A call under way on another thread may still end after that.
class AudioListener {
  public:
    virtual ~AudioListener() = default;
};

// The audio system as objects with properties. From any thread; each question asks anew.
class AudioObjects {
  public:
    virtual ~AudioObjects() = default;

    virtual bool has(AudioObjectID object, const AudioAddress& address) = 0;
    virtual bool isSettable(AudioObjectID object, const AudioAddress& address) = 0;

    // A property by the form that it has. Absent if there is no such object or property, if it has
    // another form, or if the system refuses.
    virtual std::optional<std::vector<std::uint32_t>> words(AudioObjectID object,
                                                            const AudioAddress& address) = 0;
    virtual std::optional<std::uint32_t> word(AudioObjectID object,
                                              const AudioAddress& address) = 0;
    virtual std::optional<float> real(AudioObjectID object, const AudioAddress& address) = 0;
    virtual std::optional<std::string> text(AudioObjectID object, const AudioAddress& address) = 0;

    // False if it fails.
    virtual bool set(AudioObjectID object, const AudioAddress& address, std::uint32_t word) = 0;
    virtual bool set(AudioObjectID object, const AudioAddress& address, float real) = 0;

    // Calls `changed` whenever the property may have changed, on any thread, but never from within
    // a call of this class. Null if the system refuses.
    [[nodiscard]] virtual std::unique_ptr<AudioListener>
    listen(AudioObjectID object, const AudioAddress& address, std::function<void()> changed) = 0;
};

} // namespace tavero
