#include "platform/linux/sound/tap/TapPath.h"

#include <pipewire/keys.h>

#include <algorithm>
#include <cstdint>
#include <span>

namespace tavero {

TapPath::TapPath(pw_core* core, const std::string& name, const std::string& target, TapCells& cells)
    : stage_(cells) {
    // One group is scheduled together; one link group is never linked to itself, and keeps its
    // target even if that becomes the default. No priority: never the default output by itself.
    sink_.emplace(
        core,
        StereoStream::Properties{{PW_KEY_NODE_NAME, name},
                                 {PW_KEY_NODE_DESCRIPTION, "Tavero"},
                                 {PW_KEY_MEDIA_CLASS, "Audio/Sink"},
                                 {PW_KEY_NODE_VIRTUAL, "true"},
                                 {PW_KEY_NODE_GROUP, name},
                                 {PW_KEY_NODE_LINK_GROUP, name},
                                 {PW_KEY_PRIORITY_SESSION, "-1"},
                                 {"session.suspend-timeout-seconds", "0"},
                                 {"state.restore-props", "false"},
                                 {"state.restore-target", "false"}},
        StereoStream::Work{[](void* self) { static_cast<TapPath*>(self)->capture(); }, this});
    // Internal: mixers don't show it. Passive: an app that rests lets the real output rest.
    player_.emplace(
        core,
        StereoStream::Properties{{PW_KEY_NODE_NAME, name + ".out"},
                                 {PW_KEY_NODE_DESCRIPTION, "Tavero"},
                                 {PW_KEY_MEDIA_CLASS, "Stream/Output/Audio/Internal"},
                                 {PW_KEY_NODE_GROUP, name},
                                 {PW_KEY_NODE_LINK_GROUP, name},
                                 {PW_KEY_NODE_PASSIVE, "true"},
                                 {PW_KEY_TARGET_OBJECT, target},
                                 {"state.restore-props", "false"},
                                 {"state.restore-target", "false"}},
        StereoStream::Work{[](void* self) { static_cast<TapPath*>(self)->play(); }, this});
}

TapPath::~TapPath() {
    sink_.reset();
    player_.reset();
}

int TapPath::connectPlayer() {
    return player_->connect(SPA_DIRECTION_OUTPUT,
                            PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS |
                                PW_STREAM_FLAG_RT_PROCESS | PW_STREAM_FLAG_TRIGGER);
}

int TapPath::connectSink() {
    return sink_->connect(SPA_DIRECTION_INPUT,
                          PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS);
}

// Takes all that is there. A buffer left behind would never be taken: when the block's size
// changes, two come in one cycle, and from then on the node would wait for a free one for good.
void TapPath::capture() {
    while (pw_buffer* buffer = sink_->take()) {
        stage_.pass(*buffer, [this](std::span<const float> left, std::span<const float> right) {
            ring_.write(left, right);
        });
        sink_->giveBack(buffer);
    }
    player_->trigger();
}

// Gives what there is, and silence only where there is nothing at all. Less than is asked for is
// right: what is asked for may still be the size of the block before, and silence in the place of
// the rest would be a gap, and a delay from then on. If it was too little, the library asks again
// in the same cycle; left without an answer then, it would never ask any more.
void TapPath::play() {
    pw_buffer* buffer = player_->take();
    if (buffer == nullptr) return;
    const auto frames =
        static_cast<std::uint32_t>(std::min<std::uint64_t>(room(*buffer), buffer->requested));
    std::uint32_t given = frames;
    if (frames > 0) {
        const spa_data* channels = buffer->buffer->datas;
        const std::span<float> left(static_cast<float*>(channels[0].data), frames);
        const std::span<float> right(static_cast<float*>(channels[1].data), frames);
        given = ring_.read(left, right);
        if (given == 0) {
            std::ranges::fill(left, 0.f);
            std::ranges::fill(right, 0.f);
            given = frames;
        }
    }
    setFrames(*buffer, given);
    player_->giveBack(buffer);
}

} // namespace tavero
