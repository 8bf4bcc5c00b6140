#pragma once

#include <QDBusContext>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <optional>

namespace tavero {

// The actions of an app as a desktop sees them (org.gtk.Actions), with settable answers.
class ActionGroup : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gtk.Actions")

  public:
    ActionGroup();

    std::optional<bool> isEnabled = true; // absent if there is no such action
    bool answersInWords = false;          // with a text in place of a description
    QString activationError;              // the name of an error, empty for none
    QStringList activated;                // in this order

  signals:
    void activation();

  public slots:
    QDBusVariant Describe(const QString& action); // NOLINT: the interface's names
    void Activate(const QString& action, const QVariantList& parameters,
                  const QVariantMap& desktop);
};

} // namespace tavero
