#include "platform/linux/network/LinuxNetworkUsage.h"

#include "records/SaturatingSum.h"

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

// The kernel goes through a table that changes under it and may pass over a connection; one that
// came back would count from its start again.
constexpr int mostMissed = 3;
// A socket that isn't found is looked for again after 1, 2, 4 ... reads.
constexpr int longestPause = 6;

// A counter that fell counts nothing.
std::uint64_t growth(std::uint64_t now, std::uint64_t before) {
    return now > before ? now - before : 0;
}

NetworkBytes growth(const NetworkBytes& now, const NetworkBytes& before) {
    return {growth(now.received, before.received), growth(now.sent, before.sent)};
}

void add(NetworkBytes& sum, const NetworkBytes& bytes) {
    sum.received = saturatingSum(sum.received, bytes.received);
    sum.sent = saturatingSum(sum.sent, bytes.sent);
}

} // namespace

LinuxNetworkUsage::LinuxNetworkUsage(std::unique_ptr<SockDiagSource> source, SocketOwners owners,
                                     Local local)
    : source_(std::move(source)), owners_(std::move(owners)), local_(local) {}

std::unordered_map<std::int32_t, NetworkBytes> LinuxNetworkUsage::read() {
    ++reads_;
    source_->read(told_);
    takeOpen();
    takeClosed();
    owners_.forgetGroups();
    findHolders();
    if (!hasBaseline_) {
        setBaseline();
        return {};
    }
    return takeGrowth();
}

void LinuxNetworkUsage::takeOpen() {
    if (told_.isComplete)
        for (auto& [cookie, connection] : connections_) ++connection.missed;
    for (const TcpConnection& told : told_.open) {
        if (!told.bytes || (told.isLocal && local_ == Local::isLeftOut)) continue;
        Connection& connection = connections_[told.cookie];
        connection.missed = 0;
        connection.inode = told.inode;
        connection.cgroup = told.cgroup;
        connection.bytes = *told.bytes;
    }
    for (auto& [cookie, connection] : connections_)
        if (connection.missed >= mostMissed) connection.isOpen = false;
}

// Of a connection that no read has seen, nothing tells whose it was.
void LinuxNetworkUsage::takeClosed() {
    for (const TcpConnection& told : told_.closed) {
        const auto known = connections_.find(told.cookie);
        if (known == connections_.end()) continue;
        known->second.isOpen = false;
        known->second.inode = 0;
        if (told.bytes) known->second.bytes = *told.bytes;
    }
}

void LinuxNetworkUsage::findHolders() {
    wanted_.clear();
    for (auto& [cookie, connection] : connections_) {
        const bool hasNews = connection.bytes != connection.counted;
        // It may have been handed on to another process.
        if (connection.holder && connection.inode != 0 && hasNews &&
            !owners_.isHeld(*connection.holder, connection.inode)) {
            connection.holder.reset();
            connection.searches = 0;
            connection.nextSearch = 0;
        }
        if (isSearchDue(connection)) wanted_.push_back(connection.inode);
    }
    if (wanted_.empty()) return;
    const auto found = owners_.holders(wanted_);
    for (auto& [cookie, connection] : connections_) {
        if (!isSearchDue(connection)) continue;
        if (const auto holder = found.find(connection.inode); holder != found.end())
            connection.holder = holder->second;
        connection.nextSearch = reads_ + (std::uint64_t{1} << connection.searches);
        connection.searches = std::min(connection.searches + 1, longestPause);
    }
}

bool LinuxNetworkUsage::isSearchDue(const Connection& connection) const {
    return !connection.holder && connection.inode != 0 && reads_ >= connection.nextSearch;
}

std::optional<std::int32_t> LinuxNetworkUsage::ownerOf(const Connection& connection) {
    if (connection.holder) return connection.holder->pid;
    // One that waits to be accepted is nobody's yet.
    if (connection.searches == 0) return std::nullopt;
    return owners_.ofGroup(connection.cgroup);
}

// What was open before the first whole dump doesn't report its past.
void LinuxNetworkUsage::setBaseline() {
    if (!told_.isComplete) return;
    hasBaseline_ = true;
    for (auto& [cookie, connection] : connections_) connection.counted = connection.bytes;
    std::erase_if(connections_, [](const auto& entry) { return !entry.second.isOpen; });
}

LinuxNetworkUsage::Usage LinuxNetworkUsage::takeGrowth() {
    Usage usage;
    for (auto& [cookie, connection] : connections_) {
        if (connection.bytes == connection.counted) continue;
        const std::optional<std::int32_t> owner = ownerOf(connection);
        if (!owner) continue;
        add(usage[*owner], growth(connection.bytes, connection.counted));
        connection.counted = connection.bytes;
    }
    std::erase_if(connections_, [](const auto& entry) { return !entry.second.isOpen; });
    return usage;
}

} // namespace tavero
