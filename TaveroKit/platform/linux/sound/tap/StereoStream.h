#pragma once

#include "sound/tap/Render.h"

#include <pipewire/stream.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace tavero {

// A stream of our own in PipeWire's graph: two channels of floats, each a buffer of its own, at
// whatever rate the graph has. Made, connected and destroyed with the loop locked. It lives no
// longer than the connection that it was made on: if that ends, the stream is off for good.
class StereoStream {
  public:
    using Properties = std::initializer_list<std::pair<const char*, std::string_view>>;

    // Does the stream's work: called on a real-time thread, once a cycle, until the stream is
    // destroyed.
    struct Work {
        void (*call)(void* context) = nullptr;
        void* context = nullptr;
    };

    StereoStream(pw_core* core, Properties properties, Work work);
    ~StereoStream();
    StereoStream(const StereoStream&) = delete;
    StereoStream& operator=(const StereoStream&) = delete;

    // 0, or a negative errno.
    int connect(spa_direction direction, std::uint32_t flags);

    // SPA_ID_INVALID until the service has told.
    std::uint32_t nodeID() const;
    // From any thread.
    bool isStreaming() const { return state_ == PW_STREAM_STATE_STREAMING; }
    bool isOff() const { return isGone_ || state_ == PW_STREAM_STATE_ERROR; }

    // For the work alone. A buffer that was taken must be given back.
    pw_buffer* take() { return pw_stream_dequeue_buffer(stream_); }
    void giveBack(pw_buffer* buffer) { pw_stream_queue_buffer(stream_, buffer); }
    // Lets the work of a stream with PW_STREAM_FLAG_TRIGGER run.
    void trigger() { pw_stream_trigger_process(stream_); }

  private:
    static const pw_stream_events events;

    Work work_;
    pw_stream* const stream_; // stays as it is for the work, which ends a little after the rest
    spa_hook hook_{};
    std::atomic<bool> isGone_ = false;
    std::atomic<pw_stream_state> state_ = PW_STREAM_STATE_UNCONNECTED;
};

// The two channels of what a stream captured. A channel that can't be read has no data.
std::array<AudioBuffer, 2> captured(const pw_buffer& buffer);

// How many frames the channels of a buffer have room for. 0 if it can't be written.
std::uint32_t room(const pw_buffer& buffer);
// Says how many were written.
void setFrames(pw_buffer& buffer, std::uint32_t frames);

} // namespace tavero
