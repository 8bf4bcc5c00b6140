#include "desktop/linux/test/FakeBar.h"

#include <QCoreApplication>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QTimer>

namespace tavero {

namespace {

const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString itemPath = QStringLiteral("/StatusNotifierItem");

QString newName() {
    static int count = 0;
    return QStringLiteral("fake-bar-%1").arg(++count);
}

} // namespace

FakeBar::FakeBar(bool hasHost)
    : hasHost_(hasHost),
      bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, newName())) {
    bus_.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                        QDBusConnection::ExportScriptableContents |
                            QDBusConnection::ExportAllProperties);
    for (const char* signal : {"NewIcon", "NewToolTip"})
        bus_.connect(QString(), itemPath, itemInterface, QLatin1String(signal), this,
                     SLOT(hear(QDBusMessage)));
    bus_.registerService(watcher);
}

FakeBar::~FakeBar() {
    const QString name = bus_.name();
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

void FakeBar::setHost(bool hasHost) {
    hasHost_ = hasHost;
    if (hasHost)
        emit StatusNotifierHostRegistered();
    else
        emit StatusNotifierHostUnregistered();
}

void FakeBar::hear(const QDBusMessage& signal) {
    heard.append(signal.member() + ' ' + signal.service());
}

QDBusMessage FakeBar::call(const QString& item, const QString& path, const QString& interface,
                           const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(item, path, interface, method);
    message.setArguments(arguments);
    const QDBusPendingCall answer = bus_.asyncCall(message);
    waitUntil([&] { return answer.isFinished(); });
    return answer.reply();
}

QVariant FakeBar::property(const QString& item, const QString& name) {
    const QDBusMessage reply =
        call(item, itemPath, QStringLiteral("org.freedesktop.DBus.Properties"),
             QStringLiteral("Get"), {itemInterface, name});
    if (reply.type() != QDBusMessage::ReplyMessage) return {};
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

void FakeBar::activate(const QString& item, int x, int y) {
    call(item, itemPath, itemInterface, QStringLiteral("Activate"), {x, y});
}

bool waitUntil(const std::function<bool()>& holds) {
    const QDeadlineTimer deadline(10'000);
    QTimer waking; // an event at the least, or the loop would wait for ever
    waking.start(5);
    while (!holds() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return holds();
}

} // namespace tavero
