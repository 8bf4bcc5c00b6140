#pragma once

#include "desktop/BluetoothPermission.h"
#include "records/BluetoothSnapshot.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tavero {

// Bluetooth as this machine's system offers it. Main thread only, and nothing here blocks it. Every
// question is answered once, there, maybe from within the call; none after this object has gone.
class BluetoothControl {
  public:
    using Snapshot = std::optional<BluetoothSnapshot>;

    virtual ~BluetoothControl() = default;

    // Absent if it couldn't be read. A machine without Bluetooth is one where it is off.
    virtual void read(std::function<void(Snapshot)> done) = 0;

    virtual BluetoothPermission permission() = 0;
    // Lets the system ask the user, if it hasn't yet; the answer is then in permission().
    virtual void requestPermission(std::function<void()> done) = 0;

    // The signal of a connected device right now, in dBm. Absent if it isn't known or was part of
    // what was read. Needs permission.
    virtual std::optional<std::int64_t> rssi(const std::string& address) = 0;

    // Whether the device is connected, or not connected, after this. Both need permission.
    virtual void connect(const std::string& address, std::function<void(bool)> done) = 0;
    virtual void disconnect(const std::string& address, std::function<void(bool)> done) = 0;

    // The name that others see this machine by, as of the last read. Absent if it isn't known.
    // Needs permission.
    virtual std::optional<std::string> machineName() = 0;
};

// That of this machine. Defined by the one platform that is linked in.
std::unique_ptr<BluetoothControl> hostBluetooth();

} // namespace tavero
