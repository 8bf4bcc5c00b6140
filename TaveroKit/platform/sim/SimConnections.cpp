#include "platform/sim/SimConnections.h"

namespace tavero {

namespace {

// Of two streams over 160 MHz.
double transmitRate(std::int64_t rssi) {
    if (rssi >= -52) return 2401.9;
    if (rssi >= -56) return 2161.7;
    return 1921.5;
}

} // namespace

void SimConnections::set(std::uint64_t number, std::int32_t pid, const std::string& name,
                         const NetworkBytes& bytes) {
    // The service hands out numbers of 64 signed bits.
    open[number] = {{"processID", {std::int64_t{pid}}},
                    {"epid", {std::int64_t{pid}}},
                    {"processName", {name}},
                    {"rxBytes", {static_cast<std::int64_t>(bytes.received)}},
                    {"txBytes", {static_cast<std::int64_t>(bytes.sent)}}};
}

void SimConnections::setSignal(std::int64_t rssi) {
    wifi = {.isPowerOn = true};
    if (rssi == 0) return;
    wifi->rssi = rssi;
    wifi->transmitRate = transmitRate(rssi);
    wifi->phyMode = 6;
    wifi->channelBand = 3;
}

} // namespace tavero
