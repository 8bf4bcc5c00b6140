#pragma once

#include "desktop/Appearance.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QMap>
#include <QString>
#include <QVariant>

namespace tavero {

// Settings as the portal tells them: a map of keys for each namespace.
using PortalSettings = QMap<QString, QVariantMap>;

// The look with one setting of the portal taken in. A setting that says nothing about the look, or
// one of another type than documented, changes nothing.
Look withSetting(Look look, const QString& space, const QString& key, const QVariant& value);

// The look as org.freedesktop.portal.Settings tells it on a D-Bus connection: "color-scheme" and
// "reduced-motion" of org.freedesktop.appearance, and what GNOME has called the latter for longer,
// "enable-animations" of org.gnome.desktop.interface. All calls are asynchronous.
class PortalAppearance final : public Appearance {
    Q_OBJECT

  public:
    explicit PortalAppearance(QDBusConnection connection);

  private slots:
    void settingChanged(const QString& space, const QString& key, const QDBusVariant& value);

  private:
    void readAll();

    QDBusConnection connection_;
};

} // namespace tavero
