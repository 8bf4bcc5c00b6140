#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <string>
#include <vector>

namespace tavero {

// Lets events happen until it holds. False if it doesn't after ten seconds.
bool happens(const std::function<bool()>& holds);

// A real service of notifications in a process of its own on the session bus: the mock that
// python-dbusmock brings. It shows nothing and writes everything down.
class NotificationService {
  public:
    // What Notify was called with.
    struct Shown {
        std::string application;
        uint replaces = 0;
        std::string icon;
        std::string title;
        std::string body;
        QStringList actions;
        QVariantMap hints;
        int timeout = 0;
    };

    explicit NotificationService(QString capabilities = "body body-markup actions");
    ~NotificationService();

    void start();
    void end(); // without a word, as if it crashed
    void hang();
    void refuse(); // answers each notification with an error from now on

    std::vector<Shown> shown();
    // The user clicks, or something else tells of it.
    void invoke(uint id, const QString& action);
    void closeNotification(uint id);

    // How the bus would start it by itself.
    static QStringList command(const QString& capabilities);
    static bool isRunning();

  private:
    QDBusMessage call(const QString& method, const QVariantList& arguments);
    void emitSignal(const QString& name, const QString& signature, const QVariantList& arguments);

    QString capabilities_;
    QProcess process_;
    QDBusConnection user_; // of its own, as another program
};

} // namespace tavero
