#pragma once

#include <QObject> // first, for moc 6.4 loses its way in <concepts> otherwise

#include "MonitorEngine.h"
#include "Readers.h"
#include "monitor/AppLogs.h"
#include "monitor/Cadence.h"
#include "monitor/Graphs.h"
#include "monitor/MonitorServices.h"
#include "monitor/Strain.h"
#include "monitor/SystemIssue.h"
#include "platform/Machine.h"
#include "platform/PowerSource.h"
#include "records/Date.h"
#include "records/LiveSnapshot.h"
#include "settings/Settings.h"
#include "time/Clock.h"
#include "time/Worker.h"

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>

namespace tavero {

// The one observable object of the application. It owns the sampling loop, decides from the
// surfaces on screen how often and how deep to sample, works on each snapshot and publishes it.
// Surfaces read the state here and are told by signals when it changes; a value that stays equal
// tells nobody.
//
// Main thread only. A pass runs on the worker, and passes never overlap: the wait for the next one
// begins when a snapshot has been published.
class Monitor : public QObject {
    Q_OBJECT

  public:
    // Over everything that a machine has. The clock and the settings must outlive the monitor.
    Monitor(Machine machine, std::unique_ptr<Worker> worker, Clock& clock, Settings& settings,
            MonitorServices services = {});
    // Over readers and a power source of one's own; the latter may be null.
    Monitor(Readers readers, std::unique_ptr<PowerSource> power, std::unique_ptr<Worker> worker,
            Clock& clock, Settings& settings, MonitorServices services = {});
    ~Monitor() override;

    // Begins to sample, with all services. After a preview the running loop goes on, and records.
    void start();
    // Begins to sample without history, alerts and services: live figures for the first run's tour.
    void startPreview();

    // Every surface calls these in pairs as it appears and disappears.
    void viewAppeared(ViewKind kind);
    void viewDisappeared(ViewKind kind);

    // Asks an app to quit. True means that the request went out, not that the app is gone. Looks
    // again as soon as it has, or after 3 s, and says how much memory that freed.
    bool quit(const std::string& bundlePath);

    // Shows a short text for 3 s.
    void show(std::string toast);

    void setVolume(double volume); // fraction
    // For the watcher of audio devices.
    void audioDevicesChanged();

    // The published state. Absent until the first pass.
    const std::optional<LiveSnapshot>& snapshot() const { return snapshot_; }
    const Graphs& graphs() const { return graphs_; }
    // Copies for the menu bar, which change at most every 5 s.
    const std::optional<LiveSnapshot>& menuBarSnapshot() const { return menuBarSnapshot_; }
    const Graphs& menuBarGraphs() const { return menuBarGraphs_; }
    const std::optional<Strain>& strain() const { return strain_; }
    const std::string& notchCPU() const { return notchCPU_; }
    const std::string& notchMemory() const { return notchMemory_; }

    // What the operating system itself is busy with, while that is worth telling.
    const std::optional<SystemActivity>& systemIssue() const { return systemIssue_.current(); }
    const std::optional<std::string>& toast() const { return toast_; }
    std::int64_t audioDevicesVersion() const { return audioDevicesVersion_; }

    // How the system rates its own heat.
    ThermalState thermalState() const;

    bool isPreview() const { return isPreview_; }
    const Cadence& cadence() const { return cadence_; }

  signals:
    void snapshotChanged(); // with the graphs
    void menuBarChanged();
    void strainChanged();
    void notchTextsChanged();
    void toastChanged();
    void audioDevicesVersionChanged();

  private:
    void startServices();
    void refreshBluetooth();
    void takePass();
    void pause();
    void wakeUp();
    void apply(LiveSnapshot snapshot);
    void carryOver(LiveSnapshot& next) const;
    void recordApps(const LiveSnapshot& snapshot);
    void presentApps(LiveSnapshot& next) const;
    void recordHistory(const LiveSnapshot& snapshot);
    void updateMenuBar(const LiveSnapshot& snapshot);
    struct QuitRequest {
        std::function<bool()> hasEnded;
        std::uint64_t memory = 0; // bytes that the app held when it was asked
        int pollsLeft = 0;
    };
    void refreshSoon(std::list<Timer>::iterator poll, QuitRequest request);

    Clock& clock_;
    Settings& settings_;
    MonitorServices services_;
    std::string systemName_ = "macOS";
    std::unique_ptr<PowerSource> power_;
    MonitorEngine engine_; // on the worker only, once the loop runs
    Cadence cadence_;

    std::optional<LiveSnapshot> snapshot_;
    Graphs graphs_;
    AppLogs appLogs_;
    SystemIssue systemIssue_;
    std::uint64_t physicalMemory_ = 0; // bytes, 0 until it has been read
    std::optional<LiveSnapshot> menuBarSnapshot_;
    Graphs menuBarGraphs_;
    Date menuBarUpdatedAt_ = Date::min();
    std::optional<Strain> strain_;
    std::string notchCPU_;
    std::string notchMemory_;
    std::optional<std::string> toast_;
    std::optional<Date> lastAppSample_;
    std::int64_t audioDevicesVersion_ = 0;
    bool isRunning_ = false;
    bool isPreview_ = false;

    Timer sleeper_; // the wait between two passes; none while one is under way
    Timer bluetoothAlertLoop_;
    Timer toastTimer_;
    std::list<Timer> quitPolls_;     // one for each app or set of apps that was told to quit
    std::unique_ptr<Worker> worker_; // ends first: its jobs use the engine
};

} // namespace tavero
