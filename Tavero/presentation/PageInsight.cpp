#include "presentation/PageInsight.h"

#include "presentation/MetricReading.h"
#include "presentation/NumberText.h"
#include "presentation/UserApps.h"
#include "records/SaturatingSum.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace tavero {

namespace {

constexpr double busyApp = 0.5;      // cores
constexpr double busyAppShare = 0.4; // of what the whole machine does
constexpr double idleLoad = 0.25;    // fraction
constexpr double hotCelsius = 90;
constexpr double leastGPU = 0.02; // fraction; less is idling
constexpr double fullGPU = 0.9;
constexpr double idleGPU = 0.15;
constexpr double leastWatts = 0.5;
constexpr std::int64_t leastGain = 5;           // minutes
constexpr double almostFull = 0.1;              // of the capacity is free
constexpr double heavyWriting = 5e6;            // bytes a second
constexpr double heavyDownload = 5e6;           // likewise
constexpr double heavyUpload = 2e6;             // likewise
constexpr std::uint64_t muchData = 100'000'000; // bytes

constexpr std::string_view growingNote = "growing"; // how the note of an app that grows begins

// Where the words of the Mac would be wrong on another system.
std::string_view computer(const Surroundings& surroundings) {
    return surroundings.systemName == "macOS" ? "Mac" : "computer";
}

std::string your(const Surroundings& surroundings, std::string_view rest) {
    return "Your " + std::string(computer(surroundings)) + std::string(rest);
}

PageInsight cpuInsight(const LiveSnapshot& snapshot, const Format& format,
                       const Surroundings& surroundings) {
    const std::optional<CPUSnapshot>& cpu = snapshot.cpu;
    const double load = known(cpu ? cpu->total() : 0).value_or(0);
    const auto cores = static_cast<double>(cpu ? std::max<std::size_t>(cpu->perCore.size(), 1) : 1);
    const AppUsage* top =
        highest(userApps(snapshot.apps), [](const AppUsage& app) { return known(app.cpu); });
    // One app is to blame only if it makes up a good part of what the whole machine does.
    if (top && top->cpu >= busyApp && top->cpu >= load * cores * busyAppShare)
        return {top->name + " is busy.",
                top->note ? "It's " + *top->note + " right now. It drops back when it finishes."
                          : "It is using most of the CPU right now."};
    if (load < idleLoad)
        return {your(surroundings, " is mostly idle."),
                (cpu ? percent(cpu->idle) : placeholder) + "% of the CPU is free."};
    const std::optional<double> celsius = known(snapshot.cpuTemperature);
    if (celsius && *celsius >= hotCelsius)
        return {"The CPU is hot.", format.temperature(celsius).joined("") + " right now. " +
                                       surroundings.systemName + " may slow it down to cool off."};
    return {"Normal load.", top ? top->name + " is the busiest app." : ""};
}

// The first app that is said to grow, among the largest and then among the busiest.
const AppUsage* growingApp(const LiveSnapshot& snapshot) {
    for (const std::vector<AppUsage>* list : {&snapshot.memoryHeavyApps, &snapshot.apps})
        for (const AppUsage* app : userApps(*list))
            if (app->note && app->note->starts_with(growingNote)) return app;
    return nullptr;
}

PageInsight memoryInsight(const LiveSnapshot& snapshot, const Format& format,
                          const Surroundings& surroundings) {
    const AppUsage* grower = growingApp(snapshot);
    if (grower && grower->memoryChange.value_or(0) >= 1)
        return {"Memory is rising.",
                grower->name + " grew " +
                    format.bytes(static_cast<std::uint64_t>(*grower->memoryChange)) +
                    " recently. Restarting it usually frees the memory."};
    if (!snapshot.memory) return {"Reading memory…", ""};
    const MemorySnapshot& memory = *snapshot.memory;
    if (memory.pressure == MemoryPressure::normal || memory.pressure == MemoryPressure::unknown)
        return {"Plenty of room.", format.bytes(memory.available()) + " is available for apps."};
    const AppUsage* largest = highest(
        userApps(snapshot.apps), [](const AppUsage& app) { return std::optional(app.memory); });
    const std::string most =
        largest ? largest->name + " is using the most (" + format.bytes(largest->memory) + "). "
                : "";
    return {your(surroundings, " is short on memory."),
            most + "Quitting apps you're not using will help."};
}

PageInsight gpuInsight(const LiveSnapshot& snapshot, const Surroundings& surroundings) {
    const double device = known(snapshot.gpu ? snapshot.gpu->device : 0).value_or(0);
    const AppUsage* top = highest(userApps(snapshot.apps), [](const AppUsage& app) {
        const std::optional<double> gpu = known(app.gpu);
        return gpu && *gpu > leastGPU ? gpu : std::nullopt;
    });
    if (device >= fullGPU)
        return {"The GPU is fully busy.",
                top ? top->name + " is using " + percent(top->gpu) + "% of it."
                    : "Games, video and 3D apps can do this."};
    if (device < idleGPU)
        return {"The GPU is mostly idle.",
                surroundings.systemName + " always uses a little to draw the screen."};
    if (!top) return {"The GPU is working.", ""};
    return {top->name + " is using the GPU most.", percent(top->gpu) + "% right now, " +
                                                       percent(top->gpuAverage) +
                                                       "% on average over the last minute."};
}

// How many minutes longer the battery would last without an app that draws so many watts: what is
// left of the same energy at the lower draw, less the time left now. Absent if there is no telling.
std::optional<std::int64_t> minutesGained(const LiveSnapshot& snapshot, double watts) {
    const std::optional<BatterySnapshot>& battery = snapshot.battery;
    if (!battery || battery->onExternalPower || !battery->minutesToEmpty) return std::nullopt;
    const std::optional<double> draw = powerDraw(snapshot);
    if (!draw || !(*draw > watts)) return std::nullopt;
    const double gain = watts * static_cast<double>(*battery->minutesToEmpty) / (*draw - watts);
    constexpr double most = 1e15; // far beyond any battery, and still a whole number
    if (!(std::abs(gain) < most)) return std::nullopt;
    return static_cast<std::int64_t>(gain);
}

PageInsight powerInsight(const LiveSnapshot& snapshot, const Format& format,
                         const Surroundings& surroundings) {
    const AppUsage* top = highest(userApps(snapshot.apps), [](const AppUsage& app) {
        return std::optional(known(app.watts).value_or(0));
    });
    const double watts = top ? known(top->watts).value_or(0) : 0;
    if (watts < leastWatts)
        return {"Apps are using little power.", "Nothing is drawing much right now."};
    const std::optional<std::int64_t> gain = minutesGained(snapshot, watts);
    if (gain && *gain >= leastGain)
        return {"Quitting " + top->name + " would add about " + format.duration(*gain) +
                    " of battery.",
                "Estimated from its share of your " + std::string(computer(surroundings)) +
                    "'s power use right now."};
    return {top->name + " is using the most power.",
            "About " + fixed(watts, 1) + " W right now (estimated)."};
}

PageInsight diskInsight(const LiveSnapshot& snapshot, const Format& format,
                        const Surroundings& surroundings) {
    const std::optional<std::uint64_t> free = freeSpace(snapshot);
    const std::string space = free ? format.capacity(*free).joined() : "";
    if (free && snapshot.diskCapacity &&
        static_cast<double>(*free) /
                static_cast<double>(std::max<std::int64_t>(*snapshot.diskCapacity, 1)) <
            almostFull)
        return {"Your disk is almost full.",
                space + " left. " + your(surroundings, " slows down when it runs out of space.")};
    const AppUsage* top = highest(userApps(snapshot.apps),
                                  [](const AppUsage& app) { return known(app.diskWriteRate); });
    if (top && top->diskWriteRate >= heavyWriting)
        return {top->name + " is writing a lot.",
                format.rate(top->diskWriteRate).joined() + " right now."};
    return {"The disk is quiet.", free ? space + " free." : ""};
}

// All of them: what the system itself loads counts as well here.
std::vector<const AppUsage*> networkApps(const LiveSnapshot& snapshot) {
    std::vector<const AppUsage*> apps;
    apps.reserve(snapshot.networkApps.size());
    for (const AppUsage& app : snapshot.networkApps) apps.push_back(&app);
    return apps;
}

std::uint64_t networkTotal(const AppUsage& app) {
    return saturatingSum(app.networkInTotal, app.networkOutTotal);
}

// Coarser than the bars of WiFiLink::signal(), for a sentence.
std::string signalWord(std::int64_t rssi) {
    if (rssi > -56) return "Strong";
    if (rssi > -67) return "Good";
    if (rssi > -76) return "Fair";
    return "Weak";
}

bool isWeak(const WiFiLink& wifi) { return wifi.rssi <= -76; }

PageInsight networkInsight(const LiveSnapshot& snapshot, const Format& format) {
    if (snapshot.wifi && isWeak(*snapshot.wifi))
        return {"The Wi-Fi signal is weak.",
                std::to_string(snapshot.wifi->rssi) +
                    " dBm. Moving closer to the router usually speeds things up."};
    const std::vector<const AppUsage*> apps = networkApps(snapshot);
    const AppUsage* top = highest(
        apps, [](const AppUsage& app) { return known(app.networkInRate + app.networkOutRate); });
    const auto mostly = [&](std::string_view otherwise) {
        return top ? "Mostly " + top->name : std::string(otherwise);
    };
    if (known(snapshot.networkInPerSecond).value_or(0) >= heavyDownload)
        return {"Downloading at " + format.rate(snapshot.networkInPerSecond).joined(),
                mostly("Something is pulling in a lot of data right now.")};
    if (known(snapshot.networkOutPerSecond).value_or(0) >= heavyUpload)
        return {"Uploading at " + format.rate(snapshot.networkOutPerSecond).joined(),
                mostly("Backups and cloud sync often do this.")};
    const AppUsage* heaviest =
        highest(apps, [](const AppUsage& app) { return std::optional(networkTotal(app)); });
    if (heaviest && networkTotal(*heaviest) > muchData)
        return {heaviest->name + " has used the most data.",
                format.bytes(networkTotal(*heaviest)) + " since Tavero started."};
    return {"The network is quiet.",
            snapshot.wifi ? signalWord(snapshot.wifi->rssi) + " Wi-Fi signal." : ""};
}

} // namespace

std::optional<PageInsight> insight(Metric metric, const LiveSnapshot& snapshot,
                                   const Format& format, const Surroundings& surroundings) {
    switch (metric) {
    case Metric::cpu:
        return cpuInsight(snapshot, format, surroundings);
    case Metric::memory:
        return memoryInsight(snapshot, format, surroundings);
    case Metric::gpu:
        return gpuInsight(snapshot, surroundings);
    case Metric::power:
        return powerInsight(snapshot, format, surroundings);
    case Metric::disk:
        return diskInsight(snapshot, format, surroundings);
    case Metric::temperature:
        break;
    case Metric::network:
        return networkInsight(snapshot, format);
    }
    return std::nullopt;
}

} // namespace tavero
