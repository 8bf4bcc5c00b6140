#pragma once

#include "settings/SettingsKeys.h"

#include <QObject>
#include <QSettings>
#include <QString>

#include <memory>
#include <optional>
#include <string>

namespace tavero {

// The persisted settings: typed access to one QSettings store by the keys of SettingsKeys.h.
// A missing value, one of another type and a damaged file all read as absent, so the key's fallback
// is in force. A Boolean is not a number and a number is not a Boolean. Main thread only.
class Settings : public QObject {
    Q_OBJECT

  public:
    // The application's own store, found by the names that QCoreApplication was given: the user
    // defaults on macOS, an INI file in the user's configuration directory elsewhere.
    Settings();
    // A store in an INI file of its own.
    explicit Settings(const QString& file);

    template <typename Value>
    std::optional<Value> find(const Key<Value>& key) const;
    template <typename Value>
    Value get(const Key<Value>& key) const {
        return find(key).value_or(key.fallback);
    }

    // Setting what the store already holds changes nothing and notifies nobody.
    template <typename Value>
    void set(const Key<Value>& key, const Value& value);

  signals:
    void changed(const QString& name);

  private:
    // A dot in a key's name is a level in the store, which QSettings writes as a slash; on macOS
    // that becomes a dot again in the user defaults.
    static QString path(const std::string& name);

    mutable QSettings store_; // a read may have to load it
};

} // namespace tavero
