#pragma once

#include "menubar/MenuBarItemMode.h"
#include "menubar/MenuBarText.h"
#include "monitor/Strain.h"
#include "presentation/Metric.h"

#include <QPolygonF>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace tavero {

// What the items of the menu bar show, decided: the pictures are drawn from these values alone, so
// equal ones need no drawing.

// A metric. What its mode does not show is left at its default.
struct MetricContent {
    Metric metric = Metric::cpu;
    MenuBarItemMode mode = MenuBarItemMode::value;
    std::string name;       // the small one: "MEM"
    bool showsName = false; // over the value or the graph
    std::string value;
    std::string shortValue; // for a square cell
    NetworkRows rows;       // instead of the value; of the network only
    double share = 0;       // of the ring, a fraction
    QPolygonF curve;        // 0 to 1 both ways: time from the left, value from the bottom
    std::string spoken;     // what a screen reader says

    bool showsGraph() const { return mode != MenuBarItemMode::value; }
    bool showsValue() const { return mode != MenuBarItemMode::graph; }

    bool operator==(const MetricContent&) const = default;
};

// A metric before the first sample: its title.
struct TitleContent {
    Metric metric = Metric::cpu;

    bool operator==(const TitleContent&) const = default;
};

// Tavero's mark.
struct MarkContent {
    bool updateReady = false;

    bool operator==(const MarkContent&) const = default;
};

struct SoundContent {
    std::string symbol;

    bool operator==(const SoundContent&) const = default;
};

// A device with its lowest battery.
struct BluetoothBattery {
    std::string name;
    std::string symbol;
    std::int64_t percent = 0;

    bool operator==(const BluetoothBattery&) const = default;
};

struct BluetoothContent {
    std::optional<BluetoothBattery> device; // absent: nothing is connected that tells its charge

    bool operator==(const BluetoothContent&) const = default;
};

using ItemContent =
    std::variant<TitleContent, MetricContent, Strain, MarkContent, SoundContent, BluetoothContent>;

// What a screen reader says.
std::string spokenText(const ItemContent& content);

} // namespace tavero
