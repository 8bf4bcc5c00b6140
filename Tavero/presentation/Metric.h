#pragma once

#include "presentation/Color.h"

#include <array>
#include <string_view>

namespace tavero {

// What the machine is measured by. The order is that of every list of metrics.
enum class Metric { cpu, memory, gpu, power, disk, temperature, network };

inline constexpr std::array allMetrics{Metric::cpu,    Metric::memory, Metric::gpu,
                                       Metric::power,  Metric::disk,   Metric::temperature,
                                       Metric::network};

std::string_view rawValue(Metric metric); // the stable name, as settings hold it: "cpu"
std::string_view title(Metric metric);    // what a person reads: "CPU"
std::string_view symbol(Metric metric);   // the name of an icon; a surface maps it to a drawing
AdaptiveColor color(Metric metric);

// The second colour of the network, for the curve of what is sent.
inline constexpr AdaptiveColor uploadColor{{0xD98BB5}, {0xF2A6CF}};

} // namespace tavero
