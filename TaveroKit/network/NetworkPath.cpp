#include "network/NetworkPath.h"

#include <utility>

namespace tavero {

ConnectionKind connectionKind(const PathState& path) {
    if (!path.isSatisfied) return ConnectionKind::offline;
    if (path.usesWiFi) return ConnectionKind::wifi;
    if (path.usesWiredEthernet) return ConnectionKind::wired;
    if (path.usesCellular) return ConnectionKind::cellular;
    return ConnectionKind::other;
}

NetworkPath::NetworkPath(std::unique_ptr<PathMonitor> monitor) : monitor_(std::move(monitor)) {}

ConnectionKind NetworkPath::current() {
    std::call_once(started_, [&] {
        monitor_->start([kind = kind_](const PathState& path) { *kind = connectionKind(path); });
    });
    return *kind_;
}

} // namespace tavero
