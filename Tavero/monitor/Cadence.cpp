#include "monitor/Cadence.h"

#include <algorithm>

namespace tavero {

namespace {

using namespace std::chrono_literals;

constexpr auto closedWait = 5s;
constexpr std::int64_t closedPassesPerFullOne = 12;
constexpr std::int64_t longestRefresh = 86'400; // seconds; keeps a wild setting within the clock

constexpr std::int64_t topAppsInWindow = 40;
constexpr std::int64_t topAppsInCompactView = 8;
constexpr std::int64_t topAppsClosed = 20; // for alerts and history

} // namespace

bool Cadence::appeared(ViewKind kind) {
    ++visibleViews_;
    if (kind == ViewKind::window) ++visibleWindows_;
    return visibleViews_ == 1;
}

void Cadence::disappeared(ViewKind kind) {
    visibleViews_ = std::max<std::int64_t>(visibleViews_ - 1, 0);
    if (kind == ViewKind::window) visibleWindows_ = std::max<std::int64_t>(visibleWindows_ - 1, 0);
}

Cadence::Pass Cadence::nextPass() {
    const MonitorEngine::Detail detail = nextDetail();
    if (visibleWindows_ > 0) return {detail, topAppsInWindow, true};
    if (visibleViews_ > 0) return {detail, topAppsInCompactView, false};
    return {detail, topAppsClosed, false};
}

MonitorEngine::Detail Cadence::nextDetail() {
    if (visibleViews_ > 0) return MonitorEngine::Detail::full;
    return closedSamples_++ % closedPassesPerFullOne == 0 ? MonitorEngine::Detail::full
                                                          : MonitorEngine::Detail::light;
}

std::chrono::seconds Cadence::wait(std::int64_t refreshSeconds, bool savingEnergy) const {
    if (visibleViews_ == 0) return closedWait;
    const std::chrono::seconds wait(std::clamp<std::int64_t>(refreshSeconds, 1, longestRefresh));
    return savingEnergy ? 2 * wait : wait;
}

} // namespace tavero
