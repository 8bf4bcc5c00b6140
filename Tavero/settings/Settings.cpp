#include "settings/Settings.h"

#include <QByteArray>
#include <QDateTime>
#include <QMetaType>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <chrono>

namespace tavero {

namespace {

// Values in the form that the store keeps, and back. An INI file keeps Booleans and numbers as
// text; the user defaults keep them as what they are.
template <typename Value>
struct Stored;

template <>
struct Stored<bool> {
    static QVariant encode(bool value) { return value; }
    static std::optional<bool> decode(const QVariant& stored) {
        if (stored.typeId() == QMetaType::Bool) return stored.toBool();
        if (stored.typeId() != QMetaType::QString) return std::nullopt;
        if (stored.toString() == "true") return true;
        if (stored.toString() == "false") return false;
        return std::nullopt;
    }
};

template <>
struct Stored<std::int64_t> {
    static QVariant encode(std::int64_t value) { return static_cast<qlonglong>(value); }
    static std::optional<std::int64_t> decode(const QVariant& stored) {
        switch (stored.typeId()) {
        case QMetaType::Int:
        case QMetaType::LongLong:
        case QMetaType::QString:
            break;
        default:
            return std::nullopt;
        }
        bool isNumber = false;
        const std::int64_t value = stored.toLongLong(&isNumber);
        return isNumber ? std::optional(value) : std::nullopt;
    }
};

template <>
struct Stored<std::string> {
    static QVariant encode(const std::string& value) { return QString::fromStdString(value); }
    static std::optional<std::string> decode(const QVariant& stored) {
        if (stored.typeId() == QMetaType::QString) return stored.toString().toStdString();
        // What QSettings makes of commas that were written by hand, without quotes.
        if (stored.typeId() == QMetaType::QStringList)
            return stored.toStringList().join(',').toStdString();
        return std::nullopt;
    }
};

template <>
struct Stored<Bytes> {
    static QVariant encode(const Bytes& value) {
        return QByteArray(reinterpret_cast<const char*>(value.data()), std::ssize(value));
    }
    static std::optional<Bytes> decode(const QVariant& stored) {
        if (stored.typeId() != QMetaType::QByteArray) return std::nullopt;
        const QByteArray data = stored.toByteArray();
        return Bytes(data.begin(), data.end());
    }
};

template <>
struct Stored<Date> {
    static QVariant encode(Date value) {
        const auto time = std::chrono::floor<std::chrono::milliseconds>(value.time_since_epoch());
        return QDateTime::fromMSecsSinceEpoch(time.count(), Qt::UTC);
    }
    static std::optional<Date> decode(const QVariant& stored) {
        if (stored.typeId() != QMetaType::QDateTime || !stored.toDateTime().isValid())
            return std::nullopt;
        constexpr qint64 latest =
            std::chrono::floor<std::chrono::milliseconds>(Date::max().time_since_epoch()).count();
        const qint64 time = stored.toDateTime().toMSecsSinceEpoch();
        if (time < -latest || time > latest) return std::nullopt; // no Date can hold it
        return Date(std::chrono::milliseconds(time));
    }
};

} // namespace

Settings::Settings() = default;

Settings::Settings(const QString& file) : store_(file, QSettings::IniFormat) {}

QString Settings::path(const std::string& name) {
    return QString::fromStdString(name).replace('.', '/');
}

template <typename Value>
std::optional<Value> Settings::find(const Key<Value>& key) const {
    return Stored<Value>::decode(store_.value(path(key.name)));
}

template <typename Value>
void Settings::set(const Key<Value>& key, const Value& value) {
    if (find(key) == value) return;
    store_.setValue(path(key.name), Stored<Value>::encode(value));
    emit changed(QString::fromStdString(key.name));
}

template std::optional<bool> Settings::find(const Key<bool>&) const;
template std::optional<std::int64_t> Settings::find(const Key<std::int64_t>&) const;
template std::optional<std::string> Settings::find(const Key<std::string>&) const;
template std::optional<Bytes> Settings::find(const Key<Bytes>&) const;
template std::optional<Date> Settings::find(const Key<Date>&) const;
template void Settings::set(const Key<bool>&, const bool&);
template void Settings::set(const Key<std::int64_t>&, const std::int64_t&);
template void Settings::set(const Key<std::string>&, const std::string&);
template void Settings::set(const Key<Bytes>&, const Bytes&);
template void Settings::set(const Key<Date>&, const Date&);

} // namespace tavero
