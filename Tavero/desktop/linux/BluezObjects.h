#pragma once

#include "records/BluetoothSnapshot.h"

#include <QDBusObjectPath>
#include <QMap>
#include <QString>
#include <QVariant>

#include <optional>
#include <string>

namespace tavero {

// All that BlueZ keeps, as org.freedesktop.DBus.ObjectManager tells it: the properties of each
// interface of each object.
using BluezInterfaces = QMap<QString, QVariantMap>;
using BluezObjects = QMap<QDBusObjectPath, BluezInterfaces>;

// Lets D-Bus carry them.
void registerBluezTypes();

// The state of Bluetooth from org.bluez.Adapter1, Device1 and Battery1. Devices are in the order of
// their paths. A property that is missing or of another type than documented is absent.
BluetoothSnapshot bluetoothSnapshot(const BluezObjects& objects);

// The device with this address, a paired one before others. Absent if BlueZ knows none.
std::optional<QString> devicePath(const BluezObjects& objects, const std::string& address);

// The name that others see this machine by. Absent without an adapter.
std::optional<std::string> adapterName(const BluezObjects& objects);

} // namespace tavero
