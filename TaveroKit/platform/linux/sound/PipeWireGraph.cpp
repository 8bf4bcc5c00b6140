#include "platform/linux/sound/PipeWireGraph.h"

#include "platform/linux/Environment.h"
#include "platform/linux/sound/PipeWireCalls.h"
#include "platform/linux/sound/PipeWireLevels.h"
#include "platform/linux/sound/PipeWireLink.h"
#include "platform/linux/sound/PipeWireMirror.h"
#include "platform/linux/sound/PipeWireValues.h"
#include "platform/linux/sound/Redirects.h"
#include "platform/linux/sound/ServiceWatch.h"

#include <pipewire/pipewire.h>
#include <spa/param/param.h>

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

// How long what was asked for stands in for what the service says.
constexpr long askingNanoseconds = 500'000'000;

// The service drops a setting's news for all but one of its clients while that one begins to
// listen. What can be seen of that is a graph with outputs of which none is the default: then the
// settings are asked for again, after 1 s, 2 s, 4 s and so on, until a machine without a default is
// believed.
constexpr int mostReadings = 5;

constexpr std::uint32_t processMark = 0x80000000;
constexpr std::uint32_t pidBits = 22; // the kernel gives none above
constexpr std::uint32_t pidMask = (1U << pidBits) - 1;
constexpr std::uint32_t generationMask = 0x1FF;

} // namespace

PipeWireGraph::Lock::Lock(pw_thread_loop* loop) : loop_(loop) {
    if (loop_) pw_thread_loop_lock(loop_);
}

PipeWireGraph::Lock::~Lock() {
    if (loop_) pw_thread_loop_unlock(loop_);
}

class PipeWireGraph::Body : public PipeWireMirrorWatcher {
  public:
    explicit Body(Options options);
    ~Body() override;

    void lost() override;
    void whole() override;
    void nodeAnnounced(const SoundNode& node) override { redirects.apply(node); }
    void nodeKnown(const SoundNode& node) override;
    void nodeGone(const SoundNode& node) override;
    void portAppeared(const SoundPort& port) override;
    void clientKnown(std::uint32_t client) override;
    void targetTold(std::uint32_t node, std::string_view key, const char* value) override;
    void changed() override;

    bool isOf(const SoundNode& stream, const std::vector<AudioObjectID>& processObjects) const;
    void write(std::uint32_t subject, const char* key, const char* type, const char* value);
    void setLevel(std::uint32_t id, const SoundLevel& level);
    void setDefault(const char* key, std::uint32_t id, std::optional<std::string>& asked);

    Options options;
    pw_thread_loop* loop = nullptr;
    pw_context* context = nullptr;
    pw_core* core = nullptr;
    SoundGraph graph;
    Redirects redirects;
    std::vector<PipeWireObserver*> observers;
    std::uint32_t generation = 0;
    bool isWhole = false;
    bool isSettled = false;

  private:
    void start();
    void connect();
    bool tryToConnect();
    void disconnect();
    void tellOfChange();
    void giveUpAsking();
    void startAsking();
    void doubtSettings();
    void readSettingsAgain();
    template <class Tell>
    void tell(Tell call);

    std::unique_ptr<ServiceWatch> watch_;
    std::unique_ptr<PipeWireMirror> mirror_;
    spa_source* lost_ = nullptr;
    spa_source* changed_ = nullptr;
    spa_source* asking_ = nullptr;
    spa_source* settings_ = nullptr;
    bool isDoubting_ = false; // the settings will be read again
    int readings_ = 0;        // how often they were since they were last believed
    bool isChangeUnderWay_ = false;
};

PipeWireGraph::Body::Body(Options given)
    : options(std::move(given)),
      redirects([this](std::uint32_t node, const char* key, const char* type,
                       const char* value) { write(node, key, type, value); },
                [this](const SoundNode& stream, const std::vector<AudioObjectID>& objects) {
                    return isOf(stream, objects);
                }) {
    pw_init(nullptr, nullptr);
    loop = pw_thread_loop_new("tavero-sound", nullptr);
    if (!loop) return;
    context = pw_context_new(pw_thread_loop_get_loop(loop),
                             pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr), 0);
    if (context) start();
}

void PipeWireGraph::Body::start() {
    pw_loop* inner = pw_thread_loop_get_loop(loop);
    lost_ = pw_loop_add_event(
        inner, [](void* data, std::uint64_t) { static_cast<Body*>(data)->disconnect(); }, this);
    changed_ = pw_loop_add_event(
        inner, [](void* data, std::uint64_t) { static_cast<Body*>(data)->tellOfChange(); }, this);
    asking_ = pw_loop_add_timer(
        inner, [](void* data, std::uint64_t) { static_cast<Body*>(data)->giveUpAsking(); }, this);
    settings_ = pw_loop_add_timer(
        inner, [](void* data, std::uint64_t) { static_cast<Body*>(data)->readSettingsAgain(); },
        this);
    watch_ = std::make_unique<ServiceWatch>(
        inner,
        ServiceWatch::socketPath(environmentVariable("PIPEWIRE_RUNTIME_DIR"),
                                 environmentVariable("XDG_RUNTIME_DIR"),
                                 environmentVariable("PIPEWIRE_REMOTE")),
        [this] { connect(); });
    const Lock lock(loop);
    pw_thread_loop_start(loop);
    connect();
}

