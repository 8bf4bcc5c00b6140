#include "desktop/linux/StatusNotifierHosts.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <utility>

namespace tavero {

namespace {

const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString path = QStringLiteral("/StatusNotifierWatcher");

} // namespace

StatusNotifierHosts::StatusNotifierHosts(QDBusConnection bus) : bus_(std::move(bus)) {
    if (!bus_.isConnected()) {
        present_ = false;
        return;
    }
    auto* owner =
        new QDBusServiceWatcher(watcher, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this,
            &StatusNotifierHosts::followOwner);
    // From whoever sends it: naming the service here would ask the bus for its owner, and wait.
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        bus_.connect(QString(), path, watcher, QLatin1String(signal), this, SLOT(read()));
    read();
}

void StatusNotifierHosts::read() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcher, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << watcher << QStringLiteral("IsStatusNotifierHostRegistered");
    call.setAutoStartService(false);
    reading_ = std::make_unique<QDBusPendingCallWatcher>(bus_.asyncCall(call));
    connect(reading_.get(), &QDBusPendingCallWatcher::finished, this, [this] {
        const QDBusPendingReply<QDBusVariant> reply = *reading_;
        const QVariant value = reply.isError() ? QVariant() : reply.value().variant();
        set(value.typeId() == QMetaType::Bool && value.toBool());
    });
}

void StatusNotifierHosts::followOwner(const QString&, const QString&, const QString& now) {
    if (now.isEmpty()) {
        reading_.reset();
        return set(false);
    }
    emit watcherAppeared();
    read();
}

void StatusNotifierHosts::set(bool present) {
    if (present_ == present) return;
    present_ = present;
    emit changed();
}

} // namespace tavero
