#include "menubar/MenuBarText.h"

#include "presentation/MetricReading.h"
#include "presentation/NumberText.h"

#include <algorithm>
#include <cstddef>

namespace tavero {

namespace {

std::string powerValue(const LiveSnapshot& snapshot) {
    if (snapshot.battery) return std::to_string(snapshot.battery->percent) + "%";
    return known(snapshot.systemWatts) ? fixed(snapshot.systemWatts, 0) + " W" : placeholder;
}

std::string diskValue(const LiveSnapshot& snapshot, const Format& format) {
    const std::optional<std::uint64_t> free = freeSpace(snapshot);
    return free ? format.capacity(*free).joined() : placeholder;
}

std::string temperatureValue(const LiveSnapshot& snapshot, const Format& format) {
    const std::optional<double> celsius = known(snapshot.cpuTemperature);
    return celsius ? format.temperature(celsius).joined("") : placeholder;
}

void removeEnd(std::string& text, std::string_view end) {
    if (text.ends_with(end)) text.resize(text.size() - end.size());
}

} // namespace

std::string menuBarValue(Metric metric, const LiveSnapshot& snapshot, const Format& format) {
    switch (metric) {
    case Metric::cpu:
        return (snapshot.cpu ? percent(snapshot.cpu->total()) : placeholder) + "%";
    case Metric::memory:
        return snapshot.memory ? gibibytes(snapshot.memory->used()) + " GB" : placeholder;
    case Metric::gpu:
        return (snapshot.gpu ? percent(snapshot.gpu->device) : placeholder) + "%";
    case Metric::power:
        return powerValue(snapshot);
    case Metric::disk:
        return diskValue(snapshot, format);
    case Metric::temperature:
        return temperatureValue(snapshot, format);
    case Metric::network:
        return networkRows(snapshot, format).down;
    }
    return "";
}

std::string shortMenuBarValue(Metric metric, const LiveSnapshot& snapshot, const Format& format) {
    std::string text = menuBarValue(metric, snapshot, format);
    if (metric == Metric::memory) removeEnd(text, " GB");
    if (metric == Metric::disk) removeEnd(text, "B"); // "494 G", for it may be "1.2 T" as well
    if (metric == Metric::temperature && text != placeholder) text.pop_back(); // the C or the F
    removeEnd(text, "%");
    std::erase(text, ' ');
    return text;
}

NetworkRows networkRows(const LiveSnapshot& snapshot, const Format& format) {
    return {.up = "↑ " + format.shortRate(snapshot.networkOutPerSecond),
            .down = "↓ " + format.shortRate(snapshot.networkInPerSecond)};
}

std::string_view smallName(Metric metric, const LiveSnapshot& snapshot) {
    switch (metric) {
    case Metric::cpu:
        return "CPU";
    case Metric::memory:
        return "MEM";
    case Metric::gpu:
        return "GPU";
    case Metric::power:
        return snapshot.battery ? "BATT" : "POWER";
    case Metric::disk:
        return "DISK";
    case Metric::temperature:
        return "TEMP";
    case Metric::network:
        return "NET";
    }
    return "";
}

std::string spokenText(Metric metric, const LiveSnapshot& snapshot, const Format& format) {
    const std::string name = std::string(title(metric)) + " ";
    if (metric != Metric::network) return name + menuBarValue(metric, snapshot, format);
    return name + "up " + format.shortRate(snapshot.networkOutPerSecond) + ", down " +
           format.shortRate(snapshot.networkInPerSecond);
}

std::string digitsAsEights(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }, '8');
    return text;
}

} // namespace tavero
