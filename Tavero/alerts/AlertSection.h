#pragma once

#include "alerts/AlertKind.h"
#include "presentation/Section.h"

namespace tavero {

// The page that tells more about an alert.
constexpr Section section(AlertKind kind) {
    switch (kind) {
    case AlertKind::appCPU:
    case AlertKind::hotMac:
    case AlertKind::throttling:
        return Section::cpu;
    case AlertKind::memoryGrowing:
    case AlertKind::memoryPressure:
    case AlertKind::restart:
        return Section::memory;
    case AlertKind::diskWrites:
    case AlertKind::diskFull:
        return Section::disk;
    case AlertKind::bluetoothBattery:
        return Section::bluetooth;
    case AlertKind::microphone:
        return Section::sound;
    case AlertKind::heavyOnBattery:
    case AlertKind::macBattery:
    case AlertKind::charged:
        return Section::power;
    case AlertKind::gpuBusy:
        return Section::gpu;
    case AlertKind::appCrashed:
        return Section::overview;
    case AlertKind::offline:
        return Section::network;
    }
    return Section::overview;
}

} // namespace tavero
