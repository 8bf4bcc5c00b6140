#include "presentation/MetricStats.h"

#include "presentation/Levels.h"
#include "presentation/MetricReading.h"
#include "presentation/NumberText.h"
#include "presentation/UserApps.h"

#include <cmath>
#include <string_view>
#include <utility>

namespace tavero {

namespace {

constexpr double hotCelsius = 95;
constexpr double warmCelsius = 85;
constexpr double leastGPU = 0.01;      // fraction; less is idling
constexpr double leastDiskRate = 1024; // bytes a second, likewise
constexpr std::size_t mostOnCard = 4;

std::string whole(std::optional<std::int64_t> number) {
    return number ? std::to_string(*number) : placeholder;
}

std::string temperatureText(const LiveSnapshot& snapshot, const Format& format) {
    const std::optional<double> celsius = known(snapshot.cpuTemperature);
    return celsius ? format.temperature(celsius).joined("") : placeholder;
}

std::optional<AdaptiveColor> temperatureTint(const LiveSnapshot& snapshot) {
    const std::optional<double> celsius = known(snapshot.cpuTemperature);
    if (!celsius || *celsius < warmCelsius) return std::nullopt;
    return *celsius >= hotCelsius ? Levels::danger : Levels::warning;
}

Stat temperatureStat(std::string label, const LiveSnapshot& snapshot, const Format& format) {
    return {.label = std::move(label),
            .value = temperatureText(snapshot, format),
            .tint = temperatureTint(snapshot)};
}

Stat loadStat(const LiveSnapshot& snapshot) {
    return {"Load avg", snapshot.cpu ? fixed(snapshot.cpu->loadAverage.one, 2) : placeholder};
}

std::string withFigure(const AppUsage& app, std::string_view figure) {
    return app.name + " · " + std::string(figure);
}

// Unlike the short form of Format::fans, to the last turn: "2,350 rpm".
std::string fanSpeed(const LiveSnapshot& snapshot, const Format& format) {
    const std::optional<double> rpm = fastestFan(snapshot.fanRPM);
    if (!rpm) return "No fans";
    return grouped(fixed(std::round(*rpm), 0), format.groupSeparator) + " rpm";
}

std::string processCount(const LiveSnapshot& snapshot, const Format& format) {
    if (snapshot.processCount < 1) return placeholder;
    return grouped(std::to_string(snapshot.processCount), format.groupSeparator);
}

std::vector<Stat> cpuStats(const LiveSnapshot& snapshot, const Format& format,
                           const Surroundings& surroundings) {
    return {loadStat(snapshot),
            temperatureStat("Temperature", snapshot, format),
            {"Fans", fanSpeed(snapshot, format)},
            {"Processes", processCount(snapshot, format)},
            {"Uptime", surroundings.uptime.value_or(placeholder)}};
}

std::string largestApp(const LiveSnapshot& snapshot, const Format& format) {
    std::vector<const AppUsage*> apps = userApps(snapshot.memoryHeavyApps);
    for (const AppUsage* app : userApps(snapshot.apps)) apps.push_back(app);
    const AppUsage* app =
        highest(apps, [](const AppUsage& row) { return std::optional(row.memory); });
    return app ? withFigure(*app, format.bytes(app->memory)) : placeholder;
}

std::vector<Stat> memoryStats(const LiveSnapshot& snapshot, const Format& format,
                              const Surroundings& surroundings) {
    const std::optional<MemorySnapshot>& memory = snapshot.memory;
    return {{"Total", memory ? wholeGibibytes(memory->total) + " GB" : placeholder},
            {"Available", memory ? format.bytes(memory->available()) : placeholder},
            {"Apps open", whole(surroundings.openApps)},
            {"Largest app", largestApp(snapshot, format), true}};
}

std::string busiestGPUApp(const LiveSnapshot& snapshot) {
    const AppUsage* app = highest(userApps(snapshot.apps), [](const AppUsage& row) {
        const std::optional<double> gpu = known(row.gpu);
        return gpu && *gpu > leastGPU ? gpu : std::nullopt;
    });
    return app ? withFigure(*app, percent(app->gpu) + "%") : "None";
}

std::vector<Stat> gpuStats(const LiveSnapshot& snapshot, const Format& format,
                           const Surroundings& surroundings) {
    return {temperatureStat("Temperature", snapshot, format),
            {"Cores", whole(snapshot.gpu ? snapshot.gpu->cores : std::nullopt)},
            {"Displays", whole(surroundings.displays)},
            {"Busiest app", busiestGPUApp(snapshot), true}};
}

std::string batteryTime(const BatterySnapshot& battery, const Format& format) {
    if (!battery.isCharging && battery.onExternalPower) return "On power";
    const std::optional<std::int64_t> minutes =
        battery.isCharging ? battery.minutesToFull : battery.minutesToEmpty;
    return minutes ? format.duration(*minutes) : "Estimating…";
}

std::vector<Stat> powerStats(const LiveSnapshot& snapshot, const Format& format) {
    const std::optional<double> watts = powerDraw(snapshot);
    const Stat draw{"Power draw", watts ? fixed(watts, 1) + " W" : placeholder};
    if (!snapshot.battery)
        return {{"Time left", placeholder},
                draw,
                {"Charger", placeholder},
                {"Cycle count", placeholder}};
    const BatterySnapshot& battery = *snapshot.battery;
    return {{battery.isCharging ? "Full in" : "Time left", batteryTime(battery, format)},
            draw,
            {"Charger", battery.onExternalPower ? "Connected" : "Not connected"},
            {"Cycle count", whole(battery.cycleCount)}};
}

std::string busiestDiskApp(const LiveSnapshot& snapshot, const Format& format) {
    const auto rate = [](const AppUsage& row) {
        return known(row.diskReadRate + row.diskWriteRate);
    };
    const AppUsage* app = highest(userApps(snapshot.apps), rate);
    if (!app || !(*rate(*app) > leastDiskRate)) return "None";
    return withFigure(*app, format.rate(*rate(*app)).joined());
}

std::vector<Stat> diskStats(const LiveSnapshot& snapshot, const Format& format) {
    return {{"Read", format.rate(snapshot.diskReadPerSecond).joined()},
            {"Write", format.rate(snapshot.diskWritePerSecond).joined()},
            {"Busiest app", busiestDiskApp(snapshot, format), true}};
}

std::vector<Stat> temperatureStats(const LiveSnapshot& snapshot, const Format& format) {
    return {{"CPU", temperatureText(snapshot, format)}, {"Fan", format.fans(snapshot.fanRPM)}};
}

std::string connectionText(const LiveSnapshot& snapshot) {
    const bool namesStandard = snapshot.connection == ConnectionKind::wifi && snapshot.wifi;
    const std::string kind(title(snapshot.connection));
    return namesStandard ? snapshot.wifi->standard.value_or(kind) : kind;
}

Stat uploadStat(const LiveSnapshot& snapshot, const Format& format) {
    return {"Upload", format.rate(snapshot.networkOutPerSecond).joined()};
}

std::vector<Stat> networkStats(const LiveSnapshot& snapshot, const Format& format) {
    Stat connection{"Connection", connectionText(snapshot)};
    if (!snapshot.wifi) connection.icon = "network";
    return {uploadStat(snapshot, format), std::move(connection)};
}

std::vector<Stat> cpuCard(const LiveSnapshot& snapshot, const Format& format) {
    const std::optional<CPUSnapshot>& cpu = snapshot.cpu;
    return {{"User", (cpu ? percent(cpu->user) : placeholder) + "%"},
            {"System", (cpu ? percent(cpu->system) : placeholder) + "%"},
            loadStat(snapshot),
            temperatureStat("Temp", snapshot, format)};
}

std::vector<Stat> networkCard(const LiveSnapshot& snapshot, const Format& format) {
    return {{"Download", format.rate(snapshot.networkInPerSecond).joined()},
            uploadStat(snapshot, format),
            {"Downloaded", format.capacity(snapshot.networkInTotal).joined()},
            {"Uploaded", format.capacity(snapshot.networkOutTotal).joined()}};
}

} // namespace

std::vector<Stat> stats(Metric metric, const LiveSnapshot& snapshot, const Format& format,
                        const Surroundings& surroundings) {
    switch (metric) {
    case Metric::cpu:
        return cpuStats(snapshot, format, surroundings);
    case Metric::memory:
        return memoryStats(snapshot, format, surroundings);
    case Metric::gpu:
        return gpuStats(snapshot, format, surroundings);
    case Metric::power:
        return powerStats(snapshot, format);
    case Metric::disk:
        return diskStats(snapshot, format);
    case Metric::temperature:
        return temperatureStats(snapshot, format);
    case Metric::network:
        return networkStats(snapshot, format);
    }
    return {};
}

std::vector<Stat> overviewStats(Metric metric, const LiveSnapshot& snapshot, const Format& format,
                                const Surroundings& surroundings) {
    if (metric == Metric::cpu) return cpuCard(snapshot, format);
    if (metric == Metric::network) return networkCard(snapshot, format);
    std::vector<Stat> card = stats(metric, snapshot, format, surroundings);
    if (card.size() > mostOnCard) card.resize(mostOnCard);
    return card;
}

} // namespace tavero
