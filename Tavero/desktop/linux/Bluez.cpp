#include "desktop/linux/Bluez.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace tavero {

namespace {

const QString service = QStringLiteral("org.bluez");

constexpr int readTime = 10'000;      // milliseconds
constexpr int operationTime = 45'000; // a device that is away lets itself be called for long

QDBusMessage method(const QString& path, const char* interface, const char* name) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, QLatin1String(interface),
                                                          QLatin1String(name));
    message.setAutoStartService(false);
    return message;
}

// Nobody answers to the name, or there is no bus.
bool isAbsent(const QDBusError& error) {
    return error.type() == QDBusError::ServiceUnknown || error.type() == QDBusError::Disconnected ||
           error.name() == "org.freedesktop.DBus.Error.NameHasNoOwner";
}

} // namespace

Bluez::Bluez(QDBusConnection bus) : bus_(std::move(bus)) { registerBluezTypes(); }

void Bluez::call(const QDBusMessage& message, int timeout, Answer answer) {
    // Without a bus a call would end without an answer.
    const QDBusPendingCall sent =
        bus_.isConnected()
            ? bus_.asyncCall(message, timeout)
            : QDBusPendingCall::fromError(QDBusError(QDBusError::Disconnected, "no bus"));
    auto* watcher = new QDBusPendingCallWatcher(sent, &calls_);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &calls_,
                     [watcher, answer = std::move(answer)] {
                         watcher->deleteLater();
                         answer(*watcher);
                     });
}

void Bluez::readObjects(std::function<void(const BluezObjects&, const QDBusError&)> done) {
    call(method("/", "org.freedesktop.DBus.ObjectManager", "GetManagedObjects"), readTime,
         [done = std::move(done)](const QDBusPendingCall& call) {
             const QDBusPendingReply<BluezObjects> reply = call;
             done(reply.isError() ? BluezObjects() : reply.value(), reply.error());
         });
}

void Bluez::read(std::function<void(Snapshot)> done) {
    readObjects(
        [this, done = std::move(done)](const BluezObjects& objects, const QDBusError& error) {
            if (error.isValid() && !isAbsent(error)) return done(std::nullopt);
            machineName_ = adapterName(objects);
            done(bluetoothSnapshot(objects));
        });
}

// The device is looked up each time: after a restart BlueZ may have given it another path.
void Bluez::run(const Operation& operation, const std::string& address,
                std::function<void(bool)> done) {
    readObjects([this, operation, address, done = std::move(done)](const BluezObjects& objects,
                                                                   const QDBusError&) {
        const std::optional<QString> path = devicePath(objects, address);
        if (!path) return done(false);
        call(method(*path, "org.bluez.Device1", operation.method), operationTime,
             [operation, done](const QDBusPendingCall& call) {
                 done(!call.isError() || call.error().name() == operation.doneAlready);
             });
    });
}

void Bluez::connect(const std::string& address, std::function<void(bool)> done) {
    run({"Connect", "org.bluez.Error.AlreadyConnected"}, address, std::move(done));
}

void Bluez::disconnect(const std::string& address, std::function<void(bool)> done) {
    run({"Disconnect", "org.bluez.Error.NotConnected"}, address, std::move(done));
}

std::unique_ptr<BluetoothControl> hostBluetooth() {
    return std::make_unique<Bluez>(QDBusConnection::systemBus());
}

} // namespace tavero
