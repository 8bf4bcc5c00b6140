#include "platform/linux/hardware/DrmClients.h"

#include "platform/linux/TextCursor.h"
#include "records/SaturatingSum.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tavero {

namespace {

constexpr std::size_t mostEngines = 64;

// The engines that draw, by the names that drivers give them.
bool draws(std::string_view engine) {
    constexpr std::array names{"gfx", "render", "rcs", "gpu", "fragment"};
    return std::find(names.begin(), names.end(), engine) != names.end();
}

DrmEngine* engineOf(std::vector<DrmEngine>& engines, std::string_view name) {
    const auto known = std::find_if(engines.begin(), engines.end(),
                                    [&](const DrmEngine& e) { return e.name == name; });
    if (known != engines.end()) return &*known;
    if (engines.size() >= mostEngines) return nullptr;
    return &engines.emplace_back(DrmEngine{.name = std::string(name)});
}

// "20480 KiB".
std::uint64_t byteCount(TextCursor& value) {
    const std::uint64_t number = value.number().value_or(0);
    const std::string_view unit = value.word();
    if (unit == "KiB") return saturatingProduct(number, 1 << 10);
    if (unit == "MiB") return saturatingProduct(number, 1 << 20);
    return number;
}

// One line: what is before the colon, and a cursor on the rest.
class Lines {
  public:
    explicit Lines(DrmClient& client) : client_(client) {}

    void take(std::string_view key, TextCursor value) {
        if (key == "drm-pdev")
            client_.device = value.word();
        else if (key == "drm-driver")
            driver_ = value.word();
        else if (key == "drm-client-id")
            id_ = value.number();
        else if (skip(key, "drm-engine-capacity-"))
            return;
        else if (skip(key, "drm-engine-"))
            setEngine(key, &DrmEngine::time, value);
        else if (skip(key, "drm-total-cycles-"))
            setEngine(key, &DrmEngine::totalCycles, value);
        else if (skip(key, "drm-cycles-"))
            setEngine(key, &DrmEngine::cycles, value);
        else if (skip(key, "drm-resident-"))
            resident_[std::string(key)] = byteCount(value);
        else if (skip(key, "drm-shared-"))
            shared_[std::string(key)] = byteCount(value);
        else if (skip(key, "drm-memory-"))
            older_[std::string(key)] = byteCount(value);
    }

    bool end() {
        if (!id_) return false;
        client_.id = *id_;
        if (client_.device.empty()) client_.device = driver_;
        for (const auto& [region, bytes] : resident_.empty() ? older_ : resident_)
            client_.memory =
                saturatingSum(client_.memory, bytes - std::min(bytes, shared_[region]));
        return true;
    }

  private:
    static bool skip(std::string_view& key, std::string_view prefix) {
        if (!key.starts_with(prefix)) return false;
        key.remove_prefix(prefix.size());
        return true;
    }
    void setEngine(std::string_view name, std::uint64_t DrmEngine::*figure, TextCursor& value) {
        const auto number = value.number();
        DrmEngine* engine = number ? engineOf(client_.engines, name) : nullptr;
        if (engine) engine->*figure = *number;
    }

    DrmClient& client_;
    std::string driver_;
    std::optional<std::uint64_t> id_;
    std::map<std::string, std::uint64_t> resident_, shared_, older_; // bytes by region
};

} // namespace

std::optional<DrmClient> parseDrmClient(std::string_view text) {
    DrmClient client;
    Lines lines(client);
    for (TextCursor cursor(text); !cursor.atEnd(); cursor.nextLine())
        if (const std::string_view key = cursor.upTo(':'); !key.empty()) lines.take(key, cursor);
    if (!lines.end()) return std::nullopt;
    return client;
}

void DrmClients::beginRound(std::uint64_t now) {
    elapsed_ = now_ != 0 && now > now_ ? now - now_ : 0;
    now_ = now;
    present_.clear();
    devices_.clear();
    for (auto& [key, client] : clients_) {
        client.isSeen = client.isStillHeld = client.isNew = false;
        client.successor = 0;
        client.growth = 0;
    }
}

void DrmClients::add(std::int32_t pid, const DrmClient& told) {
    present_.insert(pid);
    Client& client = clients_[{told.device, told.id}];
    client.isStillHeld |= pid == client.pid;
    client.successor = std::max(client.successor, pid);
    if (!std::exchange(client.isSeen, true)) measure(told, client);
}

void DrmClients::measure(const DrmClient& told, Client& client) {
    Device& device = devices_[told.device];
    device.memory = saturatingSum(device.memory, told.memory);
    device.isCompared |= !client.isNew && elapsed_ > 0;
    for (const DrmEngine& engine : told.engines) {
        if (client.isNew) {
            client.initial = saturatingSum(client.initial, engine.time);
            continue;
        }
        const auto before = std::find_if(client.engines.begin(), client.engines.end(),
                                         [&](const DrmEngine& e) { return e.name == engine.name; });
        if (before == client.engines.end()) continue;
        const std::uint64_t growth = growthOf(*before, engine);
        client.growth = saturatingSum(client.growth, growth);
        std::uint64_t& busy = device.busy[engine.name];
        busy = saturatingSum(busy, growth);
    }
    client.engines = told.engines;
}

// A counter that fell counts nothing. Cycles are a share of those that passed.
std::uint64_t DrmClients::growthOf(const DrmEngine& before, const DrmEngine& now) const {
    if (now.time > before.time) return now.time - before.time;
    if (now.time > 0 || now.cycles <= before.cycles || now.totalCycles <= before.totalCycles)
        return 0;
    const auto share = static_cast<double>(now.cycles - before.cycles) /
                       static_cast<double>(now.totalCycles - before.totalCycles);
    // A class of many engines may count more cycles than passed, but not without end.
    constexpr double mostEnginesOfAClass = 64;
    return static_cast<std::uint64_t>(std::min(share, mostEnginesOfAClass) *
                                      static_cast<double>(elapsed_));
}

void DrmClients::endRound() {
    std::erase_if(clients_, [](const auto& entry) { return !entry.second.isSeen; });
    std::erase_if(times_, [&](const auto& entry) { return !present_.contains(entry.first); });
    std::unordered_map<std::int32_t, std::uint64_t> arrived;
    for (const std::int32_t pid : present_)
        if (!times_.contains(pid)) arrived[pid] = 0;
    for (auto& [key, client] : clients_) {
        if (!client.isStillHeld) client.pid = client.successor;
        const auto known = times_.find(client.pid);
        if (known != times_.end())
            known->second = saturatingSum(known->second, client.growth);
        else
            arrived[client.pid] = saturatingSum(arrived[client.pid], client.initial);
    }
    times_.merge(arrived);
}

std::optional<DrmLoad> DrmClients::load(const std::string& name) const {
    const auto device = devices_.find(name);
    if (device == devices_.end() || !device->second.isCompared) return std::nullopt;
    DrmLoad load;
    for (const auto& [engine, busy] : device->second.busy) {
        const double share =
            std::min(static_cast<double>(busy) / static_cast<double>(elapsed_), 1.0);
        load.busiest = std::max(load.busiest, share);
        if (draws(engine)) load.render = std::max(load.render, share);
    }
    return load;
}

std::uint64_t DrmClients::memory(const std::string& name) const {
    const auto device = devices_.find(name);
    return device == devices_.end() ? 0 : device->second.memory;
}

} // namespace tavero