PipeWireGraph::Body::~Body() {
    if (loop) {
        pw_thread_loop_lock(loop);
        if (core) disconnect();
        pw_thread_loop_unlock(loop);
        pw_thread_loop_stop(loop);
        for (spa_source* source : {lost_, changed_, asking_, settings_})
            if (source) pw_loop_destroy_source(pw_thread_loop_get_loop(loop), source);
        watch_.reset();
        if (context) pw_context_destroy(context);
        pw_thread_loop_destroy(loop);
    }
    pw_deinit();
}

void PipeWireGraph::Body::connect() {
    if (core || tryToConnect()) return;
    // What came between the try and the beginning of the watch would never be heard of.
    watch_->begin();
    if (tryToConnect()) return;
    watch_->failed();
    isSettled = true;
    pw_thread_loop_signal(loop, false);
}

bool PipeWireGraph::Body::tryToConnect() {
    core = pw_context_connect(context, nullptr, 0);
    if (!core) return false;
    ++generation;
    mirror_ = std::make_unique<PipeWireMirror>(core, graph, *this, options);
    return true;
}

// Within the core's own event, where it can't be destroyed.
void PipeWireGraph::Body::lost() { pw_loop_signal_event(pw_thread_loop_get_loop(loop), lost_); }

void PipeWireGraph::Body::disconnect() {
    if (!core) return;
    isWhole = false;
    tell([](PipeWireObserver& observer) { observer.disconnected(); });
    redirects.clear();
    mirror_.reset();
    graph = {};
    pw_core_disconnect(std::exchange(core, nullptr));
    changed();
    watch_->begin();
    watch_->failed();
}

void PipeWireGraph::Body::whole() {
    isWhole = true;
    isSettled = true;
    watch_->succeeded();
    tell([](PipeWireObserver& observer) { observer.connected(); });
    changed();
}

void PipeWireGraph::Body::nodeKnown(const SoundNode& node) {
    redirects.apply(node);
    if (node.isStream()) tell([&](PipeWireObserver& observer) { observer.streamAppeared(node); });
}

void PipeWireGraph::Body::nodeGone(const SoundNode& node) {
    redirects.gone(node.id);
    if (node.isStream()) tell([&](PipeWireObserver& observer) { observer.streamGone(node.id); });
}

void PipeWireGraph::Body::portAppeared(const SoundPort& port) {
    tell([&](PipeWireObserver& observer) { observer.portAppeared(port); });
}

void PipeWireGraph::Body::clientKnown(std::uint32_t client) {
    for (const auto& [id, node] : graph.nodes)
        if (node.client == client) redirects.apply(node);
}

void PipeWireGraph::Body::targetTold(std::uint32_t node, std::string_view key, const char* value) {
    redirects.told(node, key, value);
}

void PipeWireGraph::Body::changed() {
    if (std::exchange(isChangeUnderWay_, true)) return;
    pw_loop_signal_event(pw_thread_loop_get_loop(loop), changed_);
}

void PipeWireGraph::Body::tellOfChange() {
    isChangeUnderWay_ = false;
    doubtSettings();
    tell([](PipeWireObserver& observer) { observer.changed(); });
    pw_thread_loop_signal(loop, false);
}

void PipeWireGraph::Body::doubtSettings() {
    if (!isWhole || !graph.lacksSink()) {
        readings_ = 0;
        return;
    }
    if (isDoubting_ || readings_ == mostReadings) return;
    isDoubting_ = true;
    timespec wait{};
    wait.tv_sec = 1L << readings_++;
    pw_loop_update_timer(pw_thread_loop_get_loop(loop), settings_, &wait, nullptr, false);
}

void PipeWireGraph::Body::readSettingsAgain() {
    isDoubting_ = false;
    if (mirror_ && graph.lacksSink()) mirror_->readSettingsAgain();
    changed();
}

// An observer may take itself, or another, out of the list while it is told.
template <class Tell>
void PipeWireGraph::Body::tell(Tell call) {
    const std::vector<PipeWireObserver*> all = observers;
    for (PipeWireObserver* observer : all)
        if (std::find(observers.begin(), observers.end(), observer) != observers.end())
            call(*observer);
}

bool PipeWireGraph::Body::isOf(const SoundNode& stream,
                               const std::vector<AudioObjectID>& processObjects) const {
    const auto pid = graph.pidOf(stream);
    return pid && std::find(processObjects.begin(), processObjects.end(),
                            processObject(generation, *pid)) != processObjects.end();
}

