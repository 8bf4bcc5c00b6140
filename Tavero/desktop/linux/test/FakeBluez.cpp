#include "desktop/linux/test/FakeBluez.h"

#include <utility>

namespace tavero {

namespace {

const QString connectionName = QStringLiteral("bluez");
const QString name = QStringLiteral("org.bluez");
const QString device = QStringLiteral("org.bluez.Device1");
const QString battery = QStringLiteral("org.bluez.Battery1");

} // namespace

FakeBluez::FakeBluez()
    : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName)) {
    registerBluezTypes();
    bus_.registerVirtualObject("/", this, QDBusConnection::SubPath);
}

FakeBluez::~FakeBluez() {
    bus_.unregisterObject("/", QDBusConnection::UnregisterTree);
    QDBusConnection::disconnectFromBus(connectionName);
}

bool FakeBluez::start() { return bus_.registerService(name); }

void FakeBluez::stop() { bus_.unregisterService(name); }

void FakeBluez::addAdapter(bool isPowered) {
    objects[QDBusObjectPath("/org/bluez/hci0")]["org.bluez.Adapter1"] = {
        {"Alias", "workbench"}, {"Powered", isPowered}, {"Discoverable", false}};
}

void FakeBluez::addDevice(const QString& path, const QVariantMap& properties) {
    objects[QDBusObjectPath(path)][device] = properties;
}

void FakeBluez::setConnected(const QString& path, bool connected) {
    BluezInterfaces& interfaces = objects[QDBusObjectPath(path)];
    interfaces[device]["Connected"] = connected;
    interfaces.remove(battery);
    if (connected) interfaces[battery] = {{"Percentage", QVariant::fromValue(uchar(charge))}};
}

QDBusMessage FakeBluez::answer(const QDBusMessage& message) {
    const QString error = errors.value(message.member());
    if (!error.isEmpty()) return message.createErrorReply(error, "not today");
    if (message.member() == "GetManagedObjects")
        return message.createReply(answersWithText ? QVariant("none")
                                                   : QVariant::fromValue(objects));
    const bool connects = message.member() == "Connect";
    if (!connects && message.member() != "Disconnect")
        return message.createErrorReply(QDBusError::UnknownMethod, message.member());
    const bool isConnected =
        objects[QDBusObjectPath(message.path())][device].value("Connected").toBool();
    if (connects == isConnected)
        return message.createErrorReply(connects ? "org.bluez.Error.AlreadyConnected"
                                                 : "org.bluez.Error.NotConnected",
                                        "nothing to do");
    setConnected(message.path(), connects);
    return message.createReply();
}

bool FakeBluez::handleMessage(const QDBusMessage& message, const QDBusConnection&) {
    calls.push_back(message.member() + " " + message.path());
    if (staysSilent && message.member() != "GetManagedObjects")
        unanswered_.push_back(message);
    else
        bus_.send(answer(message));
    return true;
}

void FakeBluez::answerAll() {
    for (const QDBusMessage& message : std::exchange(unanswered_, {})) bus_.send(answer(message));
}

} // namespace tavero
