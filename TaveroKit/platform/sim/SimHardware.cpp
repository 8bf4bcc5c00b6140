#include "platform/sim/SimHardware.h"

#include "platform/sim/SimState.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace tavero {

namespace {

constexpr std::int64_t designCapacity = 4563; // mAh
constexpr std::int64_t fullCapacity = 4381;
constexpr std::int64_t unknownMinutes = 65535;
constexpr std::size_t dieCount = 12; // one a CPU, the others in the GPU
constexpr double megabyte = 1024.0 * 1024;

std::int64_t whole(double number) { return std::llround(number); }

std::int64_t minutes(double joules, double watts) {
    return watts > 0 ? std::max<std::int64_t>(whole(joules / watts / 60), 1) : unknownMinutes;
}

struct Battery {
    std::int64_t percent;
    bool isCharging;
    std::int64_t voltage; // mV
    std::int64_t current; // mA
    std::int64_t minutesToEmpty;
    std::int64_t minutesToFull;
};

Battery battery(const SimLoad& load) {
    const double flow = load.onExternalPower ? load.chargingWatts : -load.watts;
    const double voltage = 11'050 + 1'600 * load.charge;
    const bool isCharging = load.onExternalPower && load.chargingWatts > 0;
    return {
        .percent = whole(100 * load.charge),
        .isCharging = isCharging,
        .voltage = whole(voltage),
        .current = whole(flow * 1e6 / voltage),
        .minutesToEmpty = load.onExternalPower
                              ? unknownMinutes
                              : minutes(load.charge * simBatteryJoules, load.warmth),
        .minutesToFull = isCharging
                             ? minutes((1 - load.charge) * simBatteryJoules, load.chargingWatts)
                             : unknownMinutes,
    };
}

PropertyMap driver(const SimLoad& load, const Battery& battery) {
    return {
        {"AppleRawCurrentCapacity", {whole(load.charge * fullCapacity)}},
        {"AppleRawMaxCapacity", {fullCapacity}},
        {"AvgTimeToEmpty", {battery.minutesToEmpty}},
        {"AvgTimeToFull", {battery.minutesToFull}},
        {"BatteryData", {PropertyMap{{"DesignCapacity", {designCapacity}}}}},
        {"BatteryInstalled", {true}},
        {"CurrentCapacity", {battery.percent}},
        {"CycleCount", {std::int64_t{187}}},
        {"ExternalConnected", {load.onExternalPower}},
        {"InstantAmperage", {battery.current}},
        {"IsCharging", {battery.isCharging}},
        {"Temperature", {whole(100 * (27 + 0.35 * load.warmth))}},
        {"Voltage", {battery.voltage}},
    };
}

PropertyMap powerSource(const SimLoad& load, const Battery& battery) {
    const auto listed = [](std::int64_t time) { return time == unknownMinutes ? -1 : time; };
    return {
        {"Type", {std::string("InternalBattery")}},
        {"Name", {std::string("InternalBattery-0")}},
        {"Power Source State", {std::string(load.onExternalPower ? "AC Power" : "Battery Power")}},
        {"Current Capacity", {battery.percent}},
        {"Max Capacity", {std::int64_t{100}}},
        {"Is Charging", {battery.isCharging}},
        {"Time to Empty", {listed(battery.minutesToEmpty)}},
        {"Time to Full Charge", {listed(battery.minutesToFull)}},
    };
}

PropertyMap accelerator(const SimLoad& load) {
    const double inUse = (500 + 60 * static_cast<double>(load.gpuClients.size()) + 400 * load.gpu);
    const PropertyMap statistics{
        {"Device Utilization %", {whole(100 * load.gpu)}},
        {"Renderer Utilization %", {whole(94 * load.gpu)}},
        {"Tiler Utilization %", {whole(31 * load.gpu)}},
        {"In use system memory", {whole(inUse * megabyte)}},
        {"Alloc system memory", {whole((inUse + 1800) * megabyte)}},
    };
    return {{"gpu-core-count", {std::int64_t{10}}}, {"PerformanceStatistics", {statistics}}};
}

PropertyMap userClient(const SimGPUClient& client) {
    const PropertyMap usage{
        {"API", {std::string("Metal")}},
        {"accumulatedGPUTime", {static_cast<std::int64_t>(client.nanoseconds)}}};
    return {{"IOUserClientCreator", {"pid " + std::to_string(client.pid) + ", " + client.name}},
            {"AppUsage", {PropertyList{{usage}}}}};
}

std::vector<SimSensor> sensors(const SimLoad& load) {
    const double inside = 36 + 1.1 * load.warmth;
    std::vector<SimSensor> sensors;
    for (std::size_t die = 0; die < dieCount; ++die) {
        const double own = die < load.cores.size() ? 14 * load.cores[die] : 12 * load.gpu;
        const double place = 0.3 * static_cast<double>(die % 5); // some lie nearer to the fans
        sensors.push_back({"PMU tdie" + std::to_string(die + 1), inside + own + place});
    }
    for (int device = 1; device <= 5; ++device)
        sensors.push_back({"PMU tdev" + std::to_string(device), inside - 4 - device});
    sensors.push_back({"PMU tcal", 51.85});
    sensors.push_back({"NAND CH0 temp", 29 + 0.5 * load.warmth});
    sensors.push_back({"gas gauge battery", 27.2 + 0.35 * load.warmth});
    return sensors;
}

} // namespace

void SimHardware::setController(const std::string& key, float value) {
    const auto bytes = std::as_bytes(std::span(&value, 1));
    controller[key] = {.type = "flt ", .bytes = {bytes.begin(), bytes.end()}};
}

void SimHardware::setController(const std::string& key, std::uint8_t value) {
    controller[key] = {.type = "ui8 ", .bytes = {static_cast<std::byte>(value)}};
}

void SimState::setHardware(const SimLoad& load) {
    onExternalPower = load.onExternalPower;
    const Battery now = battery(load);
    services["AppleSmartBattery"] = {driver(load, now)};
    hardware.powerSources = {powerSource(load, now)};

    services["IOAccelerator"] = {accelerator(load)};
    std::vector<PropertyMap>& clients = children["IOAccelerator"];
    clients.clear();
    for (const SimGPUClient& client : load.gpuClients) clients.push_back(userClient(client));

    const double rpm = 1350 + 140 * std::clamp(load.warmth - 7, 0.0, 30.0);
    hardware.setController("FNum", std::uint8_t{2});
    hardware.setController("F0Ac", static_cast<float>(rpm));
    hardware.setController("F1Ac", static_cast<float>(1.07 * rpm));
    hardware.setController("PSTR", static_cast<float>(load.watts));
    const double fromCharger = load.onExternalPower ? load.watts + load.chargingWatts : 0;
    hardware.setController("PDTR", static_cast<float>(fromCharger));
    hardware.setController("PPBR", static_cast<float>(load.watts - fromCharger));
    hardware.sensors = sensors(load);
}

} // namespace tavero
