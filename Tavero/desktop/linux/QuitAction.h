#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <string>

namespace tavero {

// The bus name of an app that has one: that of its desktop entry, whose path this is. Absent if it
// is another file, or if no bus name could be called so.
std::optional<QString> busName(const std::string& bundlePath);

// Activates the action "quit" of the app with this bus name, as the desktop's own menus do: it is
// what the app exports through org.gtk.Actions. Returns at once. Later `onRefused` is called if the
// app isn't on the bus, has no such action, has it disabled, or doesn't answer whether it has;
// but not any more once the app has taken the request and is at it, however long that takes. An
// app is never started by this. Nothing is called once `owner` is gone. The bus must be connected.
void activateQuit(const QDBusConnection& bus, const QString& name, QObject* owner,
                  const std::function<void()>& onRefused);

} // namespace tavero
