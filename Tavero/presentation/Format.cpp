#include "presentation/Format.h"

#include "presentation/NumberText.h"

namespace tavero {

namespace {

constexpr double mebibyte = 1024.0 * 1024;
constexpr double gibibyte = 1024 * mebibyte;
constexpr double gigabyte = 1e9;

// A rate in the user's choice of bits or bytes. The thresholds are also the divisors.
struct Scaled {
    double amount;
    double kilo;
    double mega;

    bool isMega() const { return amount >= mega; }
    std::string digits() const {
        return isMega() ? fixed(amount / mega, 1) : fixed(amount / kilo, 0);
    }
};

Scaled scaled(double bytesPerSecond, bool bits) {
    return bits ? Scaled{bytesPerSecond * 8, 1e3, 1e6} : Scaled{bytesPerSecond, 1024, mebibyte};
}

} // namespace

std::string Measure::joined(std::string_view between) const {
    return value + std::string(between) + unit;
}

std::string Format::bytes(std::uint64_t bytes) const {
    const double amount = static_cast<double>(bytes);
    return amount < gibibyte ? fixed(amount / mebibyte, 0) + " MB" : gibibytes(bytes) + " GB";
}

Measure Format::capacity(std::uint64_t bytes) const {
    const double amount = static_cast<double>(bytes) / gigabyte;
    if (amount >= 1000) return {fixed(amount / 1000, 1), "TB"};
    return {fixed(amount, amount >= 100 ? 0 : 1), "GB"};
}

Measure Format::rate(double bytesPerSecond) const {
    const Scaled rate = scaled(bytesPerSecond, networkBits);
    const std::string unit = networkBits ? "b/s" : "B/s";
    return {rate.digits(), (rate.isMega() ? "M" : "K") + unit};
}

std::string Format::shortRate(double bytesPerSecond) const {
    const Scaled rate = scaled(bytesPerSecond, networkBits);
    return rate.digits() + (rate.isMega() ? "M" : "K");
}

std::string Format::duration(std::int64_t minutes) const {
    if (minutes < 60) return std::to_string(minutes) + " m";
    return std::to_string(minutes / 60) + " h " + std::to_string(minutes % 60) + " m";
}

std::string Format::batteryStatus(const BatterySnapshot& battery) const {
    if (battery.isCharging)
        return battery.minutesToFull ? "Full in " + duration(*battery.minutesToFull)
                                     : "Charging · estimating time to full…";
    if (battery.onExternalPower) return battery.percent < 99 ? "Plugged in" : "Fully charged";
    return battery.minutesToEmpty ? duration(*battery.minutesToEmpty) + " left"
                                  : "Estimating time left…";
}

Measure Format::temperature(std::optional<double> celsius) const {
    if (celsius && fahrenheit) celsius = *celsius * 9 / 5 + 32;
    return {fixed(celsius, 0), fahrenheit ? "°F" : "°C"};
}

std::string Format::fans(const std::vector<double>& rpm) const {
    const std::optional<double> speed = fastestFan(rpm);
    if (!speed) return "No fans";
    return *speed >= 1000 ? fixed(*speed / 1000, 1) + "k rpm" : fixed(*speed, 0) + " rpm";
}

std::optional<double> fastestFan(const std::vector<double>& rpm) {
    std::optional<double> fastest;
    for (const double speed : rpm)
        if (known(speed) && (!fastest || speed > *fastest)) fastest = speed;
    return fastest;
}

} // namespace tavero
