#pragma once

#include <QObject> // first, for moc 6.4

#include "alerts/AlertRules.h"
#include "alerts/CrashReport.h"
#include "desktop/Notifications.h"
#include "presentation/Section.h"
#include "records/BluetoothSnapshot.h"
#include "records/Date.h"
#include "records/LiveSnapshot.h"
#include "settings/Settings.h"
#include "time/Clock.h"
#include "time/Worker.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tavero {

// What the alert center needs of its surroundings. An empty entry is something that this machine
// does without.
struct AlertServices {
    std::unique_ptr<Notifications> notifications;
    std::unique_ptr<CrashReports> crashes;
    // The names of the apps that use the microphone now. May block: called on a worker.
    std::function<std::vector<std::string>()> microphoneApps;
    std::function<ThermalState()> thermalState;
    // When the machine started, by its own clock.
    std::function<std::optional<Date>()> bootTime;
    // Offers an alert to the notch. True if it took it.
    std::function<bool(const SystemAlert&)> showInNotch;
    // Asks an app to quit, by its bundle path.
    std::function<void(const std::string&)> quitApp;
};

// Turns what the rules decide into something the user sees: first in the notch, else as a
// notification of the desktop. It feeds the rules with every snapshot and with what it finds out
// itself, stores their memory and keeps quiet at night. Main thread only.
class AlertCenter : public QObject {
    Q_OBJECT

  public:
    // The worker is for reading who uses the microphone. The clock and the settings must outlive
    // the center.
    AlertCenter(AlertServices services, std::unique_ptr<Worker> worker, Clock& clock,
                Settings& settings);
    ~AlertCenter() override;

    void check(const LiveSnapshot& snapshot);
    void check(const BluetoothSnapshot& snapshot);

    // Asks the user for the right to notify, then finds out what came of it.
    void requestAuthorization();
    void refreshAuthorization();

    // Sends an alert that says that alerts work, whatever is enabled and at any hour. Tells the
    // user where to look for it.
    std::string sendTest();

    // The page that a click asks the main window to show. It stays until it was taken.
    const std::optional<Section>& pendingSection() const { return pendingSection_; }
    std::optional<Section> takePendingSection();
    NotificationAuthorization authorization() const { return authorization_; }
    // What went wrong with the last delivery that failed.
    const std::optional<std::string>& lastError() const { return lastError_; }

    // The kinds that the user allows.
    static std::set<AlertKind> enabledKinds(const Settings& settings);

  signals:
    void pendingSectionChanged();
    void authorizationChanged();
    void lastErrorChanged();

  private:
    void settingsChanged();
    void connectionChanged(bool online);
    void checkCrashes();
    void checkMicrophone();
    AlertRules::Context context() const;
    void send(const std::vector<SystemAlert>& alerts);
    void saveMemory();
    void deliver(const SystemAlert& alert);
    void handle(NotificationAction action, const Notification& notification);
    void setError(std::optional<std::string> error);

    Clock& clock_;
    Settings& settings_;
    AlertServices services_;
    AlertRules rules_;
    std::optional<Section> pendingSection_;
    NotificationAuthorization authorization_ = NotificationAuthorization::notDetermined;
    std::optional<std::string> lastError_;
    Date lastCrashScan_;
    Date lastMicrophoneCheck_ = Date::min();
    bool online_ = true;
    bool readingMicrophone_ = false;
    std::uint64_t physicalMemory_ = 0; // bytes, as the last snapshot with memory told it
    std::unique_ptr<Worker> worker_;   // ends first
};

} // namespace tavero
