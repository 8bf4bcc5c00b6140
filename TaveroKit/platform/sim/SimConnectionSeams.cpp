#include "platform/sim/SimConnectionSeams.h"

#include <cstdint>
#include <map>
#include <utility>

namespace tavero {

namespace {

class SimNetworkStatistics : public NetworkStatistics {
  public:
    explicit SimNetworkStatistics(std::shared_ptr<SimTimeline> timeline)
        : timeline_(std::move(timeline)) {}

    bool open() override { return true; }

    std::optional<std::string> constant(const char* name) override {
        static const std::map<std::string, std::string, std::less<>> constants{
            {"kNStatSrcKeyRxBytes", "rxBytes"}, {"kNStatSrcKeyTxBytes", "txBytes"},
            {"kNStatSrcKeyPID", "processID"},   {"kNStatSrcKeyProcessName", "processName"},
            {"kNStatSrcKeyEPID", "epid"},
        };
        const auto found = constants.find(name);
        return found == constants.end() ? std::nullopt : std::optional(found->second);
    }

    bool create(std::function<void(Source)> added) override {
        added_ = std::move(added);
        return true;
    }
    void addAllTCP() override { update(); }
    void addAllUDP() override {} // all of its connections are TCP

    void setDescriptionBlock(Source source, DictionaryBlock block) override {
        connection(source).described = std::move(block);
    }
    void setCountsBlock(Source source, DictionaryBlock block) override {
        connection(source).counted = std::move(block);
    }
    void setRemovedBlock(Source source, std::function<void()> block) override {
        connection(source).removed = std::move(block);
    }

    void queryDescription(Source source) override {
        const Connection& asked = connection(source);
        if (asked.described) asked.described(asked.dictionary);
    }

    void queryAllSources(std::function<void()> done) override {
        update();
        for (const auto& [number, connection] : connections_)
            if (connection.counted) connection.counted(connection.dictionary);
        done();
    }

  private:
    // A source is the address of one.
    struct Connection {
        PropertyMap dictionary;
        DictionaryBlock described;
        DictionaryBlock counted;
        std::function<void()> removed;
    };

    static Connection& connection(Source source) { return *static_cast<Connection*>(source); }

    // Tells of those that opened and closed meanwhile.
    void update() {
        // Copied, since what is called back may read the machine.
        const auto open =
            timeline_->read([](const SimState& state) { return state.connections.open; });
        std::erase_if(connections_, [&](const auto& entry) {
            const bool isGone = !open.contains(entry.first);
            if (isGone && entry.second.removed) entry.second.removed();
            return isGone;
        });
        for (const auto& [number, dictionary] : open) {
            const auto [entry, isNew] = connections_.try_emplace(number);
            entry->second.dictionary = dictionary;
            if (isNew) added_(&entry->second);
        }
    }

    std::shared_ptr<SimTimeline> timeline_;
    std::function<void(Source)> added_;
    std::map<std::uint64_t, Connection> connections_;
};

class SimWiFi : public WiFiInterface {
  public:
    explicit SimWiFi(std::shared_ptr<SimTimeline> timeline) : timeline_(std::move(timeline)) {}

    std::optional<WiFiState> state() override {
        return timeline_->read([](const SimState& state) { return state.connections.wifi; });
    }

  private:
    std::shared_ptr<SimTimeline> timeline_;
};

class SimPath : public PathMonitor {
  public:
    explicit SimPath(std::shared_ptr<SimTimeline> timeline) : timeline_(std::move(timeline)) {}

    void start(std::function<void(const PathState&)> changed) override {
        timeline_->watchPath(std::move(changed));
    }

  private:
    std::shared_ptr<SimTimeline> timeline_;
};

} // namespace

std::shared_ptr<NetworkStatistics> simNetworkStatistics(std::shared_ptr<SimTimeline> timeline) {
    return std::make_shared<SimNetworkStatistics>(std::move(timeline));
}

std::unique_ptr<WiFiInterface> simWiFi(std::shared_ptr<SimTimeline> timeline) {
    return std::make_unique<SimWiFi>(std::move(timeline));
}

std::unique_ptr<PathMonitor> simPath(std::shared_ptr<SimTimeline> timeline) {
    return std::make_unique<SimPath>(std::move(timeline));
}

} // namespace tavero
