#pragma once

#include "desktop/BluetoothControl.h"
#include "desktop/linux/BluezObjects.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QObject>

#include <functional>
#include <optional>
#include <string>

class QDBusMessage;
class QDBusPendingCall;

namespace tavero {

// Bluetooth as BlueZ offers it on D-Bus (org.bluez), which asks no user for permission. All calls
// are asynchronous and start no service: where BlueZ doesn't run, Bluetooth is off. Its devices
// tell one charge each, and a signal mostly while others are looked for.
class Bluez final : public BluetoothControl {
  public:
    explicit Bluez(QDBusConnection bus);

    void read(std::function<void(Snapshot)> done) override;
    BluetoothPermission permission() override { return BluetoothPermission::granted; }
    void requestPermission(std::function<void()> done) override { done(); }
    std::optional<std::int64_t> rssi(const std::string&) override { return std::nullopt; }
    void connect(const std::string& address, std::function<void(bool)> done) override;
    void disconnect(const std::string& address, std::function<void(bool)> done) override;
    std::optional<std::string> machineName() override { return machineName_; }

  private:
    // An operation of Device1, and the error that says that there is nothing to do.
    struct Operation {
        const char* method;
        const char* doneAlready;
    };
    using Answer = std::function<void(const QDBusPendingCall&)>;

    void call(const QDBusMessage& message, int timeout, Answer answer);
    void readObjects(std::function<void(const BluezObjects&, const QDBusError&)> done);
    void run(const Operation& operation, const std::string& address,
             std::function<void(bool)> done);

    QDBusConnection bus_;
    std::optional<std::string> machineName_;
    QObject calls_; // owns those that wait for an answer
};

} // namespace tavero
