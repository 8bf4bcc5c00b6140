#include "hardware/SensorReader.h"

#include "apps/Text.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string_view>
#include <utility>

namespace tavero {

namespace {

constexpr std::int64_t fullEvery = 12; // reads
constexpr std::size_t hottestCount = 4;
// Celsius; what a sensor shows that is off, or broken, lies outside.
constexpr double coldest = 1.0;
constexpr double hottest = 150.0;

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

bool isDie(std::string_view name) { return contains(name, "tdie"); }

bool isBattery(std::string_view name) { return contains(lowerCase(name), "battery"); }

} // namespace

SensorReader::SensorReader(SensorSource& source) : source_(source) {
    std::vector<std::string> names = source.sensors();
    for (std::size_t index = 0; index < names.size(); ++index) {
        const bool die = isDie(names[index]);
        if (die || isBattery(names[index]))
            sensors_.push_back({.name = std::move(names[index]), .index = index, .isDie = die});
    }
}

TemperatureSnapshot SensorReader::read() {
    const bool full = hottest_.empty() || reads_ % fullEvery == 0;
    ++reads_;
    const std::vector<Reading> readings = ask(full ? everySensor() : hottestDiesAndOthers());
    if (full) hottest_ = hottestDies(readings);

    TemperatureSnapshot snapshot;
    snapshot.all.reserve(readings.size());
    for (const Reading& reading : readings)
        snapshot.all.push_back({.name = sensors_[reading.sensor].name, .celsius = reading.celsius});
    return snapshot;
}

std::vector<std::size_t> SensorReader::everySensor() const {
    std::vector<std::size_t> all(sensors_.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    return all;
}

std::vector<std::size_t> SensorReader::hottestDiesAndOthers() const {
    std::vector<std::size_t> chosen = hottest_;
    for (std::size_t sensor = 0; sensor < sensors_.size(); ++sensor)
        if (!sensors_[sensor].isDie) chosen.push_back(sensor);
    return chosen;
}

std::vector<SensorReader::Reading> SensorReader::ask(const std::vector<std::size_t>& sensors) {
    std::vector<Reading> readings;
    readings.reserve(sensors.size());
    for (const std::size_t sensor : sensors) {
        const std::optional<double> celsius = source_.celsius(sensors_[sensor].index);
        if (celsius && *celsius > coldest && *celsius < hottest)
            readings.push_back({.sensor = sensor, .celsius = *celsius});
    }
    return readings;
}

std::vector<std::size_t> SensorReader::hottestDies(std::vector<Reading> readings) const {
    std::erase_if(readings, [&](const Reading& r) { return !sensors_[r.sensor].isDie; });
    std::stable_sort(readings.begin(), readings.end(),
                     [](const Reading& a, const Reading& b) { return a.celsius > b.celsius; });
    if (readings.size() > hottestCount) readings.resize(hottestCount);
    std::vector<std::size_t> dies;
    dies.reserve(readings.size());
    for (const Reading& reading : readings) dies.push_back(reading.sensor);
    return dies;
}

} // namespace tavero
