#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tavero {

// IOBluetoothDevice: a device that this Mac knows. Destroying it ends what it was told to do
// without an answer.
class MacBluetoothDevice {
  public:
    virtual ~MacBluetoothDevice() = default;

    virtual bool isConnected() = 0;
    // dBm; 0 and a low byte of 127 mean that it isn't known.
    virtual std::int64_t rawRSSI() = 0;

    // Both return an IOReturn, 0 if all is well. `completed` is called with another when the
    // connection stands or has failed; only after a return of 0, at most once, maybe from within.
    virtual std::int32_t openConnection(std::function<void(std::int32_t)> completed) = 0;
    virtual std::int32_t closeConnection() = 0;
};

// The calls of IOBluetooth and CoreBluetooth. Main thread only.
class MacBluetoothCalls {
  public:
    virtual ~MacBluetoothCalls() = default;

    // +[CBManager authorization]: 0 while the user hasn't been asked, 3 if it is allowed.
    virtual std::int64_t authorization() = 0;
    // Makes a CBCentralManager, which lets the system ask the user. `updated` follows each change
    // of its state, until another one is made or this object goes away.
    virtual void createCentral(std::function<void()> updated) = 0;

    // +[IOBluetoothDevice deviceWithAddressString:], with "-" between the bytes. Null if there is
    // none.
    virtual std::unique_ptr<MacBluetoothDevice> device(const std::string& address) = 0;

    // What others see this Mac as: -[IOBluetoothHostController nameAsString]. Absent if it isn't
    // told.
    virtual std::optional<std::string> controllerName() = 0;
};

// Those of this Mac.
std::unique_ptr<MacBluetoothCalls> hostBluetoothCalls();

} // namespace tavero
