#include "platform/linux/sound/PipeWireObjects.h"

#include "platform/linux/sound/SoundTransport.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace tavero {

namespace {

constexpr std::chrono::milliseconds settlingPatience{100};

float loudest(const std::vector<float>& channels) {
    return channels.empty() ? 0 : *std::max_element(channels.begin(), channels.end());
}

// Whether the device works in the direction that the address speaks of.
bool isInScope(const SoundNode& device, std::uint32_t scope) {
    if (scope == AudioScope::output) return device.isSink();
    if (scope == AudioScope::input) return device.isSource();
    return false;
}

} // namespace

// One who wants to know, and what the property was when it was last looked at.
struct PipeWireObjects::Listening {
    AudioObjectID object = 0;
    AudioAddress address;
    std::function<void()> changed;
    Value last;
    bool isOver = false;
};

class PipeWireObjects::Listener : public AudioListener {
  public:
    Listener(std::shared_ptr<PipeWireGraph> graph, std::shared_ptr<Listening> listening,
             std::weak_ptr<std::vector<std::shared_ptr<Listening>>> all)
        : graph_(std::move(graph)), listening_(std::move(listening)), all_(std::move(all)) {}
    ~Listener() override {
        const auto lock = graph_->lock();
        listening_->isOver = true;
        if (const auto all = all_.lock()) std::erase(*all, listening_);
    }

  private:
    std::shared_ptr<PipeWireGraph> graph_;
    std::shared_ptr<Listening> listening_;
    std::weak_ptr<std::vector<std::shared_ptr<Listening>>> all_;
};

PipeWireObjects::PipeWireObjects(std::shared_ptr<PipeWireGraph> graph, std::int32_t ownPid)
    : graph_(std::move(graph)), ownPid_(ownPid),
      listening_(std::make_shared<std::vector<std::shared_ptr<Listening>>>()) {
    const auto lock = graph_->lock();
    graph_->add(*this);
}

PipeWireObjects::~PipeWireObjects() {
    const auto lock = graph_->lock();
    graph_->remove(*this);
}

void PipeWireObjects::settle() {
    if (hasSettled_) return;
    hasSettled_ = true;
    graph_->waitUntil([this] { return graph_->isSettled(); }, settlingPatience);
}

template <class Form>
std::optional<Form> PipeWireObjects::read(AudioObjectID object, const AudioAddress& address) {
    const auto lock = graph_->lock();
    settle();
    Value answer = value(object, address);
    Form* form = std::get_if<Form>(&answer);
    return form ? std::optional<Form>(std::move(*form)) : std::nullopt;
}

bool PipeWireObjects::has(AudioObjectID object, const AudioAddress& address) {
    const auto lock = graph_->lock();
    settle();
    return !std::holds_alternative<std::monostate>(value(object, address));
}

bool PipeWireObjects::isSettable(AudioObjectID object, const AudioAddress& address) {
    const bool isDefault =
        object == audioSystem && (address.selector == AudioSelector::defaultOutput ||
                                  address.selector == AudioSelector::defaultInput);
    const bool isLevel =
        address.selector == AudioSelector::volume || address.selector == AudioSelector::mute;
    return (isDefault || isLevel) && has(object, address);
}

std::optional<PipeWireObjects::Words> PipeWireObjects::words(AudioObjectID object,
                                                             const AudioAddress& address) {
    return read<Words>(object, address);
}

std::optional<std::uint32_t> PipeWireObjects::word(AudioObjectID object,
                                                   const AudioAddress& address) {
    return read<std::uint32_t>(object, address);
}

std::optional<float> PipeWireObjects::real(AudioObjectID object, const AudioAddress& address) {
    return read<float>(object, address);
}

std::optional<std::string> PipeWireObjects::text(AudioObjectID object,
                                                 const AudioAddress& address) {
    return read<std::string>(object, address);
}

bool PipeWireObjects::set(AudioObjectID object, const AudioAddress& address, std::uint32_t word) {
    const auto lock = graph_->lock();
    settle();
    if (!isSettable(object, address)) return false;
    if (object == audioSystem) {
        const bool isOutput = address.selector == AudioSelector::defaultOutput;
        const SoundNode* chosen = device(word);
        if (!chosen || !(isOutput ? chosen->isSink() : chosen->isSource())) return false;
        isOutput ? graph_->setDefaultSink(word) : graph_->setDefaultSource(word);
        return true;
    }
    if (address.selector != AudioSelector::mute) return false;
    SoundLevel level = *graph_->mirror().levelOf(*device(object));
    level.isMuted = word != 0;
    graph_->setLevel(object, level);
    return true;
}

bool PipeWireObjects::set(AudioObjectID object, const AudioAddress& address, float real) {
    const auto lock = graph_->lock();
    settle();
    if (address.selector != AudioSelector::volume || !isSettable(object, address) ||
        !std::isfinite(real))
        return false;
    const SoundNode& target = *device(object);
    SoundLevel level = *graph_->mirror().levelOf(target);
    const float slider = std::clamp(real, 0.0F, 1.0F);
    const float factor = slider * slider * slider;
    level.channels = shapeOf(target);
    keepShape(target.serial, level.channels);
    const float most = loudest(level.channels);
    for (float& channel : level.channels) channel *= factor / most;
    graph_->setLevel(object, level);
    return true;
}

// Never all 0.
std::vector<float> PipeWireObjects::shapeOf(const SoundNode& target) const {
    std::vector<float> now = graph_->mirror().levelOf(target)->channels;
    if (loudest(now) > 0) return now;
    const auto kept = shapes_.find(target.serial);
    if (kept != shapes_.end() && kept->second.size() == now.size()) return kept->second;
    return std::vector<float>(now.size(), 1);
}

