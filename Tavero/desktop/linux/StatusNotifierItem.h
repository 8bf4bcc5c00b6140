#pragma once

#include "desktop/StatusItems.h"
#include "desktop/linux/StatusNotifierMenu.h"
#include "desktop/linux/StatusNotifierPixmap.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QImage>
#include <QList>
#include <QObject>
#include <QString>

namespace tavero {

// A status item on the session bus (org.kde.StatusNotifierItem). It has a bus connection of its
// own, for hosts tell items apart by their connections. The upper-case methods are called by hosts
// only.
class StatusNotifierItem final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconName READ iconName CONSTANT)
    Q_PROPERTY(tavero::StatusNotifierPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(QString IconAccessibleDesc READ text)
    Q_PROPERTY(tavero::StatusNotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)

  public:
    // `id` tells this item from Tavero's others.
    StatusNotifierItem(const QString& id, QString title, StatusItemEvents events);
    ~StatusNotifierItem() override;

    // Announces it to the watcher, if there is one; with each new one again. Returns at once.
    void announce();

    // The pictures that a host may choose from. Hosts hear of it only if it is another one.
    void show(const QList<QImage>& pictures, const QString& text);

    QString category() const { return QStringLiteral("SystemServices"); }
    QString id() const { return id_; }
    QString title() const { return title_; }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    QString iconName() const { return {}; } // the picture is in the pixmaps
    StatusNotifierPixmaps iconPixmap() const;
    QString text() const { return text_; }
    StatusNotifierToolTip toolTip() const { return {.title = text_}; }
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const;

  public slots:
    // Where the host was clicked, in pixels of the screen; some say 0, 0.
    Q_SCRIPTABLE void Activate(int x, int y) { open(x, y); }
    Q_SCRIPTABLE void SecondaryActivate(int x, int y) { open(x, y); }
    // From a host that draws no menus; the panel has what the menu has.
    Q_SCRIPTABLE void ContextMenu(int x, int y) { open(x, y); }
    Q_SCRIPTABLE void Scroll(int, const QString&) {}

  signals:
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewToolTip();

  private:
    void open(int x, int y);

    QString id_;
    QString title_;
    StatusItemEvents events_;
    StatusNotifierMenu menu_;
    QList<QImage> pictures_;
    QString text_;
    QDBusConnection bus_;
};

// Where on Qt's screens a point of the real ones is.
QPoint fromPixels(QPoint point);

} // namespace tavero
