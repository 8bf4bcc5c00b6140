#include "desktop/linux/StatusNotifierItem.h"

#include <QDBusMessage>
#include <QGuiApplication>
#include <QMetaObject>
#include <QScreen>

#include <utility>

namespace tavero {

namespace {

const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString itemPath = QStringLiteral("/StatusNotifierItem"); // where hosts expect it
const QString menuPath = QStringLiteral("/MenuBar");

QDBusConnection newConnection(const QString& id) {
    static int count = 0;
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                         QStringLiteral("%1-%2").arg(id).arg(++count));
}

} // namespace

QPoint fromPixels(QPoint point) {
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRect area = screen->geometry();
        // Qt leaves the corner of a screen where it is and scales what lies within.
        const QRect pixels(area.topLeft(), area.size() * screen->devicePixelRatio());
        if (pixels.contains(point))
            return area.topLeft() + (point - area.topLeft()) / screen->devicePixelRatio();
    }
    return point;
}

StatusNotifierItem::StatusNotifierItem(const QString& id, QString title, StatusItemEvents events)
    : id_(QStringLiteral("tavero-") + id), title_(std::move(title)), events_(std::move(events)),
      menu_(events_.menu), bus_(newConnection(id_)) {
    registerStatusNotifierTypes();
    registerMenuTypes();
    constexpr auto exported =
        QDBusConnection::ExportScriptableContents | QDBusConnection::ExportAllProperties;
    bus_.registerObject(itemPath, this, exported);
    bus_.registerObject(menuPath, &menu_, exported);
    announce();
}

StatusNotifierItem::~StatusNotifierItem() {
    const QString name = bus_.name();
    bus_.unregisterObject(itemPath);
    bus_.unregisterObject(menuPath);
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name); // to the host, the item is gone
}

void StatusNotifierItem::announce() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcher, watcherPath, watcher, QStringLiteral("RegisterStatusNotifierItem"));
    call.setAutoStartService(false);
    call << bus_.baseService();
    bus_.send(call);
}

void StatusNotifierItem::show(const QList<QImage>& pictures, const QString& text) {
    const bool isNewPicture = std::exchange(pictures_, pictures) != pictures;
    const bool isNewText = std::exchange(text_, text) != text;
    if (isNewPicture) emit NewIcon();
    if (isNewText) emit NewToolTip();
}

StatusNotifierPixmaps StatusNotifierItem::iconPixmap() const {
    StatusNotifierPixmaps pixmaps;
    pixmaps.reserve(pictures_.size());
    for (const QImage& picture : pictures_) pixmaps.append(pixmapOf(picture));
    return pixmaps;
}

QDBusObjectPath StatusNotifierItem::menu() const { return QDBusObjectPath(menuPath); }

void StatusNotifierItem::open(int x, int y) {
    if (!events_.open) return;
    // The host gets its answer first: to open takes its time.
    QMetaObject::invokeMethod(
        this, [open = events_.open, where = fromPixels({x, y})] { open(where); },
        Qt::QueuedConnection);
}

} // namespace tavero
