#include "desktop/linux/BusNotifications.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QGuiApplication>
#include <QVariantMap>

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString bus = QStringLiteral("org.freedesktop.DBus");

const QString openAction = QStringLiteral("default"); // a click on the notification itself
const QString quitAction = QStringLiteral("quit");

constexpr int serversOwnTime = -1; // how long it stays on screen
// A service need not tell of every notification that has gone.
constexpr std::size_t mostShown = 100;

QDBusMessage methodOf(const QString& name, const QString& object, const QString& method) {
    return QDBusMessage::createMethodCall(name, object, name, method);
}

Notifications::Error errorOf(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ErrorMessage) return std::nullopt;
    const QString& text = reply.errorMessage();
    return (text.isEmpty() ? reply.errorName() : text).toStdString();
}

QStringList actionsOf(const Notification& notification) {
    QStringList actions{openAction, QStringLiteral("Open")};
    if (!notification.bundlePath.empty()) actions += {quitAction, QStringLiteral("Quit")};
    return actions;
}

} // namespace

BusNotifications::BusNotifications(QDBusConnection connection, std::chrono::milliseconds patience)
    : bus_(std::move(connection)), patience_(patience) {
    if (!bus_.isConnected()) return;
    auto* owner =
        new QDBusServiceWatcher(service, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this, &BusNotifications::followOwner);
    // From whoever sends it: naming the service here would ask the bus for its owner, and wait.
    bus_.connect(QString(), path, service, QStringLiteral("ActionInvoked"), this,
                 SLOT(actionInvoked(uint, QString, QDBusMessage)));
    bus_.connect(QString(), path, service, QStringLiteral("NotificationClosed"), this,
                 SLOT(notificationClosed(uint, uint, QDBusMessage)));
}

// The answer is an error message if none came in time, or if there is no bus (any more): of such a
// call Qt would never tell that it has ended.
void BusNotifications::call(const QDBusMessage& message, Answer answer) {
    if (!bus_.isConnected()) {
        const auto fail = [answer = std::move(answer)] {
            answer(QDBusMessage::createError(QDBusError::Disconnected,
                                             QStringLiteral("There is no session bus.")));
        };
        QMetaObject::invokeMethod(this, fail, Qt::QueuedConnection);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(
        bus_.asyncCall(message, static_cast<int>(patience_.count())), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [watcher, answer = std::move(answer)] {
                watcher->deleteLater();
                answer(watcher->reply());
            });
}

void BusNotifications::requestAuthorization(std::function<void(Error)> done) { done(std::nullopt); }

void BusNotifications::readAuthorization(std::function<void(NotificationAuthorization)> done) {
    if (!bus_.isConnected()) return done(NotificationAuthorization::denied);
    QDBusMessage question =
        methodOf(bus, QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("NameHasOwner"));
    question << service;
    call(question, [this, done = std::move(done)](const QDBusMessage& reply) {
        if (reply.arguments().value(0) == true) return done(NotificationAuthorization::authorized);
        readActivatable(done);
    });
}

void BusNotifications::readActivatable(std::function<void(NotificationAuthorization)> done) {
    call(methodOf(bus, QStringLiteral("/org/freedesktop/DBus"),
                  QStringLiteral("ListActivatableNames")),
         [done = std::move(done)](const QDBusMessage& reply) {
             const QStringList names = reply.arguments().value(0).toStringList();
             done(names.contains(service) ? NotificationAuthorization::authorized
                                          : NotificationAuthorization::denied);
         });
}

void BusNotifications::deliver(const Notification& notification, std::function<void(Error)> done) {
    waiting_.push_back({notification, std::move(done)});
    if (!std::exchange(isSending_, true)) goOn();
}

void BusNotifications::goOn() {
    if (waiting_.empty()) {
        isSending_ = false;
    } else if (capabilities_) {
        send(*capabilities_);
    } else {
        askForCapabilities();
    }
}

// A service that doesn't answer this may still show the notification, or say what is wrong with it.
void BusNotifications::askForCapabilities() {
    call(methodOf(service, path, QStringLiteral("GetCapabilities")),
         [this](const QDBusMessage& reply) {
             const QVariant list = reply.arguments().value(0);
             if (!errorOf(reply) && list.typeId() == QMetaType::QStringList)
                 capabilities_ = list.toStringList();
             send(capabilities_.value_or(QStringList()));
         });
}

void BusNotifications::send(const QStringList& capabilities) {
    call(message(waiting_.front().notification, capabilities),
         [this](const QDBusMessage& reply) { sent(reply); });
}

void BusNotifications::sent(const QDBusMessage& reply) {
    const Waiting first = std::move(waiting_.front());
    waiting_.pop_front();
    const QVariant id = reply.arguments().value(0);
    if (!errorOf(reply) && id.typeId() == QMetaType::UInt) {
        if (shown_.size() >= mostShown) shown_.erase(shown_.begin());
        shown_[id.toUInt()] = {first.notification, reply.service()};
    }
    goOn();
    first.done(errorOf(reply));
}

QDBusMessage BusNotifications::message(const Notification& notification,
                                       const QStringList& capabilities) const {
    QString body = QString::fromStdString(notification.body);
    if (capabilities.contains("body-markup")) body = body.toHtmlEscaped();
    QVariantMap hints;
    const QString application = QGuiApplication::desktopFileName();
    if (!application.isEmpty()) hints["desktop-entry"] = application;
    if (capabilities.contains("sound")) hints["sound-name"] = "message-new-instant";

    QDBusMessage notify = methodOf(service, path, QStringLiteral("Notify"));
    notify << QStringLiteral("Tavero") << idOf(notification.key)
           << application // what the icon is called, too
           << QString::fromStdString(notification.title) << body
           << (capabilities.contains("actions") ? actionsOf(notification) : QStringList()) << hints
           << serversOwnTime;
    return notify;
}

// 0 if none of this key is shown.
uint BusNotifications::idOf(const std::string& key) const {
    const auto found = std::find_if(shown_.begin(), shown_.end(), [&](const auto& shown) {
        return shown.second.notification.key == key;
    });
    return found == shown_.end() ? 0 : found->first;
}

// The ids of a service mean nothing to the next.
void BusNotifications::followOwner(const QString&, const QString&, const QString&) {
    capabilities_.reset();
    shown_.clear();
}

// Others hear these signals, and send them, too.
void BusNotifications::actionInvoked(uint id, const QString& action, const QDBusMessage& signal) {
    const auto found = shown_.find(id);
    if (found == shown_.end() || found->second.server != signal.service() || !handler_) return;
    const Notification about = found->second.notification; // the handler may deliver another
    if (action == openAction) handler_(NotificationAction::open, about);
    if (action == quitAction) handler_(NotificationAction::quit, about);
}

void BusNotifications::notificationClosed(uint id, uint, const QDBusMessage& signal) {
    const auto found = shown_.find(id);
    if (found != shown_.end() && found->second.server == signal.service()) shown_.erase(found);
}

std::unique_ptr<Notifications> hostNotifications() {
    return std::make_unique<BusNotifications>(QDBusConnection::sessionBus());
}

} // namespace tavero
