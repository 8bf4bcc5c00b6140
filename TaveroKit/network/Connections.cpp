#include "network/Connections.h"

#include "records/SaturatingSum.h"

#include <iterator>
#include <utility>

namespace tavero {

namespace {

// A counter that fell counts nothing.
std::uint64_t growth(std::uint64_t now, std::uint64_t before) {
    return now > before ? now - before : 0;
}

} // namespace

void Connections::opened(Source source) {
    const std::lock_guard lock(mutex_);
    Connection& connection = connections_[source];
    settle(connection); // the handle stood for another, which is gone now
    connection = {};
}

void Connections::described(Source source, std::int32_t pid, std::string name) {
    const std::lock_guard lock(mutex_);
    Connection& connection = connections_[source];
    connection.pid = pid;
    connection.name = std::move(name);
}

void Connections::counted(Source source, const NetworkBytes& bytes) {
    const std::lock_guard lock(mutex_);
    connections_[source].bytes = bytes;
}

void Connections::removed(Source source) {
    const std::lock_guard lock(mutex_);
    if (const auto found = connections_.find(source); found != connections_.end())
        found->second.isClosed = true;
}

std::unordered_map<std::int32_t, NetworkBytes> Connections::collect() {
    const std::lock_guard lock(mutex_);
    for (auto entry = connections_.begin(); entry != connections_.end();) {
        Connection& connection = entry->second;
        if (!isWaiting(connection)) settle(connection);
        entry = connection.isClosed ? connections_.erase(entry) : std::next(entry);
    }
    auto collected = std::exchange(credits_, {});
    if (!std::exchange(hasBaseline_, true)) return {};
    return collected;
}

// Its process may still become known, and its bytes with it.
bool Connections::isWaiting(const Connection& connection) const {
    return hasBaseline_ && connection.pid < 1 && !connection.isClosed;
}

// Credits the process with what is new. Without a process that is lost.
void Connections::settle(Connection& connection) {
    if (connection.pid >= 1) {
        NetworkBytes& credit = credits_[connection.pid];
        const auto add = [&](std::uint64_t NetworkBytes::*bytes) {
            credit.*bytes = saturatingSum(
                credit.*bytes, growth(connection.bytes.*bytes, connection.settled.*bytes));
        };
        add(&NetworkBytes::received);
        add(&NetworkBytes::sent);
    }
    connection.settled = connection.bytes;
}

} // namespace tavero
