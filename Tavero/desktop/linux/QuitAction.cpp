#include "desktop/linux/QuitAction.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QRegularExpression>
#include <QVariantList>
#include <QVariantMap>

#include <filesystem>
#include <utility>

namespace tavero {

namespace {

constexpr int answerTimeout = 3000; // ms; the app may be in the middle of something
constexpr qsizetype longestBusName = 255;

using Answered = std::function<void(const QDBusMessage&)>;

// Where an application of this name has its objects, by convention.
QString objectPath(QString name) { return '/' + name.replace('.', '/').replace('-', '_'); }

QDBusMessage actionCall(const QString& name, const QString& method) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(name, objectPath(name), "org.gtk.Actions", method);
    call.setAutoStartService(false);
    call << QStringLiteral("quit");
    return call;
}

void send(const QDBusConnection& bus, const QDBusMessage& call, QObject* owner,
          const Answered& answered) {
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, answerTimeout), owner);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, owner, [=] {
        watcher->deleteLater();
        answered(watcher->reply());
    });
}

// Whether the answer to Describe tells of an action that can be activated.
bool canActivate(const QDBusMessage& description) {
    // Enabled, type of the parameter, and state. Qt can't read the type if there is no parameter;
    // an action that wants one refuses to be activated without.
    if (description.type() != QDBusMessage::ReplyMessage || description.signature() != "(bgav)")
        return false;
    bool isEnabled = false;
    const auto fields = description.arguments().constFirst().value<QDBusArgument>();
    fields.beginStructure();
    fields >> isEnabled;
    return isEnabled;
}

// An app that is silent after Activate has the request and may be asking about unsaved work.
bool isRefusal(const QDBusMessage& answer) {
    if (answer.type() != QDBusMessage::ErrorMessage) return false;
    switch (QDBusError(answer).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
    case QDBusError::Disconnected:
        return false;
    default:
        return true;
    }
}

} // namespace

std::optional<QString> busName(const std::string& bundlePath) {
    static const QRegularExpression form(
        QStringLiteral(R"(\A[A-Za-z_-][A-Za-z0-9_-]*(\.[A-Za-z_-][A-Za-z0-9_-]*)+\z)"));

    const std::filesystem::path file(bundlePath);
    if (file.extension() != ".desktop") return std::nullopt;
    QString name = QString::fromStdString(file.stem().string());
    if (name.size() > longestBusName || !form.match(name).hasMatch()) return std::nullopt;
    return name;
}

void activateQuit(const QDBusConnection& bus, const QString& name, QObject* owner,
                  const std::function<void()>& onRefused) {
    send(bus, actionCall(name, "Describe"), owner, [=](const QDBusMessage& description) {
        if (!canActivate(description)) return onRefused();
        QDBusMessage activate = actionCall(name, "Activate");
        activate << QVariantList() << QVariantMap(); // no parameter, nothing about the desktop
        send(bus, activate, owner, [=](const QDBusMessage& answer) {
            if (isRefusal(answer)) onRefused();
        });
    });
}

} // namespace tavero
