#pragma once

#include "desktop/StatusItems.h"

#include <QDBusArgument>
#include <QDBusContext>
#include <QDBusVariant>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <vector>

namespace tavero {

// A line of a menu with what hangs below it, signature (ia{sv}av).
struct MenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<MenuLayout> children;
};

// A line of a menu alone, signature (ia{sv}).
struct MenuLine {
    int id = 0;
    QVariantMap properties;
};

// What happened to a line, signature (isvu).
struct MenuEvent {
    int id = 0;
    QString type;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument& operator<<(QDBusArgument& to, const MenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& from, MenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& to, const MenuLine& line);
const QDBusArgument& operator>>(const QDBusArgument& from, MenuLine& line);
QDBusArgument& operator<<(QDBusArgument& to, const MenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& from, MenuEvent& event);

// Makes them known to Qt's D-Bus. Any number of times.
void registerMenuTypes();

// The small menu of a status item as hosts draw it themselves (com.canonical.dbusmenu): one level,
// asked for anew whenever a host is about to show it. Its methods are called by hosts only.
class StatusNotifierMenu final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

  public:
    using Entries = std::function<std::vector<StatusMenuEntry>()>; // empty is an empty menu

    explicit StatusNotifierMenu(Entries entries);

    uint version() const { return 3; }
    QString status() const { return QStringLiteral("normal"); }
    QString textDirection() const { return QStringLiteral("ltr"); }
    QStringList iconThemePath() const { return {}; }

  public slots:
    Q_SCRIPTABLE uint GetLayout(int parentId, int depth, const QStringList& names,
                                tavero::MenuLayout& layout);
    Q_SCRIPTABLE QList<tavero::MenuLine> GetGroupProperties(const QList<int>& ids,
                                                            const QStringList& names);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString& name);
    Q_SCRIPTABLE void Event(int id, const QString& type, const QDBusVariant& data, uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<tavero::MenuEvent>& events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

  signals:
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);

  private:
    bool refresh();
    const StatusMenuEntry* entry(int id) const;
    bool choose(int id, const QString& type);
    QVariantMap properties(int id, const QStringList& names) const;
    QList<int> allIds() const;

    Entries makeEntries_;
    std::vector<StatusMenuEntry> entries_;
    int firstId_ = 1; // of the entries; a host's click on a line that is gone hits nothing else
    uint revision_ = 0;
};

} // namespace tavero

Q_DECLARE_METATYPE(tavero::MenuLayout)
Q_DECLARE_METATYPE(tavero::MenuLine)
Q_DECLARE_METATYPE(tavero::MenuEvent)
