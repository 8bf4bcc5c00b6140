#pragma once

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace tavero {

// Whether something on this desktop shows status items, as org.kde.StatusNotifierWatcher says:
// there is one on the bus, and its IsStatusNotifierHostRegistered is true. All calls are
// asynchronous.
class StatusNotifierHosts final : public QObject {
    Q_OBJECT

  public:
    explicit StatusNotifierHosts(QDBusConnection bus);

    // Absent until the bus has answered.
    std::optional<bool> present() const { return present_; }

  signals:
    void changed();
    void watcherAppeared(); // a new one, that knows no items yet

  private slots:
    void read();
    void followOwner(const QString& name, const QString& before, const QString& now);

  private:
    void set(bool present);

    QDBusConnection bus_;
    std::optional<bool> present_;
    std::unique_ptr<QDBusPendingCallWatcher> reading_; // the latest; earlier answers don't count
};

} // namespace tavero
