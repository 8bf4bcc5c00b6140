#include "platform/linux/sound/PipeWireLevels.h"

#include <spa/param/props.h>
#include <spa/param/route.h>
#include <spa/pod/builder.h>
#include <spa/pod/iter.h>
#include <spa/pod/parser.h>
#include <spa/utils/type.h>

#include <cmath>

namespace tavero::PipeWireLevels {

namespace {

constexpr std::uint32_t mostChannels = 64;
constexpr float step = 0.005F;

void add(spa_pod_builder& builder, const Change& change) {
    spa_pod_frame frame{};
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_Props, SPA_PARAM_Props);
    if (change.isMuted) {
        spa_pod_builder_prop(&builder, SPA_PROP_mute, 0);
        spa_pod_builder_bool(&builder, *change.isMuted);
    }
    if (change.channels) {
        spa_pod_builder_prop(&builder, SPA_PROP_channelVolumes, 0);
        spa_pod_builder_array(&builder, sizeof(float), SPA_TYPE_Float,
                              static_cast<std::uint32_t>(change.channels->size()),
                              change.channels->data());
    }
    spa_pod_builder_pop(&builder, &frame);
}

const spa_pod* finished(const spa_pod_builder& builder, const Memory& memory) {
    if (builder.state.offset > memory.size()) return nullptr;
    return reinterpret_cast<const spa_pod*>(memory.data());
}

spa_pod_builder builderIn(Memory& memory) {
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), static_cast<std::uint32_t>(memory.size()));
    return builder;
}

} // namespace

bool read(const spa_pod* props, SoundLevel& level) {
    if (!props || !spa_pod_is_object_type(props, SPA_TYPE_OBJECT_Props)) return false;
    if (const spa_pod_prop* mute = spa_pod_find_prop(props, nullptr, SPA_PROP_mute)) {
        bool isMuted = false;
        if (spa_pod_get_bool(&mute->value, &isMuted) >= 0) level.isMuted = isMuted;
    }
    const spa_pod_prop* volumes = spa_pod_find_prop(props, nullptr, SPA_PROP_channelVolumes);
    if (!volumes || !spa_pod_is_array(&volumes->value)) return false;
    std::array<float, mostChannels> channels;
    const std::uint32_t count =
        spa_pod_copy_array(&volumes->value, SPA_TYPE_Float, channels.data(), mostChannels);
    if (count == 0) return false;
    level.channels.assign(channels.begin(), channels.begin() + count);
    return true;
}

std::optional<Route> readRoute(const spa_pod* param) {
    if (!param || !spa_pod_is_object_type(param, SPA_TYPE_OBJECT_ParamRoute)) return std::nullopt;
    const spa_pod_prop* index = spa_pod_find_prop(param, nullptr, SPA_PARAM_ROUTE_index);
    const spa_pod_prop* device = spa_pod_find_prop(param, nullptr, SPA_PARAM_ROUTE_device);
    const spa_pod_prop* inner = spa_pod_find_prop(param, nullptr, SPA_PARAM_ROUTE_props);
    Route told;
    if (!index || !device || spa_pod_get_int(&index->value, &told.route.index) < 0 ||
        spa_pod_get_int(&device->value, &told.profileDevice) < 0)
        return std::nullopt;
    if (inner) read(&inner->value, told.route.level);
    return told;
}

const spa_pod* props(const Change& change, Memory& memory) {
    spa_pod_builder builder = builderIn(memory);
    add(builder, change);
    return finished(builder, memory);
}

const spa_pod* route(const Change& change, std::int32_t index, std::int32_t profileDevice,
                     Memory& memory) {
    spa_pod_builder builder = builderIn(memory);
    spa_pod_frame frame{};
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_ParamRoute, SPA_PARAM_Route);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_index, 0);
    spa_pod_builder_int(&builder, index);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_device, 0);
    spa_pod_builder_int(&builder, profileDevice);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_props, 0);
    add(builder, change);
    // As the user's own choice, to be there again after a restart.
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_save, 0);
    spa_pod_builder_bool(&builder, true);
    spa_pod_builder_pop(&builder, &frame);
    return finished(builder, memory);
}

Change between(const std::optional<SoundLevel>& before, const SoundLevel& after) {
    Change change;
    if (!before || before->channels != after.channels) change.channels = after.channels;
    if (!before || before->isMuted != after.isMuted) change.isMuted = after.isMuted;
    return change;
}

bool isNear(const SoundLevel& one, const SoundLevel& other) {
    if (one.isMuted != other.isMuted || one.channels.size() != other.channels.size()) return false;
    for (std::size_t i = 0; i < one.channels.size(); ++i)
        if (std::abs(one.channels[i] - other.channels[i]) > step) return false;
    return true;
}

} // namespace tavero::PipeWireLevels
