#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

#include <functional>

namespace tavero {

// A watcher of status items and the panel that shows them, on a bus connection of their own.
class FakeBar final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion CONSTANT)

  public:
    explicit FakeBar(bool hasHost = true);
    ~FakeBar() override;

    QStringList items; // bus names, as they registered
    QStringList heard; // signals of items, as "NewIcon :1.7"

    bool hasHost() const { return hasHost_; }
    int protocolVersion() const { return 0; }
    void setHost(bool hasHost);

    // Asks an item, as a panel does, and waits for its answer.
    QDBusMessage call(const QString& item, const QString& path, const QString& interface,
                      const QString& method, const QVariantList& arguments = {});
    QVariant property(const QString& item, const QString& name);
    void activate(const QString& item, int x, int y);

  public slots:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString& name) { items.append(name); }
    void hear(const QDBusMessage& signal);

  signals:
    Q_SCRIPTABLE void StatusNotifierHostRegistered();
    Q_SCRIPTABLE void StatusNotifierHostUnregistered();

  private:
    bool hasHost_;
    QDBusConnection bus_;
};

// Serves the event loop until it holds. False if it doesn't within ten seconds.
bool waitUntil(const std::function<bool()>& holds);

} // namespace tavero
