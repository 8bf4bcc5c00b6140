#pragma once

#include "platform/linux/sound/PipeWireGraph.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// Where the streams of some processes are sent, kept in step with what is wanted.
class Redirects {
  public:
    // Writes, or without a value takes back, what is set of a node.
    using Write = std::function<void(std::uint32_t node, const char* key, const char* type,
                                     const char* value)>;
    // Whether the stream is of one of these processes.
    using IsOf =
        std::function<bool(const SoundNode& stream, const std::vector<AudioObjectID>& processes)>;

    Redirects(Write write, IsOf isOf);

    PipeWireGraph::RedirectID add(std::vector<AudioObjectID> processes, std::uint64_t serial,
                                  const SoundGraph& graph);
    void remove(PipeWireGraph::RedirectID redirect, const SoundGraph& graph);

    // Sends the stream to where it is to go, or back.
    void apply(const SoundNode& node);
    void applyAll(const SoundGraph& graph);
    // Somebody, maybe we, sent the stream elsewhere.
    void told(std::uint32_t node, std::string_view key, const char* value);
    void gone(std::uint32_t node);
    void clear();

  private:
    struct Redirect {
        PipeWireGraph::RedirectID id = 0;
        std::vector<AudioObjectID> processes;
        std::string serial;
    };
    struct Stream {
        std::string sent;                  // the serial; empty if we sent it nowhere
        bool isTaken = false;              // another program has sent it elsewhere since
        std::optional<std::string> object; // as others wish it: "target.object"
        std::optional<std::string> node;   // and "target.node"
        std::vector<std::optional<std::string>> underWay; // what we wrote and haven't heard back
    };

    void send(std::uint32_t node, Stream& stream, std::optional<std::string> object);
    void giveBack(std::uint32_t node, Stream& stream);

    Write write_;
    IsOf isOf_;
    std::vector<Redirect> redirects_; // the latest last
    std::map<std::uint32_t, Stream> streams_;
    PipeWireGraph::RedirectID next_ = 1;
};

} // namespace tavero
