#include "presentation/Stat.h"

#include <algorithm>
#include <iterator>

namespace tavero {

namespace {

struct LabelSymbol {
    std::string_view label;
    std::string_view symbol;
};

constexpr LabelSymbol symbols[] = {
    {"Load avg", "gauge.with.dots.needle.33percent"},
    {"Temperature", "thermometer.medium"},
    {"Fans", "fan"},
    {"Processes", "square.stack.3d.up"},
    {"Uptime", "clock"},
    {"Total", "memorychip"},
    {"Available", "checkmark.circle"},
    {"Largest app", "macwindow"},
    {"Apps open", "square.on.square"},
    {"Cores", "cpu"},
    {"Displays", "display"},
    {"Busiest app", "flame"},
    {"Time left", "hourglass"},
    {"Full in", "hourglass"},
    {"Power draw", "bolt"},
    {"Charger", "powerplug"},
    {"Cycle count", "arrow.triangle.2.circlepath"},
    {"Read", "arrow.down.doc"},
    {"Write", "square.and.pencil"},
    {"Upload", "arrow.up"},
    {"Connection", "wifi"},
    {"Paired", "link"},
    {"Discoverable", "eye"},
    {"Bluetooth name", "laptopcomputer"},
    {"Lowest battery", "battery.25percent"},
};

} // namespace

std::string_view Stat::symbol() const {
    if (icon) return *icon;
    const auto found = std::find_if(std::begin(symbols), std::end(symbols),
                                    [&](const LabelSymbol& row) { return row.label == label; });
    return found == std::end(symbols) ? "circle.fill" : found->symbol;
}

std::vector<std::string_view> labelsWithSymbols() {
    std::vector<std::string_view> labels;
    labels.reserve(std::size(symbols));
    for (const LabelSymbol& row : symbols) labels.push_back(row.label);
    return labels;
}

} // namespace tavero
