#pragma once

#include "alerts/AlertKind.h"
#include "alerts/AlertMemory.h"
#include "alerts/CrashReport.h"
#include "alerts/SystemAlert.h"
#include "platform/PowerSource.h"
#include "records/BluetoothSnapshot.h"
#include "records/Date.h"
#include "records/LiveSnapshot.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tavero {

// Decides what the user should hear of. A plain value driven only by its arguments: it knows no
// clock, reads nothing and delivers nothing.
class AlertRules {
  public:
    using Memory = AlertMemory;

    // What a snapshot does not tell.
    struct Context {
        ThermalState thermalState = ThermalState::nominal;
        std::optional<double> uptime;     // seconds since the machine started
        std::uint64_t physicalMemory = 0; // bytes, for a snapshot that has no memory
        bool fahrenheit = false;          // how temperatures read
    };

    explicit AlertRules(std::set<AlertKind> kinds = {}) : enabled(std::move(kinds)) {}

    // The kinds that the user allows. The rules go on tracking the others, silently, so a kind that
    // is turned on tells at once what has held for long enough.
    std::set<AlertKind> enabled;
    // The only part that outlives the program.
    Memory memory;

    // Each looks at something new and returns what to send, in order.
    std::vector<SystemAlert> evaluate(const LiveSnapshot& snapshot, const Context& context,
                                      Date now);
    std::vector<SystemAlert> evaluate(const BluetoothSnapshot& snapshot, Date now);
    // The apps that listen to the microphone now.
    std::vector<SystemAlert> evaluateMicrophone(const std::vector<std::string>& apps, Date now);
    std::vector<SystemAlert> evaluateCrashes(const std::vector<CrashReport>& crashes, Date now);
    std::vector<SystemAlert> evaluateOnline(bool online, Date now);

    // Forgets what fired a day ago or earlier. Once, after the memory was loaded.
    void prune(Date now);

    // The memory above which an app uses too much of a machine with this much: a fifth, but at
    // least 2 GiB. Bytes.
    static std::uint64_t appMemoryLimit(std::uint64_t total);
    // Rounded half away from zero: "96°C", "205°F".
    static std::string temperatureText(double celsius, bool fahrenheit);

    // The battery levels at which a Bluetooth device is announced, highest first. Percent.
    static constexpr std::array<std::int64_t, 2> bluetoothLevels{20, 10};

  private:
    struct Write {
        Date time;
        double bytes;
    };
    struct Gate {
        AlertKind kind;
        std::chrono::seconds hold{0};
        std::chrono::seconds cooldown{3600};
    };
    using Alerts = std::vector<SystemAlert>;

    void note(const std::string& key, bool holds, Date now);
    bool passes(const std::string& key, const Gate& gate, bool holds, Date now);
    bool mayFire(const std::string& key, const Gate& gate, Date now) const;
    bool hasCooledDown(const std::string& key, std::chrono::seconds cooldown, Date now) const;
    void fire(const std::string& key, Date now);

    void evaluateApps(const LiveSnapshot& snapshot, const Context& context, Date now,
                      Alerts& alerts);
    void evaluateApp(const AppUsage& app, bool onBattery, std::uint64_t memoryLimit, Date now,
                     Alerts& alerts);
    void evaluateWrites(const AppUsage& app, double elapsed, Date now, Alerts& alerts);
    void dropTimersOfUnlisted(const LiveSnapshot& snapshot);
    void dropOldWrites(Date now);

    void evaluateBattery(const LiveSnapshot& snapshot, Date now, Alerts& alerts);
    void evaluatePluggedIn(const BatterySnapshot& battery, Date now, Alerts& alerts);
    void evaluateUnplugged(const BatterySnapshot& battery, Date now, Alerts& alerts);
    void evaluateThrottling(const LiveSnapshot& snapshot, const Context& context, Date now,
                            Alerts& alerts);
    void evaluateRestart(const LiveSnapshot& snapshot, const Context& context, Date now,
                         Alerts& alerts);
    void evaluateGPU(const LiveSnapshot& snapshot, Date now, Alerts& alerts);
    void evaluateMemory(const LiveSnapshot& snapshot, Date now, Alerts& alerts);
    void evaluateDisk(const LiveSnapshot& snapshot, Date now, Alerts& alerts);
    void evaluateHeat(const LiveSnapshot& snapshot, const Context& context, Date now,
                      Alerts& alerts);

    std::map<std::string, Date> since_;      // by key: its condition holds from then on
    std::map<std::string, Date> clearSince_; // by active key: its condition is gone from then on
    std::map<std::string, std::vector<Write>> writeLog_; // by app: its writes of the last hour
    std::optional<Date> lastFullSample_;
    std::map<std::string, std::int64_t> bluetoothAnnounced_; // by device: lowest level told
    std::set<std::string> microphoneApps_;                   // at the last look
    std::optional<std::int64_t> macBatteryAnnounced_;        // lowest level told
    bool chargedAnnounced_ = false;                          // for this charge
    bool offlineAnnounced_ = false;
};

} // namespace tavero
