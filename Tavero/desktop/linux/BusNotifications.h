#pragma once

#include <QDBusConnection> // Qt first, for moc 6.4
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QStringList>

#include "desktop/Notifications.h"

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace tavero {

// Notifications through the service org.freedesktop.Notifications of a bus. Nobody is asked for the
// right to send them: they are authorized if the service runs or can be started.
//
// All calls are asynchronous and end by themselves. One is under way at a time and what is
// delivered meanwhile waits for its turn, so that of two notifications with one key the second can
// replace the first.
class BusNotifications final : public QObject, public Notifications {
    Q_OBJECT

  public:
    // How long an answer may take.
    static constexpr std::chrono::milliseconds defaultPatience = std::chrono::seconds(5);

    explicit BusNotifications(QDBusConnection bus,
                              std::chrono::milliseconds patience = defaultPatience);

    void requestAuthorization(std::function<void(Error)> done) override;
    void readAuthorization(std::function<void(NotificationAuthorization)> done) override;
    // A service that doesn't run is started, if the bus can do that.
    void deliver(const Notification& notification, std::function<void(Error)> done) override;
    void setHandler(Handler handler) override { handler_ = std::move(handler); }

    // How many are on screen, as far as the service has told.
    std::size_t shown() const { return shown_.size(); }

  private slots:
    void followOwner(const QString& name, const QString& before, const QString& now);
    void actionInvoked(uint id, const QString& action, const QDBusMessage& signal);
    void notificationClosed(uint id, uint reason, const QDBusMessage& signal);

  private:
    struct Waiting {
        Notification notification;
        std::function<void(Error)> done;
    };
    struct Shown {
        Notification notification;
        QString server; // who shows it
    };
    using Answer = std::function<void(const QDBusMessage&)>;

    void call(const QDBusMessage& message, Answer answer);
    void goOn();
    void askForCapabilities();
    void send(const QStringList& capabilities);
    void sent(const QDBusMessage& reply);
    QDBusMessage message(const Notification& notification, const QStringList& capabilities) const;
    uint idOf(const std::string& key) const;
    void readActivatable(std::function<void(NotificationAuthorization)> done);

    QDBusConnection bus_;
    std::chrono::milliseconds patience_;
    Handler handler_;
    std::deque<Waiting> waiting_;             // the first is under way
    std::map<uint, Shown> shown_;             // by the service's id
    std::optional<QStringList> capabilities_; // of the service that runs now, once it told
    bool isSending_ = false;
};

} // namespace tavero
