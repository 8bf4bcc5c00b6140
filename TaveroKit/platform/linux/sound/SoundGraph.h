#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// The nodes that this program makes have names that begin with this.
inline constexpr std::string_view ownNodePrefix = "com.brimfold.tavero.";

// How loud a node is: one linear factor a channel.
struct SoundLevel {
    std::vector<float> channels;
    bool isMuted = false;

    bool operator==(const SoundLevel&) const = default;
};

// A device, or a stream of an app.
struct SoundNode {
    enum class Kind { other, sink, source, duplex, playback, capture };

    std::uint32_t id = 0;
    std::uint64_t serial = 0; // unlike the id never given again
    Kind kind = Kind::other;
    std::string mediaClass;
    std::string name;
    std::string description;
    std::string nick;
    std::string appName;
    std::string mediaName;
    // What its maker says of its hardware.
    std::string bus;
    std::string formFactor;
    std::string deviceAPI;
    std::string factory;
    std::string profile; // device.profile.name, "hdmi-stereo"
    bool isVirtual = false;
    std::optional<std::uint32_t> client;
    std::optional<std::uint32_t> device;
    std::optional<std::int32_t> profileDevice; // which routes of the device are its own
    bool isKnown = false;                      // all of it has been told
    bool isRunning = false;
    std::optional<SoundLevel> level; // absent if it has no volume

    bool isSink() const { return kind == Kind::sink || kind == Kind::duplex; }
    bool isSource() const { return kind == Kind::source || kind == Kind::duplex; }
    bool isDevice() const { return isSink() || isSource(); }
    bool isStream() const { return kind == Kind::playback || kind == Kind::capture; }
    bool isOwn() const { return name.starts_with(ownNodePrefix); }
};

struct SoundPort {
    enum class Direction { in, out };

    std::uint32_t id = 0;
    std::uint32_t node = 0;
    Direction direction = Direction::in;
    std::string name;
    std::string channel;    // "FL"
    bool isMonitor = false; // what a sink plays, or a source gives, over again
};

struct SoundLink {
    std::uint32_t id = 0;
    std::uint32_t outNode = 0;
    std::uint32_t outPort = 0;
    std::uint32_t inNode = 0;
    std::uint32_t inPort = 0;
};

// A program that talks to the service.
struct SoundClient {
    std::uint32_t id = 0;
    bool isKnown = false;
    // Absent if nobody says, or if the app lives in a sandbox and its process wasn't found.
    std::optional<std::int32_t> pid;
    bool hadStream = false;
};

// The way to one end of a sound card, such as its loudspeakers. It holds the volume of the nodes
// that play there.
struct SoundRoute {
    std::int32_t index = 0;
    SoundLevel level;
};

// A piece of hardware.
struct SoundHardware {
    std::uint32_t id = 0;
    std::map<std::int32_t, SoundRoute> routes; // by the number of the profile's device
};

// What PipeWire says there is, as plain values by their ids. Nodes that carry no sound are left
// out.
struct SoundGraph {
    std::map<std::uint32_t, SoundNode> nodes;
    std::map<std::uint32_t, SoundPort> ports;
    std::map<std::uint32_t, SoundLink> links;
    std::map<std::uint32_t, SoundClient> clients;
    std::map<std::uint32_t, SoundHardware> hardware;
    std::string defaultSink; // names of nodes; empty if there is none
    std::string defaultSource;
    // What was asked for and isn't confirmed yet.
    std::map<std::uint32_t, SoundLevel> asking; // by node
    std::optional<std::string> askedSink;
    std::optional<std::string> askedSource;

    // Null if there is none.
    const SoundNode* node(std::uint32_t id) const;
    const SoundNode* named(std::string_view name) const;
    // In the order of their ids, which is that of the channels.
    std::vector<SoundPort> portsOf(std::uint32_t node, SoundPort::Direction direction) const;

    // Of the app behind a stream. Absent if it isn't known (yet).
    std::optional<std::int32_t> pidOf(const SoundNode& node) const;
    const SoundRoute* routeOf(const SoundNode& node) const;
    // The volume that counts: what was asked for, or what the service told of the node's route, or
    // else of the node.
    std::optional<SoundLevel> levelOf(const SoundNode& node) const;
    std::optional<SoundLevel> toldLevelOf(const SoundNode& node) const;
    // The devices that stand for "the system's" now. Null if there is none.
    const SoundNode* sink() const;
    const SoundNode* source() const;
    // There are outputs, but none of them is the system's.
    bool lacksSink() const;

    // The processes that play or record, or did and are still connected; without this one.
    std::vector<std::int32_t> processes(std::int32_t ownPid) const;
    bool isPlaying(std::int32_t pid) const;
    // Whether it listens to an input. Who records what a sink plays doesn't.
    bool isRecording(std::int32_t pid) const;

  private:
    bool listensToInput(const SoundNode& stream) const;
};

} // namespace tavero
