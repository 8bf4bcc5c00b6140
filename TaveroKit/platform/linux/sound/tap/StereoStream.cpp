#include "platform/linux/sound/tap/StereoStream.h"

#include <pipewire/properties.h>
#include <spa/param/audio/format-utils.h>

#include <algorithm>
#include <cerrno>

namespace tavero {

namespace {

pw_properties* made(StereoStream::Properties properties) {
    pw_properties* all = pw_properties_new(nullptr, nullptr);
    for (const auto& [key, value] : properties)
        pw_properties_set(all, key, std::string(value).c_str());
    return all;
}

} // namespace

const pw_stream_events StereoStream::events = [] {
    pw_stream_events told{};
    told.version = PW_VERSION_STREAM_EVENTS;
    told.destroy = [](void* context) {
        auto* self = static_cast<StereoStream*>(context);
        spa_hook_remove(&self->hook_);
        self->isGone_ = true;
        self->state_ = PW_STREAM_STATE_UNCONNECTED;
    };
    told.state_changed = [](void* context, pw_stream_state, pw_stream_state state, const char*) {
        static_cast<StereoStream*>(context)->state_ = state;
    };
    told.process = [](void* context) {
        const Work& work = static_cast<StereoStream*>(context)->work_;
        work.call(work.context);
    };
    return told;
}();

StereoStream::StereoStream(pw_core* core, Properties properties, Work work)
    : work_(work), stream_(pw_stream_new(core, nullptr, made(properties))) {
    if (stream_ == nullptr) {
        isGone_ = true;
        return;
    }
    pw_stream_add_listener(stream_, &hook_, &events, this);
}

StereoStream::~StereoStream() {
    if (!isGone_) pw_stream_destroy(stream_);
}

int StereoStream::connect(spa_direction direction, std::uint32_t flags) {
    if (isGone_) return -EPIPE;
    spa_audio_info_raw format{};
    format.format = SPA_AUDIO_FORMAT_F32P;
    format.channels = 2;
    format.position[0] = SPA_AUDIO_CHANNEL_FL;
    format.position[1] = SPA_AUDIO_CHANNEL_FR;
    std::array<std::uint8_t, 512> memory;
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), static_cast<std::uint32_t>(memory.size()));
    const spa_pod* pod = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &format);
    return pw_stream_connect(stream_, direction, PW_ID_ANY, static_cast<pw_stream_flags>(flags),
                             &pod, 1);
}

std::uint32_t StereoStream::nodeID() const {
    return isGone_ ? SPA_ID_INVALID : pw_stream_get_node_id(stream_);
}

std::array<AudioBuffer, 2> captured(const pw_buffer& buffer) {
    std::array<AudioBuffer, 2> channels{};
    const spa_buffer& inner = *buffer.buffer;
    for (std::uint32_t i = 0; i < channels.size() && i < inner.n_datas; ++i) {
        const spa_data& data = inner.datas[i];
        channels[i].channels = 1;
        if (data.data == nullptr || data.chunk == nullptr) continue;
        const std::uint32_t offset = std::min(data.chunk->offset, data.maxsize);
        channels[i].bytes = std::min(data.chunk->size, data.maxsize - offset);
        channels[i].data = reinterpret_cast<float*>(static_cast<std::byte*>(data.data) + offset);
    }
    return channels;
}

std::uint32_t room(const pw_buffer& buffer) {
    const spa_buffer& inner = *buffer.buffer;
    if (inner.n_datas < 2) return 0;
    std::uint32_t bytes = UINT32_MAX;
    for (std::uint32_t i = 0; i < 2; ++i)
        bytes = std::min(bytes, inner.datas[i].data == nullptr ? 0 : inner.datas[i].maxsize);
    return bytes / std::uint32_t{sizeof(float)};
}

void setFrames(pw_buffer& buffer, std::uint32_t frames) {
    const spa_buffer& inner = *buffer.buffer;
    for (std::uint32_t i = 0; i < inner.n_datas; ++i) {
        spa_chunk& chunk = *inner.datas[i].chunk;
        chunk.offset = 0;
        chunk.stride = sizeof(float);
        chunk.size = frames * std::uint32_t{sizeof(float)};
    }
}

} // namespace tavero
