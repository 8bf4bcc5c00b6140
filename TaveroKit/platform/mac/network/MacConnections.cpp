#include "platform/mac/network/MacConnections.h"

#include <limits>
#include <utility>

namespace tavero {

namespace {

std::int32_t pidValue(const PropertyMap& description, const std::string& key) {
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t pid = intValue(description, key).value_or(0);
    return pid >= Limits::min() && pid <= Limits::max() ? static_cast<std::int32_t>(pid) : 0;
}

std::string nameValue(const PropertyMap& description, const std::string& key) {
    const std::string* name = textValue(description, key);
    return name ? *name : std::string();
}

// Has the service tell `connections` of one connection. The service keeps the blocks for as long as
// it likes, so they hold nothing alive.
void subscribe(NetworkStatistics& statistics, NetworkStatistics::Source source,
               const std::weak_ptr<Connections>& connections,
               const std::shared_ptr<const StatisticsKeys>& keys) {
    statistics.setDescriptionBlock(source, [=](const PropertyMap& description) {
        if (const auto listener = connections.lock())
            listener->described(source, ownerPid(description, *keys),
                                nameValue(description, keys->name));
    });
    statistics.setCountsBlock(source, [=](const PropertyMap& counts) {
        if (const auto listener = connections.lock())
            listener->counted(source, byteCounts(counts, *keys));
    });
    statistics.setRemovedBlock(source, [=] {
        if (const auto listener = connections.lock()) listener->removed(source);
    });
    statistics.queryDescription(source);
}

} // namespace

std::optional<StatisticsKeys> StatisticsKeys::of(NetworkStatistics& statistics) {
    const auto received = statistics.constant("kNStatSrcKeyRxBytes");
    const auto sent = statistics.constant("kNStatSrcKeyTxBytes");
    const auto pid = statistics.constant("kNStatSrcKeyPID");
    const auto name = statistics.constant("kNStatSrcKeyProcessName");
    if (!received || !sent || !pid || !name) return std::nullopt;
    return StatisticsKeys{
        .received = *received,
        .sent = *sent,
        .pid = *pid,
        .name = *name,
        .effectivePid = statistics.constant("kNStatSrcKeyEPID").value_or(*pid),
    };
}

std::int32_t ownerPid(const PropertyMap& description, const StatisticsKeys& keys) {
    const std::int32_t effective = pidValue(description, keys.effectivePid);
    return effective > 0 ? effective : pidValue(description, keys.pid);
}

NetworkBytes byteCounts(const PropertyMap& counts, const StatisticsKeys& keys) {
    return {.received = uint64Value(counts, keys.received).value_or(0),
            .sent = uint64Value(counts, keys.sent).value_or(0)};
}

MacConnections::MacConnections(std::shared_ptr<NetworkStatistics> statistics)
    : statistics_(std::move(statistics)) {}

bool MacConnections::start(std::weak_ptr<Connections> connections) {
    if (!statistics_->open()) return false;
    const std::optional<StatisticsKeys> keys = StatisticsKeys::of(*statistics_);
    if (!keys) return false;
    const auto added =
        [statistics = std::weak_ptr(statistics_), connections = std::move(connections),
         keys = std::make_shared<const StatisticsKeys>(*keys)](NetworkStatistics::Source source) {
            const auto service = statistics.lock();
            const auto listener = connections.lock();
            if (!service || !listener) return;
            listener->opened(source);
            subscribe(*service, source, connections, keys);
        };
    if (!statistics_->create(added)) return false;
    statistics_->addAllTCP();
    statistics_->addAllUDP();
    return true;
}

void MacConnections::queryCounts(std::function<void()> done) {
    statistics_->queryAllSources(std::move(done));
}

} // namespace tavero
