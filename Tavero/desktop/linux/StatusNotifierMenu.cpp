#include "desktop/linux/StatusNotifierMenu.h"

#include <QDBusMetaType>
#include <QMetaObject>

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

constexpr int rootId = 0;

// An underscore would underline the letter behind it.
QString label(const std::string& title) {
    return QString::fromStdString(title).replace('_', QStringLiteral("__"));
}

QVariantMap properties(const StatusMenuEntry& entry) {
    if (entry.title.empty()) return {{QStringLiteral("type"), QStringLiteral("separator")}};
    QVariantMap properties{{QStringLiteral("label"), label(entry.title)}};
    if (!entry.choose) properties.insert(QStringLiteral("enabled"), false);
    return properties;
}

bool looksLike(const StatusMenuEntry& a, const StatusMenuEntry& b) {
    return a.title == b.title && !a.choose == !b.choose;
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& to, const MenuLayout& layout) {
    to.beginStructure();
    to << layout.id << layout.properties;
    to.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const MenuLayout& child : layout.children) to << QDBusVariant(QVariant::fromValue(child));
    to.endArray();
    to.endStructure();
    return to;
}

const QDBusArgument& operator>>(const QDBusArgument& from, MenuLayout& layout) {
    from.beginStructure();
    from >> layout.id >> layout.properties;
    layout.children.clear();
    from.beginArray();
    while (!from.atEnd()) {
        QDBusVariant child;
        from >> child;
        layout.children.append(qdbus_cast<MenuLayout>(child.variant()));
    }
    from.endArray();
    from.endStructure();
    return from;
}

QDBusArgument& operator<<(QDBusArgument& to, const MenuLine& line) {
    to.beginStructure();
    to << line.id << line.properties;
    to.endStructure();
    return to;
}

const QDBusArgument& operator>>(const QDBusArgument& from, MenuLine& line) {
    from.beginStructure();
    from >> line.id >> line.properties;
    from.endStructure();
    return from;
}

QDBusArgument& operator<<(QDBusArgument& to, const MenuEvent& event) {
    to.beginStructure();
    to << event.id << event.type << event.data << event.timestamp;
    to.endStructure();
    return to;
}

const QDBusArgument& operator>>(const QDBusArgument& from, MenuEvent& event) {
    from.beginStructure();
    from >> event.id >> event.type >> event.data >> event.timestamp;
    from.endStructure();
    return from;
}

void registerMenuTypes() {
    qDBusRegisterMetaType<MenuLayout>();
    qDBusRegisterMetaType<MenuLine>();
    qDBusRegisterMetaType<QList<MenuLine>>();
    qDBusRegisterMetaType<MenuEvent>();
    qDBusRegisterMetaType<QList<MenuEvent>>();
    qDBusRegisterMetaType<QList<int>>();
}

StatusNotifierMenu::StatusNotifierMenu(Entries entries) : makeEntries_(std::move(entries)) {}

// True if the menu looks another way than before.
bool StatusNotifierMenu::refresh() {
    auto entries = makeEntries_ ? makeEntries_() : std::vector<StatusMenuEntry>{};
    const bool isSame =
        std::equal(entries.begin(), entries.end(), entries_.begin(), entries_.end(), looksLike);
    if (!isSame) {
        firstId_ += static_cast<int>(entries_.size());
        ++revision_;
    }
    entries_ = std::move(entries);
    return !isSame;
}

const StatusMenuEntry* StatusNotifierMenu::entry(int id) const {
    const auto at = qint64{id} - firstId_;
    return at >= 0 && at < std::ssize(entries_) ? &entries_[static_cast<std::size_t>(at)] : nullptr;
}

QVariantMap StatusNotifierMenu::properties(int id, const QStringList& names) const {
    QVariantMap all;
    if (id == rootId)
        all = {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
    else if (const StatusMenuEntry* line = entry(id))
        all = tavero::properties(*line);
    if (names.isEmpty()) return all;
    QVariantMap wanted;
    for (const QString& name : names)
        if (all.contains(name)) wanted.insert(name, all[name]);
    return wanted;
}

QList<int> StatusNotifierMenu::allIds() const {
    QList<int> ids{rootId};
    for (int at = 0; at < std::ssize(entries_); ++at) ids.append(firstId_ + at);
    return ids;
}

uint StatusNotifierMenu::GetLayout(int parentId, int depth, const QStringList& names,
                                   MenuLayout& layout) {
    refresh();
    if (parentId != rootId && !entry(parentId)) {
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no such line."));
        return 0;
    }
    layout = {.id = parentId, .properties = properties(parentId, names)};
    if (parentId == rootId && depth != 0)
        for (int at = 0; at < std::ssize(entries_); ++at)
            layout.children.append(
                {.id = firstId_ + at, .properties = properties(firstId_ + at, names)});
    return revision_;
}

QList<MenuLine> StatusNotifierMenu::GetGroupProperties(const QList<int>& ids,
                                                       const QStringList& names) {
    QList<MenuLine> lines;
    for (const int id : ids.isEmpty() ? allIds() : ids)
        if (id == rootId || entry(id))
            lines.append({.id = id, .properties = properties(id, names)});
    return lines;
}

QDBusVariant StatusNotifierMenu::GetProperty(int id, const QString& name) {
    const QVariantMap found = properties(id, {name});
    if (found.isEmpty()) {
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no such property."));
        return QDBusVariant(QString());
    }
    return QDBusVariant(found.first());
}

// False if there is no such line.
bool StatusNotifierMenu::choose(int id, const QString& type) {
    const StatusMenuEntry* line = entry(id);
    if (!line) return id == rootId;
    // The host gets its answer first: the choice may take its time, and the item with it.
    if (type == "clicked" && line->choose)
        QMetaObject::invokeMethod(
            this, [choose = line->choose] { choose(); }, Qt::QueuedConnection);
    return true;
}

void StatusNotifierMenu::Event(int id, const QString& type, const QDBusVariant&, uint) {
    if (!choose(id, type))
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no such line."));
}

QList<int> StatusNotifierMenu::EventGroup(const QList<MenuEvent>& events) {
    QList<int> unknown;
    for (const MenuEvent& event : events)
        if (!choose(event.id, event.type)) unknown.append(event.id);
    return unknown;
}

bool StatusNotifierMenu::AboutToShow(int id) {
    if (id != rootId || !refresh()) return false;
    emit LayoutUpdated(revision_, rootId);
    return true;
}

QList<int> StatusNotifierMenu::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    QList<int> changed;
    for (const int id : ids) {
        if (id != rootId && !entry(id)) idErrors.append(id);
        if (AboutToShow(id)) changed.append(id);
    }
    return changed;
}

} // namespace tavero
