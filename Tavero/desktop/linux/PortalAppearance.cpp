#include "desktop/linux/PortalAppearance.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>

#include <utility>

namespace tavero {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");

constexpr uint preferDark = 1;
constexpr uint preferReducedMotion = 1;

} // namespace

Look withSetting(Look look, const QString& space, const QString& key, const QVariant& value) {
    const bool isNumber = value.typeId() == QMetaType::UInt;
    if (space == appearance && key == "color-scheme" && isNumber)
        look.isDark = value.toUInt() == preferDark;
    if (space == appearance && key == "reduced-motion" && isNumber)
        look.reducesMotion = value.toUInt() == preferReducedMotion;
    if (space == gnome && key == "enable-animations" && value.typeId() == QMetaType::Bool)
        look.reducesMotion = !value.toBool();
    return look;
}

PortalAppearance::PortalAppearance(QDBusConnection connection)
    : connection_(std::move(connection)) {
    qDBusRegisterMetaType<PortalSettings>();
    // From whoever sends it: naming the service here would ask the bus for its owner, and wait.
    connection_.connect(QString(), path, interface, QStringLiteral("SettingChanged"), this,
                        SLOT(settingChanged(QString, QString, QDBusVariant)));
    readAll();
}

void PortalAppearance::readAll() {
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
    call << QStringList{appearance, gnome};
    auto* watcher = new QDBusPendingCallWatcher(connection_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<PortalSettings> reply = *watcher;
        if (reply.isError()) return;
        const PortalSettings all = reply.value();
        Look now = look();
        for (const QString& space : {gnome, appearance}) // the common name has the last word
            for (const auto& [key, value] : all.value(space).toStdMap())
                now = withSetting(now, space, key, value);
        set(now);
    });
}

void PortalAppearance::settingChanged(const QString& space, const QString& key,
                                      const QDBusVariant& value) {
    set(withSetting(look(), space, key, value.variant()));
}

std::unique_ptr<Appearance> hostAppearance() {
    return std::make_unique<PortalAppearance>(QDBusConnection::sessionBus());
}

} // namespace tavero
