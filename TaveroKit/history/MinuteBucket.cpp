#include "history/MinuteBucket.h"

#include <cmath>

namespace tavero {

namespace {

// The size of the flow: a battery counts its own direction.
std::optional<double> watts(const LiveSnapshot& snapshot) {
    if (snapshot.systemWatts) return snapshot.systemWatts;
    if (!snapshot.battery || !snapshot.battery->watts) return std::nullopt;
    return std::abs(*snapshot.battery->watts);
}

} // namespace

void Average::add(std::optional<double> value) {
    if (!value || !std::isfinite(*value)) return;
    sum_ += *value;
    count_ += 1;
}

std::optional<double> Average::value() const {
    if (count_ < 1) return std::nullopt;
    return sum_ / static_cast<double>(count_);
}

void MinuteBucket::add(const LiveSnapshot& snapshot) {
    if (snapshot.cpu) cpu.add(snapshot.cpu->total());
    if (snapshot.memory) memory.add(static_cast<double>(snapshot.memory->used()));
    if (snapshot.gpu) gpu.add(snapshot.gpu->device);
    watts.add(tavero::watts(snapshot));
    if (snapshot.battery) battery.add(static_cast<double>(snapshot.battery->percent));
    diskRead.add(snapshot.diskReadPerSecond);
    diskWrite.add(snapshot.diskWritePerSecond);
    netIn.add(snapshot.networkInPerSecond);
    netOut.add(snapshot.networkOutPerSecond);
}

} // namespace tavero
