#pragma once

#include "desktop/Instance.h"

#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace tavero {

// The instance that owns Tavero's name on the session bus and answers what desktops call when an
// application is started again (org.freedesktop.Application).
class BusInstance final : public Instance {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public slots:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& name, const QVariantList& parameters,
                                     const QVariantMap& platformData);
};

} // namespace tavero
