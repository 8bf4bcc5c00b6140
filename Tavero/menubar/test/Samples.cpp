#include "menubar/test/Samples.h"

#include "menubar/ExtraMenuBarItem.h"

#include <cmath>

namespace tavero {

namespace {

constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20;
constexpr std::int64_t gigabyte = 1'000'000'000;

void add(std::vector<Sample>& samples, std::string name, ItemContent content) {
    samples.push_back({std::move(name), std::move(content)});
}

} // namespace

LiveSnapshot laptopSnapshot() {
    return {.cpu = CPUSnapshot{.user = 0.31, .system = 0.16},
            .memory = MemorySnapshot{.total = 16384 * mebibyte,
                                     .app = 5100 * mebibyte,
                                     .wired = 1900 * mebibyte,
                                     .compressed = 800 * mebibyte},
            .gpu = GPUSnapshot{.device = 0.08},
            .battery = BatterySnapshot{.percent = 76},
            .cpuTemperature = 53.6,
            .diskAvailable = 312 * gigabyte,
            .diskCapacity = 994 * gigabyte,
            .networkInPerSecond = 2.4 * mebibyte,
            .networkOutPerSecond = 120 * 1024};
}

LiveSnapshot busySnapshot() {
    return {.cpu = CPUSnapshot{.user = 0.86, .system = 0.14},
            .memory = MemorySnapshot{.total = 131072 * mebibyte,
                                     .app = 90000 * mebibyte,
                                     .wired = 20000 * mebibyte,
                                     .compressed = 9000 * mebibyte},
            .gpu = GPUSnapshot{.device = 1},
            .systemWatts = 214.4,
            .cpuTemperature = 101,
            .diskAvailable = 7300 * gigabyte,
            .diskCapacity = 8000 * gigabyte,
            .networkInPerSecond = 118.2 * mebibyte,
            .networkOutPerSecond = 112.9 * mebibyte};
}

std::vector<GraphPoint> wavyHistory() {
    std::vector<GraphPoint> points;
    for (int second = 0; second <= 60; second += 5)
        points.push_back({Date(std::chrono::seconds(second)),
                          0.45 + 0.3 * std::sin(second * 0.22) + 0.2 * std::sin(second * 0.71)});
    return points;
}

std::vector<Sample> metricSamples(Metric metric, const LiveSnapshot& snapshot,
                                  const std::vector<GraphPoint>& history) {
    std::vector<Sample> samples;
    for (const bool showsNames : {true, false})
        for (const auto mode :
             {MenuBarItemMode::value, MenuBarItemMode::graph, MenuBarItemMode::both})
            add(samples,
                std::string(rawValue(metric)) + "-" + std::string(rawValue(mode)) +
                    (showsNames ? "" : "-plain"),
                metricContent(metric, mode, snapshot, history, {.showsNames = showsNames}));
    return samples;
}

std::vector<Sample> otherSamples() {
    std::vector<Sample> samples;
    add(samples, "mark", MarkContent{});
    add(samples, "mark-update", MarkContent{.updateReady = true});
    add(samples, "strain", Strain{"Memory 93%", Metric::memory, "93%"});
    add(samples, "strain-value", Strain{"93%", Metric::memory, "93%"});
    add(samples, "strain-hot", Strain{"Hot", Metric::temperature, "98°C"});
    for (const std::string_view symbol : ExtraMenuBarItem::soundSymbols)
        add(samples, std::string(symbol), SoundContent{std::string(symbol)});
    add(samples, "bluetooth", BluetoothContent{});
    add(samples, "bluetooth-earbuds", BluetoothContent{{{"Earbuds", "airpods", 40}}});
    add(samples, "bluetooth-mouse", BluetoothContent{{{"Mouse", "computermouse", 100}}});
    for (const Metric metric : allMetrics)
        add(samples, "title-" + std::string(rawValue(metric)), TitleContent{metric});
    return samples;
}

std::vector<SampleGroup> sampleGroups() {
    std::vector<SampleGroup> groups;
    for (const Metric metric : allMetrics)
        groups.push_back({std::string(rawValue(metric)),
                          metricSamples(metric, laptopSnapshot(), wavyHistory())});
    groups.push_back({"others", otherSamples()});
    return groups;
}

} // namespace tavero
