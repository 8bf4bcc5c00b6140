#pragma once

#include "platform/linux/sound/SoundGraph.h"

#include <array>
#include <cstdint>
#include <optional>

struct spa_pod;

// Volumes as PipeWire's parameters write them.
namespace tavero::PipeWireLevels {

// Of the parameter Props. What it leaves out stays; false if it has no volume.
bool read(const spa_pod* props, SoundLevel& level);

// Of the parameter Route. Absent if it is none.
struct Route {
    std::int32_t profileDevice = 0;
    SoundRoute route;
};
std::optional<Route> readRoute(const spa_pod* param);

// What is to be set: the parts that are there.
struct Change {
    std::optional<std::vector<float>> channels;
    std::optional<bool> isMuted;
};

// The parameters that set it. The memory must live as long as the result is used, which is null if
// it is too small.
using Memory = std::array<std::uint8_t, 2048>;
const spa_pod* props(const Change& change, Memory& memory);
const spa_pod* route(const Change& change, std::int32_t index, std::int32_t profileDevice,
                     Memory& memory);

// What leads from one level to another.
Change between(const std::optional<SoundLevel>& before, const SoundLevel& after);
// Whether two are the same but for the steps of a sound card.
bool isNear(const SoundLevel& one, const SoundLevel& other);

} // namespace tavero::PipeWireLevels