void PipeWireObjects::keepShape(std::uint64_t serial, const std::vector<float>& channels) {
    const auto& nodes = graph_->mirror().nodes;
    std::erase_if(shapes_, [&](const auto& entry) {
        return std::none_of(nodes.begin(), nodes.end(),
                            [&](const auto& node) { return node.second.serial == entry.first; });
    });
    shapes_[serial] = channels;
}

std::unique_ptr<AudioListener> PipeWireObjects::listen(AudioObjectID object,
                                                       const AudioAddress& address,
                                                       std::function<void()> changed) {
    const auto lock = graph_->lock();
    settle();
    auto listening = std::make_shared<Listening>();
    listening->object = object;
    listening->address = address;
    listening->changed = std::move(changed);
    listening->last = value(object, address);
    listening_->push_back(listening);
    return std::make_unique<Listener>(graph_, std::move(listening), listening_);
}

void PipeWireObjects::changed() {
    // Who is told may end listenings, its own too.
    const std::vector<std::shared_ptr<Listening>> all = *listening_;
    for (const auto& listening : all) {
        if (listening->isOver) continue;
        Value now = value(listening->object, listening->address);
        if (now == listening->last) continue;
        listening->last = std::move(now);
        listening->changed();
    }
}

PipeWireObjects::Value PipeWireObjects::value(AudioObjectID object,
                                              const AudioAddress& address) const {
    if (object == audioSystem) return systemValue(address);
    if (const SoundNode* found = device(object)) return deviceValue(*found, address);
    const auto pid = graph_->pidOf(object);
    if (pid && knows(*pid)) return processValue(*pid, address);
    return {};
}

PipeWireObjects::Value PipeWireObjects::systemValue(const AudioAddress& address) const {
    if (address.scope != AudioScope::global || address.element != 0) return {};
    const auto idOf = [this](const SoundNode* node) -> Value {
        return graph_->isConnected() && node && node->isKnown ? Value(node->id) : Value();
    };
    switch (address.selector) {
    case AudioSelector::devices:
        return devices();
    case AudioSelector::processes:
        return processes();
    case AudioSelector::defaultOutput:
        return idOf(graph_->mirror().sink());
    case AudioSelector::defaultInput:
        return idOf(graph_->mirror().source());
    default:
        return {};
    }
}

PipeWireObjects::Value PipeWireObjects::deviceValue(const SoundNode& device,
                                                    const AudioAddress& address) const {
    if (address.element != 0) return {}; // no channels of their own
    switch (address.selector) {
    case AudioSelector::name:
        if (!device.description.empty()) return device.description;
        return device.nick.empty() ? device.name : device.nick;
    case AudioSelector::uid:
        return device.name;
    case AudioSelector::transport:
        return transportCode(device);
    case AudioSelector::isRunning:
        return std::uint32_t{device.isRunning};
    case AudioSelector::streams:
        return isInScope(device, address.scope) ? Words{device.id} : Words{};
    case AudioSelector::volume:
    case AudioSelector::mute:
        return levelValue(device, address);
    default:
        return {};
    }
}

PipeWireObjects::Value PipeWireObjects::levelValue(const SoundNode& device,
                                                   const AudioAddress& address) const {
    const auto level = graph_->mirror().levelOf(device);
    if (!isInScope(device, address.scope) || !level || level->channels.empty()) return {};
    if (address.selector == AudioSelector::mute) return std::uint32_t{level->isMuted};
    return std::clamp(std::cbrt(loudest(level->channels)), 0.0F, 1.0F);
}

PipeWireObjects::Value PipeWireObjects::processValue(std::int32_t pid,
                                                     const AudioAddress& address) const {
    if (address.scope != AudioScope::global || address.element != 0) return {};
    const SoundGraph& mirror = graph_->mirror();
    switch (address.selector) {
    case AudioSelector::processID:
        return static_cast<std::uint32_t>(pid);
    case AudioSelector::processIsRunningOutput:
        return std::uint32_t{mirror.isPlaying(pid)};
    case AudioSelector::processIsRunningInput:
        return std::uint32_t{mirror.isRecording(pid)};
    case AudioSelector::processIsRunning:
        return std::uint32_t{mirror.isPlaying(pid) || mirror.isRecording(pid)};
    default:
        return {};
    }
}

const SoundNode* PipeWireObjects::device(AudioObjectID object) const {
    const SoundNode* node = graph_->isConnected() ? graph_->mirror().node(object) : nullptr;
    return node && node->isDevice() && node->isKnown ? node : nullptr;
}

PipeWireObjects::Words PipeWireObjects::devices() const {
    Words ids;
    if (!graph_->isConnected()) return ids;
    for (const auto& [id, node] : graph_->mirror().nodes)
        if (device(id)) ids.push_back(id);
    return ids;
}

PipeWireObjects::Words PipeWireObjects::processes() const {
    Words objects;
    if (!graph_->isConnected()) return objects;
    for (const std::int32_t pid : graph_->mirror().processes(ownPid_))
        objects.push_back(PipeWireGraph::processObject(graph_->generation(), pid));
    return objects;
}

bool PipeWireObjects::knows(std::int32_t pid) const {
    if (!graph_->isConnected()) return false;
    const auto all = graph_->mirror().processes(ownPid_);
    return std::binary_search(all.begin(), all.end(), pid);
}

} // namespace tavero
