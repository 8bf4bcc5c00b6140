#pragma once

#include "alerts/AlertCenter.h"
#include "desktop/sim/SimNotifications.h"
#include "monitor/Monitor.h"
#include "platform/sim/SimMachine.h"
#include "settings/Settings.h"
#include "time/VirtualTime.h"

#include <QTemporaryDir>

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tavero {

// The application without its surfaces: a monitor and an alert center, wired as the application
// wires them, over a simulated Mac in virtual time. It has no notch.
class LivingMac {
  public:
    // An alert as its user met it.
    struct Met {
        std::chrono::seconds at; // since the start
        Notification notification;
    };

    explicit LivingMac(Scenario scenario)
        : mac_(std::move(scenario), [this] { return time_.now(); }) {
        Machine machine = mac_.machine();
        system_ = std::move(machine.system);
        auto notifications = std::make_unique<Recorder>(*this);
        notifications_ = notifications.get();
        alerts_ = std::make_unique<AlertCenter>(
            AlertServices{.notifications = std::move(notifications),
                          .thermalState = [this] { return monitor_->thermalState(); },
                          .bootTime = [this] { return system_->bootTime(); },
                          .quitApp = [this](const std::string& path) { monitor_->quit(path); }},
            time_.worker(), time_, settings_);
        monitor_ = std::make_unique<Monitor>(
            std::move(machine), time_.worker(), time_, settings_,
            MonitorServices{
                .checkAlerts = [this](const LiveSnapshot& live) { alerts_->check(live); },
                .requestNotificationAuthorization = [this] { alerts_->requestAuthorization(); },
                .askToQuit = [this](const std::string& path) { return quit(path); }});
        monitor_->start();
    }

    void enable(AlertKind kind, bool on = true) { settings_.set(keys::alert(kind), on); }
    void enableAll() {
        for (const AlertKindEntry& known : allAlertKinds) enable(known.kind);
    }
    // Lets time pass with all surfaces closed.
    void live(std::chrono::nanoseconds duration) { time_.advance(duration); }
    // Lets it sleep: the clock goes on, and nothing else does.
    void sleep(std::chrono::nanoseconds duration) { time_.setWallClock(time_.now() + duration); }
    // The user answers a notification.
    void act(NotificationAction action, const Notification& about) {
        notifications_->act(action, about);
    }

    const std::vector<Met>& met() const { return met_; }
    const Monitor& monitor() const { return *monitor_; }
    bool lists(const std::string& app) const {
        for (const AppUsage& row : monitor_->snapshot()->apps)
            if (row.name == app) return true;
        return false;
    }

  private:
    struct Recorder final : SimNotifications {
        explicit Recorder(LivingMac& owner) : mac(owner) {}
        void deliver(const Notification& notification, std::function<void(Error)> done) override {
            mac.met_.push_back(
                {std::chrono::duration_cast<std::chrono::seconds>(mac.time_.now() - mac.start_),
                 notification});
            SimNotifications::deliver(notification, std::move(done));
        }
        LivingMac& mac;
    };

    std::optional<std::function<bool()>> quit(const std::string& path) {
        mac_.quit(path);
        return [] { return true; };
    }

    QTemporaryDir folder_;
    Settings settings_{folder_.filePath("settings.ini")};
    VirtualTime time_;
    Date start_ = time_.now();
    SimMachine mac_;
    std::vector<Met> met_;
    std::unique_ptr<SystemSource> system_;
    SimNotifications* notifications_ = nullptr; // the center's
    std::unique_ptr<AlertCenter> alerts_;
    std::unique_ptr<Monitor> monitor_;
};

} // namespace tavero
