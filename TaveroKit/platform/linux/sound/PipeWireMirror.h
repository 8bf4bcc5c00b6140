#pragma once

#include "platform/linux/sound/PipeWireGraph.h"
#include "platform/linux/sound/SoundGraph.h"

#include <pipewire/core.h>
#include <spa/utils/hook.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

struct pw_client_info;
struct pw_metadata;
struct pw_node_info;
struct spa_dict;

namespace tavero {

// Who is told of what the mirror sees, on the loop's thread.
class PipeWireMirrorWatcher {
  public:
    virtual ~PipeWireMirrorWatcher() = default;

    virtual void lost() = 0;
    virtual void whole() = 0;                              // the first picture is there
    virtual void nodeAnnounced(const SoundNode& node) = 0; // only what its announcement says
    virtual void nodeKnown(const SoundNode& node) = 0;
    virtual void nodeGone(const SoundNode& node) = 0;
    virtual void portAppeared(const SoundPort& port) = 0;
    virtual void clientKnown(std::uint32_t client) = 0;
    // Where streams are sent; no value if it was taken back.
    virtual void targetTold(std::uint32_t node, std::string_view key, const char* value) = 0;
    virtual void changed() = 0;
};

// One connection's part in the graph: hears of all that comes and goes, and writes it down.
class PipeWireMirror {
  public:
    PipeWireMirror(pw_core* core, SoundGraph& graph, PipeWireMirrorWatcher& watcher,
                   const PipeWireGraph::Options& options);
    ~PipeWireMirror();
    PipeWireMirror(const PipeWireMirror&) = delete;

    // Where settings are kept. Null while there is none.
    pw_metadata* metadata() const;
    // Has all of the settings told anew.
    void readSettingsAgain();
    // Sets a parameter of a node or of its hardware, by their ids.
    void setNodeParam(std::uint32_t node, std::uint32_t param, const spa_pod* pod);
    void setDeviceParam(std::uint32_t device, std::uint32_t param, const spa_pod* pod);

  private:
    // An object of the service that tells of itself.
    struct Binding {
        Binding(PipeWireMirror& owner, std::uint32_t object, const char* type,
                std::uint32_t version);
        ~Binding();
        Binding(const Binding&) = delete;

        PipeWireMirror& mirror;
        std::uint32_t id;
        pw_proxy* proxy;
        spa_hook hook{};
        int seq = 0; // the answer to this comes after all that is told at first
    };

    void appeared(std::uint32_t id, std::string_view type, const spa_dict* properties);
    void nodeAppeared(std::uint32_t id, const spa_dict* properties);
    void clientAppeared(std::uint32_t id, const spa_dict* properties);
    void deviceAppeared(std::uint32_t id);
    void portAppeared(std::uint32_t id, const spa_dict* properties);
    void linkAppeared(std::uint32_t id, const spa_dict* properties);
    void metadataAppeared(std::uint32_t id, const spa_dict* properties);
    void bindMetadata(std::uint32_t id);
    void went(std::uint32_t id);
    void answered(int seq);

    void nodeTold(std::uint32_t id, const pw_node_info& info);
    void clientTold(std::uint32_t id, const pw_client_info& info);
    void levelTold(std::uint32_t node, const spa_pod* props);
    void routeTold(std::uint32_t device, const spa_pod* param);
    void settingTold(std::uint32_t subject, const char* key, const char* value);
    void confirm(const SoundNode& node);

    struct Events;

    pw_core* core_;
    SoundGraph& graph_;
    PipeWireMirrorWatcher& watcher_;
    const PipeWireGraph::Options& options_;
    pw_registry* registry_ = nullptr;
    spa_hook coreHook_{};
    spa_hook registryHook_{};
    std::map<std::uint32_t, std::unique_ptr<Binding>> bindings_;
    std::uint32_t metadataID_ = SPA_ID_INVALID;
    int listedSeq_ = 0; // the answer to this: all was announced
    int wholeSeq_ = 0;  // and to this: all was told
    bool isListed_ = false;
    bool isWhole_ = false;
};

} // namespace tavero
