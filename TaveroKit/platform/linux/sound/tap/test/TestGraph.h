#pragma once

#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tavero::test {

// What a test sees of PipeWire's graph, through a connection of its own.
class TestGraph {
  public:
    struct Node {
        std::uint32_t id = 0;
        std::string serial;
        std::string name;
        std::string mediaClass;
    };
    struct Port {
        std::uint32_t id = 0;
        std::uint32_t node = 0;
        bool isOutput = false;
        std::string name;
        std::string channel;
    };
    struct Link {
        std::uint32_t id = 0;
        std::uint32_t outputNode = 0;
        std::uint32_t inputNode = 0;
    };
    // Held while anything below is looked at, or PipeWire is called.
    class Lock {
      public:
        explicit Lock(TestGraph& graph) : loop_(graph.loop_) { pw_thread_loop_lock(loop_); }
        ~Lock() { pw_thread_loop_unlock(loop_); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

      private:
        pw_thread_loop* loop_;
    };

    TestGraph();
    ~TestGraph();
    TestGraph(const TestGraph&) = delete;
    TestGraph& operator=(const TestGraph&) = delete;

    // Waits until it is true, asking with the lock held at every change and some times a second.
    // False after ten seconds.
    bool waitUntil(const std::function<bool()>& isTrue);

    // With the lock held.
    pw_core* core() const { return core_; }
    const Node* node(const std::string& name) const; // null if there is none
    std::vector<Port> ports(std::uint32_t node, bool isOutput) const;
    // The names of the nodes that a node plays to, in no order.
    std::vector<std::string> targets(const std::string& name) const;
    const std::map<std::uint32_t, Node>& nodes() const { return nodes_; }
    const std::map<std::uint32_t, Link>& links() const { return links_; }
    // A link between two ports for as long as this connection lasts.
    pw_proxy* link(const Port& from, const Port& to);
    // An output of this name, until it is removed or this connection ends.
    pw_proxy* makeOutput(const std::string& name);
    void remove(pw_proxy* output);

    // Without it. Who plays to whom, as text.
    std::string wiring();
    // Without it. The size of each block from now on; 0 leaves it to the graph.
    void forceQuantum(std::uint32_t frames);

  private:
    void appeared(std::uint32_t id, const char* type, const spa_dict* properties);
    void went(std::uint32_t id);

    pw_thread_loop* loop_ = nullptr;
    pw_context* context_ = nullptr;
    pw_core* core_ = nullptr;
    pw_registry* registry_ = nullptr;
    pw_metadata* settings_ = nullptr;
    std::vector<pw_proxy*> outputs_;
    spa_hook hook_{};
    std::map<std::uint32_t, Node> nodes_;
    std::map<std::uint32_t, Port> ports_;
    std::map<std::uint32_t, Link> links_;
};

} // namespace tavero::test
