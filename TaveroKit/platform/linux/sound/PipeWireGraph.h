#pragma once

#include "platform/AudioObjects.h"
#include "platform/linux/sound/SoundGraph.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct pw_core;
struct pw_thread_loop;

namespace tavero {

// Told of what happens in the graph: on the loop's thread with the graph locked. Must not destroy
// the graph, and not wait.
class PipeWireObserver {
  public:
    virtual ~PipeWireObserver() = default;

    // The whole picture is there; every stream and port in it was told of before.
    virtual void connected() {}
    // The service went. The core and all that was made of it are still there during the call, and
    // gone after it: streams of one's own must be destroyed here.
    virtual void disconnected() {}
    // All about the stream is known, but maybe not its ports.
    virtual void streamAppeared(const SoundNode&) {}
    virtual void streamGone(std::uint32_t /*node*/) {}
    virtual void portAppeared(const SoundPort&) {}
    // Something is different. Once for a burst of changes.
    virtual void changed() {}
};

// The connection to PipeWire and the picture of what is there, which is pushed, never asked for.
// Connects by itself, again and again whenever the service comes; until then all is empty. With
// nothing happening no thread wakes.
class PipeWireGraph {
  public:
    struct Options {
        // Of a process that a sandbox knows by another number. Asked once a client.
        std::function<std::optional<std::int32_t>(std::string_view app, std::int32_t inside)>
            sandboxPid;
    };

    explicit PipeWireGraph(Options options);
    PipeWireGraph() : PipeWireGraph(Options{}) {}
    // All links and streams made of its core must be gone.
    ~PipeWireGraph();
    PipeWireGraph(const PipeWireGraph&) = delete;

    // Keeps the loop from running. From any thread, more than once if need be.
    class Lock {
      public:
        explicit Lock(pw_thread_loop* loop);
        ~Lock();
        Lock(const Lock&) = delete;

      private:
        pw_thread_loop* loop_;
    };
    [[nodiscard]] Lock lock() const;

    // Everything below only with the lock held.

    pw_thread_loop* loop() const;
    // Null while there is no connection. Good until the observers hear of its end.
    pw_core* core() const;
    // Whether the picture is whole. If not, it is to be taken for empty.
    bool isConnected() const;
    // How many connections there have been, this one included.
    std::uint32_t generation() const;
    const SoundGraph& mirror() const;
    // Lets the loop run until `reached` holds or the time is over; says whether it holds. Not on
    // the loop's thread.
    bool waitUntil(const std::function<bool()>& reached, std::chrono::milliseconds patience) const;
    // Whether the service is known to be there or not to be there, for one who shouldn't read too
    // early.
    bool isSettled() const;

    void add(PipeWireObserver& observer);
    void remove(PipeWireObserver& observer);

    // The process objects are numbers that hold a pid, and the generation in which it was seen.
    static AudioObjectID processObject(std::uint32_t generation, std::int32_t pid);
    // Absent of any other object, and of one of another connection.
    std::optional<std::int32_t> pidOf(AudioObjectID processObject) const;
    // Whether the stream is of one of these processes.
    bool isOf(const SoundNode& stream, const std::vector<AudioObjectID>& processObjects) const;

    // From now on all that these processes play goes to this node, for streams to come from their
    // first sample on. Where several name a process the latest holds. Ends by itself with the
    // connection.
    using RedirectID = std::uint64_t;
    RedirectID redirect(std::vector<AudioObjectID> processObjects, std::uint64_t targetSerial);
    // Streams go back to where they were sent before.
    void release(RedirectID redirect);

    // Links two ports for as long as it lives; it may outlive the connection. A passive link keeps
    // nobody awake. Made and destroyed with the lock held. Null without a connection.
    class Link {
      public:
        virtual ~Link() = default;
    };
    [[nodiscard]] std::unique_ptr<Link> link(const SoundPort& out, const SoundPort& in,
                                             bool isPassive);

    // What the rest of sound sees at once, and the service is asked for. A figure that the service
    // doesn't confirm within half a second is given up.
    void setLevel(std::uint32_t node, const SoundLevel& level);
    void setDefaultSink(std::uint32_t node);
    void setDefaultSource(std::uint32_t node);

  private:
    class Body;
    std::unique_ptr<Body> body_;
};

} // namespace tavero
