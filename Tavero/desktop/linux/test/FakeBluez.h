#pragma once

#include "desktop/linux/BluezObjects.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QString>

#include <vector>

namespace tavero {

// A BlueZ of settable values, on a real bus under its real name. A device connects and disconnects
// as it is asked to and shows its battery only meanwhile.
class FakeBluez final : public QDBusVirtualObject {
  public:
    FakeBluez();
    ~FakeBluez() override;

    BluezObjects objects;
    QMap<QString, QString> errors; // by method: the name of the error that it answers with
    bool answersWithText = false;  // in place of what it keeps
    bool staysSilent = false;      // asked to connect or to disconnect
    int charge = 73;               // percent
    std::vector<QString> calls;    // methods and paths, in this order

    bool start(); // takes the name on the bus
    void stop();
    // The answers that it has kept to itself.
    void answerAll();

    void addAdapter(bool isPowered = true);
    void addDevice(const QString& path, const QVariantMap& properties);

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    QString introspect(const QString&) const override { return {}; }

  private:
    QDBusMessage answer(const QDBusMessage& message);
    void setConnected(const QString& path, bool connected);

    QDBusConnection bus_;
    std::vector<QDBusMessage> unanswered_;
};

} // namespace tavero
