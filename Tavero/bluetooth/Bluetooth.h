#pragma once

#include <QObject> // first, for moc 6.4

#include "bluetooth/BluetoothFailure.h"
#include "desktop/BluetoothControl.h"
#include "records/BluetoothSnapshot.h"
#include "settings/Settings.h"
#include "time/Clock.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace tavero {

// What Bluetooth needs of its surroundings. An empty entry is something that this program does
// without.
struct BluetoothServices {
    std::unique_ptr<BluetoothControl> control; // null: nothing is ever read
    // Both see every reading. The history's own rule on what to keep stands behind it.
    std::function<void(const BluetoothSnapshot&)> checkAlerts;
    std::function<void(const BluetoothSnapshot&)> recordHistory;
};

// The observable state of Bluetooth: the devices and their batteries, and what becomes of
// connecting and disconnecting them. It reads when it is told to, and by itself every 30 s while a
// surface shows it. A value that stays equal tells nobody. Main thread only.
class Bluetooth : public QObject {
    Q_OBJECT

  public:
    // The clock and the settings must outlive this.
    Bluetooth(BluetoothServices services, Clock& clock, Settings& settings);
    ~Bluetooth() override;

    // Reads anew, then calls `done`, whatever came of it. What couldn't be read leaves the last
    // reading in place. Two may overlap; the later one has the last word.
    void refresh(std::function<void()> done = {});

    // Every surface that shows devices calls these in pairs as it appears and disappears.
    void surfaceAppeared();
    void surfaceDisappeared();

    // Connects or disconnects a device, asks for permission first if that is needed, and reads
    // anew. `done` is told whether it succeeded: not without an address or permission, nor while
    // the device is busy.
    void setConnected(bool connected, const BluetoothDevice& device,
                      std::function<void(bool)> done = {});

    // Lets the system ask the user, unless it has.
    void requestPermission(std::function<void(BluetoothPermission)> done = {});

    // The last reading; absent until the first.
    const std::optional<BluetoothSnapshot>& snapshot() const { return snapshot_; }
    // The addresses of the devices that are being connected or disconnected.
    const std::set<std::string>& busy() const { return busy_; }
    // What the last attempt with this device failed at, until it is tried again or is as wanted.
    std::optional<BluetoothFailure> failure(const std::string& address) const;
    BluetoothPermission permission() const { return permission_; }
    // The name that others see this machine by. Absent if it isn't known.
    const std::optional<std::string>& machineName() const { return machineName_; }

  signals:
    void snapshotChanged(); // with the machine's name
    void busyChanged();
    void failuresChanged();
    void permissionChanged();

  private:
    // A device that is asked to connect or to disconnect.
    struct Attempt {
        std::string address;
        bool connects = false;
        std::function<void(bool)> done;
        std::optional<bool> succeeded; // absent until there is an answer
        Timer timer;                   // how long that may take, then the time to settle
    };

    void runLoop();
    void take(BluetoothSnapshot snapshot);
    void addSignals(BluetoothSnapshot& snapshot);
    void begin(bool connects, const std::string& address, std::function<void(bool)> done);
    void settle(std::int64_t number, bool succeeded);
    void end(std::int64_t number);
    void setFailure(const std::string& address, std::optional<BluetoothFailure> failure);
    void forgetSettledFailures();
    void updatePermission();

    Clock& clock_;
    Settings& settings_;
    BluetoothServices services_;
    std::optional<BluetoothSnapshot> snapshot_;
    std::optional<std::string> machineName_;
    std::set<std::string> busy_;
    std::map<std::string, BluetoothFailure> failures_; // by address
    BluetoothPermission permission_ = BluetoothPermission::notAsked;
    int surfaces_ = 0;
    Timer loop_;                               // the wait between two readings
    std::map<std::int64_t, Attempt> attempts_; // by number
    std::int64_t lastAttempt_ = 0;
};

} // namespace tavero
