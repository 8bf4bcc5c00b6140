#pragma once

#include "records/LiveSnapshot.h"

#include <functional>
#include <optional>
#include <string>

namespace tavero {

// What the monitor calls in other subsystems. An empty entry is a service that this machine or this
// program does without.
struct MonitorServices {
    // Takes a copy of every raw snapshot. `appSeconds` is the time its app rows stand for, in
    // seconds; absent if it has none. Must not block.
    std::function<void(const LiveSnapshot&, std::optional<double> appSeconds)> recordHistory;
    // Sees every raw snapshot and may raise alerts.
    std::function<void(const LiveSnapshot&)> checkAlerts;

    // Called once, when the monitor starts in earnest.
    std::function<void()> startAudio;
    std::function<void()> requestNotificationAuthorization;
    // Called at the start and then every minute or ten. Must not block.
    std::function<void()> refreshBluetooth;

    // Asks an app politely to quit, by its bundle path. Absent if no request went out; otherwise it
    // tells whether the app has gone.
    std::function<std::optional<std::function<bool()>>(const std::string&)> askToQuit;

    std::function<SoundSnapshot()> readSound;
    std::function<void(double)> setVolume; // fraction
    std::function<void(bool)> setMuted;
    // After devices came or went.
    std::function<void()> rescanAudioApps;
};

} // namespace tavero