void PipeWireGraph::Body::write(std::uint32_t subject, const char* key, const char* type,
                                const char* value) {
    if (mirror_ && mirror_->metadata())
        PipeWireCalls::setProperty(mirror_->metadata(), subject, key, type, value);
}

void PipeWireGraph::Body::setLevel(std::uint32_t id, const SoundLevel& level) {
    const SoundNode* node = graph.node(id);
    if (!node || !mirror_) return;
    const PipeWireLevels::Change change = PipeWireLevels::between(graph.levelOf(*node), level);
    PipeWireLevels::Memory memory;
    if (const SoundRoute* route = graph.routeOf(*node))
        mirror_->setDeviceParam(
            *node->device, SPA_PARAM_Route,
            PipeWireLevels::route(change, route->index, *node->profileDevice, memory));
    else
        mirror_->setNodeParam(id, SPA_PARAM_Props, PipeWireLevels::props(change, memory));
    graph.asking[id] = level;
    startAsking();
}

void PipeWireGraph::Body::setDefault(const char* key, std::uint32_t id,
                                     std::optional<std::string>& asked) {
    const SoundNode* node = graph.node(id);
    if (!node || !mirror_ || !mirror_->metadata()) return;
    write(PW_ID_CORE, key, "Spa:String:JSON", PipeWireValues::withName(node->name).c_str());
    asked = node->name;
    startAsking();
}

void PipeWireGraph::Body::startAsking() {
    timespec wait{};
    wait.tv_nsec = askingNanoseconds;
    pw_loop_update_timer(pw_thread_loop_get_loop(loop), asking_, &wait, nullptr, false);
    changed();
}

void PipeWireGraph::Body::giveUpAsking() {
    graph.asking.clear();
    graph.askedSink.reset();
    graph.askedSource.reset();
    changed();
}

PipeWireGraph::PipeWireGraph(Options options) : body_(std::make_unique<Body>(std::move(options))) {}

PipeWireGraph::~PipeWireGraph() = default;

PipeWireGraph::Lock PipeWireGraph::lock() const { return Lock(body_->loop); }
pw_thread_loop* PipeWireGraph::loop() const { return body_->loop; }
pw_core* PipeWireGraph::core() const { return body_->core; }
bool PipeWireGraph::isConnected() const { return body_->isWhole; }
bool PipeWireGraph::isSettled() const { return body_->isSettled; }
std::uint32_t PipeWireGraph::generation() const { return body_->generation; }
const SoundGraph& PipeWireGraph::mirror() const { return body_->graph; }

bool PipeWireGraph::waitUntil(const std::function<bool()>& reached,
                              std::chrono::milliseconds patience) const {
    if (!body_->loop) return reached();
    timespec end{};
    pw_thread_loop_get_time(body_->loop, &end,
                            std::chrono::duration_cast<std::chrono::nanoseconds>(patience).count());
    while (!reached())
        if (pw_thread_loop_timed_wait_full(body_->loop, &end) < 0) return reached();
    return true;
}

void PipeWireGraph::add(PipeWireObserver& observer) { body_->observers.push_back(&observer); }
void PipeWireGraph::remove(PipeWireObserver& observer) { std::erase(body_->observers, &observer); }

AudioObjectID PipeWireGraph::processObject(std::uint32_t generation, std::int32_t pid) {
    return processMark | (generation & generationMask) << pidBits |
           (static_cast<std::uint32_t>(pid) & pidMask);
}

std::optional<std::int32_t> PipeWireGraph::pidOf(AudioObjectID processObject) const {
    const auto pid = static_cast<std::int32_t>(processObject & pidMask);
    if (pid == 0 || processObject != PipeWireGraph::processObject(generation(), pid))
        return std::nullopt;
    return pid;
}

bool PipeWireGraph::isOf(const SoundNode& stream,
                         const std::vector<AudioObjectID>& processObjects) const {
    return body_->isOf(stream, processObjects);
}

PipeWireGraph::RedirectID PipeWireGraph::redirect(std::vector<AudioObjectID> processObjects,
                                                  std::uint64_t targetSerial) {
    return body_->redirects.add(std::move(processObjects), targetSerial, body_->graph);
}

void PipeWireGraph::release(RedirectID redirect) {
    body_->redirects.remove(redirect, body_->graph);
}

std::unique_ptr<PipeWireGraph::Link> PipeWireGraph::link(const SoundPort& out, const SoundPort& in,
                                                         bool isPassive) {
    return body_->core ? PipeWireLink::make(body_->core, out, in, isPassive) : nullptr;
}

void PipeWireGraph::setLevel(std::uint32_t node, const SoundLevel& level) {
    body_->setLevel(node, level);
}

void PipeWireGraph::setDefaultSink(std::uint32_t node) {
    body_->setDefault("default.configured.audio.sink", node, body_->graph.askedSink);
}

void PipeWireGraph::setDefaultSource(std::uint32_t node) {
    body_->setDefault("default.configured.audio.source", node, body_->graph.askedSource);
}

} // namespace tavero
