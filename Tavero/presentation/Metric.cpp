#include "presentation/Metric.h"

namespace tavero {

namespace {

struct Row {
    std::string_view rawValue;
    std::string_view title;
    std::string_view symbol;
    AdaptiveColor color;
};

constexpr Row table[] = {
    {"cpu", "CPU", "cpu", {{0x2772AF}, {0x5FB0F2}}},
    {"memory", "Memory", "memorychip", {{0xE0782A}, {0xFF9F45}}},
    {"gpu", "GPU", "cube.transparent", {{0x8A44D4}, {0xB27CFF}}},
    {"power", "Power", "bolt.fill", {{0x2F8F46}, {0x4CD07D}}},
    {"disk", "Disk", "internaldrive", {{0x1A8A7C}, {0x2EC4B0}}},
    {"temperature", "Temperature", "thermometer.medium", {{0xBC4C2A}, {0xF2815F}}},
    {"network", "Network", "arrow.up.arrow.down", {{0x5048C4}, {0x8079FF}}},
};
static_assert(std::size(table) == allMetrics.size());

const Row& row(Metric metric) { return table[static_cast<std::size_t>(metric)]; }

} // namespace

std::string_view rawValue(Metric metric) { return row(metric).rawValue; }
std::string_view title(Metric metric) { return row(metric).title; }
std::string_view symbol(Metric metric) { return row(metric).symbol; }
AdaptiveColor color(Metric metric) { return row(metric).color; }

} // namespace tavero
