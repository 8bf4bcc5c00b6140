#include "platform/mac/hardware/GPUReader.h"

#include "records/SaturatingSum.h"

#include <charconv>
#include <string>
#include <system_error>

namespace tavero::GPUReader {

namespace {

double fraction(const PropertyMap& statistics, std::string_view key) {
    return static_cast<double>(intValue(statistics, key).value_or(0)) / 100.0;
}

std::uint64_t bytes(const PropertyMap& statistics, std::string_view key) {
    return uint64Value(statistics, key).value_or(0);
}

// Absent if the list holds anything but dictionaries; one of them without a time adds none.
std::optional<std::uint64_t> total(const PropertyList& usage) {
    std::uint64_t total = 0;
    for (const PropertyValue& entry : usage) {
        const auto* properties = std::get_if<PropertyMap>(&entry.value);
        if (properties == nullptr) return std::nullopt;
        total = saturatingSum(total, uint64Value(*properties, "accumulatedGPUTime").value_or(0));
    }
    return total;
}

} // namespace

std::optional<GPUSnapshot> read(const PropertyMap& accelerator) {
    const PropertyMap* statistics = mapValue(accelerator, "PerformanceStatistics");
    if (statistics == nullptr) return std::nullopt;
    return GPUSnapshot{
        .device = fraction(*statistics, "Device Utilization %"),
        .renderer = fraction(*statistics, "Renderer Utilization %"),
        .tiler = fraction(*statistics, "Tiler Utilization %"),
        .memoryInUse = bytes(*statistics, "In use system memory"),
        .memoryAllocated = bytes(*statistics, "Alloc system memory"),
        .cores = intValue(accelerator, "gpu-core-count"),
    };
}

std::unordered_map<std::int32_t, std::uint64_t> times(std::span<const PropertyMap> clients) {
    std::unordered_map<std::int32_t, std::uint64_t> times;
    for (const PropertyMap& client : clients) {
        const std::string* text = textValue(client, "IOUserClientCreator");
        const PropertyList* usage = listValue(client, "AppUsage");
        if (text == nullptr || usage == nullptr) continue;
        const std::optional<std::int32_t> pid = creator(*text);
        const std::optional<std::uint64_t> time = total(*usage);
        if (pid && time) times[*pid] = saturatingSum(times[*pid], *time);
    }
    return times;
}

std::optional<std::int32_t> creator(std::string_view text) {
    constexpr std::string_view prefix = "pid ";
    if (!text.starts_with(prefix)) return std::nullopt;
    text.remove_prefix(prefix.size());
    if (text.starts_with('-')) return std::nullopt; // the only sign that from_chars would take
    std::int32_t pid = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), pid);
    return parsed.ec == std::errc() ? std::optional(pid) : std::nullopt;
}

} // namespace tavero::GPUReader
