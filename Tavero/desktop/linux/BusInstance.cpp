#include "desktop/linux/BusInstance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>

namespace tavero {

namespace {

const QString busName = QStringLiteral("com.brimfold.tavero");
const QString objectPath = QStringLiteral("/com/brimfold/tavero");
constexpr int answerTimeout = 3000; // ms; the other one may be in the middle of something

void askToComeForward(QDBusConnection& bus) {
    QDBusMessage call = QDBusMessage::createMethodCall(busName, objectPath,
                                                       "org.freedesktop.Application", "Activate");
    call << QVariantMap{};
    bus.call(call, QDBus::Block, answerTimeout);
}

} // namespace

void BusInstance::Activate(const QVariantMap&) { emit activated(); }

// Tavero opens no files and has no named actions; whoever asks for them wants to see it.
void BusInstance::Open(const QStringList&, const QVariantMap&) { emit activated(); }
void BusInstance::ActivateAction(const QString&, const QVariantList&, const QVariantMap&) {
    emit activated();
}

std::unique_ptr<Instance> claimInstance() {
    auto instance = std::make_unique<BusInstance>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return instance;
    // The object first: whoever sees the name may call it at once.
    bus.registerObject(objectPath, instance.get(), QDBusConnection::ExportScriptableSlots);
    if (bus.registerService(busName)) return instance;
    bus.unregisterObject(objectPath);
    askToComeForward(bus);
    return nullptr;
}

} // namespace tavero
