#include "desktop/linux/test/NotificationService.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <utility>

#include <signal.h>

namespace tavero {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");

NotificationService::Shown shownBy(const QVariantList& arguments) {
    return {.application = arguments.value(0).toString().toStdString(),
            .replaces = arguments.value(1).toUInt(),
            .icon = arguments.value(2).toString().toStdString(),
            .title = arguments.value(3).toString().toStdString(),
            .body = arguments.value(4).toString().toStdString(),
            .actions = qdbus_cast<QStringList>(arguments.value(5)),
            .hints = qdbus_cast<QVariantMap>(arguments.value(6)),
            .timeout = arguments.value(7).toInt()};
}

} // namespace

bool happens(const std::function<bool()>& holds) {
    const QDeadlineTimer deadline(10'000);
    QTimer waking; // an event at the least, or the loop would wait for ever
    waking.start(5);
    while (!holds() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return holds();
}

NotificationService::NotificationService(QString capabilities)
    : capabilities_(std::move(capabilities)),
      user_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, "user")) {
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

NotificationService::~NotificationService() {
    end();
    QDBusConnection::disconnectFromBus("user");
}

QStringList NotificationService::command(const QString& capabilities) {
    return {TAVERO_PYTHON3, "-m",
            "dbusmock",     "--session",
            "--template",   "notification_daemon",
            "-p",           "{\"capabilities\": \"" + capabilities + "\"}"};
}

bool NotificationService::isRunning() {
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(service);
}

void NotificationService::start() {
    QStringList arguments = command(capabilities_);
    const QString program = arguments.takeFirst();
    process_.start(program, arguments);
    if (!happens(isRunning)) qFatal("the mock of the notification service does not start");
}

void NotificationService::end() {
    if (process_.state() == QProcess::NotRunning) return;
    process_.kill();
    process_.waitForFinished();
    happens([] { return !isRunning(); });
}

void NotificationService::hang() { ::kill(static_cast<pid_t>(process_.processId()), SIGSTOP); }

void NotificationService::refuse() {
    call("AddMethod", {service, "Notify", "susssasa{sv}i", "u",
                       "raise dbus.exceptions.DBusException('There is no room', "
                       "name='org.example.Full')"});
}

std::vector<NotificationService::Shown> NotificationService::shown() {
    std::vector<Shown> shown;
    const QDBusMessage reply = call("GetMethodCalls", {"Notify"});
    const auto list = reply.arguments().value(0).value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        qulonglong time = 0;
        QVariantList arguments;
        list.beginStructure();
        list >> time >> arguments;
        list.endStructure();
        shown.push_back(shownBy(arguments));
    }
    list.endArray();
    return shown;
}

void NotificationService::invoke(uint id, const QString& action) {
    emitSignal("ActionInvoked", "us", {id, action});
}

void NotificationService::closeNotification(uint id) {
    constexpr uint byTheUser = 2;
    emitSignal("NotificationClosed", "uu", {id, byTheUser});
}

void NotificationService::emitSignal(const QString& name, const QString& signature,
                                     const QVariantList& arguments) {
    call("EmitSignal", {service, name, signature, QVariant(arguments)});
}

QDBusMessage NotificationService::call(const QString& method, const QVariantList& arguments) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, path, "org.freedesktop.DBus.Mock", method);
    message.setArguments(arguments);
    const QDBusMessage reply = user_.call(message);
    if (reply.type() == QDBusMessage::ErrorMessage)
        qFatal("the mock refuses: %s", qPrintable(reply.errorMessage()));
    return reply;
}

} // namespace tavero
