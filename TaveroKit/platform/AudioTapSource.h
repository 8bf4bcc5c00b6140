#pragma once

#include "platform/AudioObjects.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tavero {

// What a tap and its real-time code share. Plain loads and stores without a lock; who reads may see
// the value of the block before.
struct TapCells {
    std::atomic<float> gain = 0;   // 0 to 1
    std::atomic<float> peak = 0;   // highest level before the gain since creation
    std::atomic<float> recent = 0; // highest since it was last taken
    std::atomic<float> latest = 0; // of the latest block

    static_assert(std::atomic<float>::is_always_lock_free);
};

// What is to be intercepted.
struct TapRequest {
    std::vector<AudioObjectID> processObjects;
    std::string outputUID; // of the device that the sound goes to
    // The device that the app plays to now, if the interception is to be of what goes there.
    std::optional<std::string> sourceUID;
    bool listenOnly = false; // measure, and change nothing of what is heard
};

// Why there is no tap: the step that failed, and what the platform said.
struct TapFailure {
    enum class Step { tap, aggregate, ioProc, start };

    Step step = Step::tap;
    std::int32_t status = 0;

    bool operator==(const TapFailure&) const = default;
};

// An interception that runs. Destroying it gives the app's sound back; after that no real-time code
// touches the cells.
class RunningTap {
  public:
    virtual ~RunningTap() = default;

    // Whether sound is moved right now. May be false of one in order, for as long as nothing plays.
    virtual bool isRunning() = 0;
};

// Where interceptions are made. From the main thread only.
class AudioTapSource {
  public:
    using Result = std::variant<std::unique_ptr<RunningTap>, TapFailure>;

    virtual ~AudioTapSource() = default;

    // Whether an app can keep what it plays from being captured: then a tap hears nothing but
    // silence of it, and takes its sound away.
    virtual bool canBeDenied() const { return true; }

    // Each block of the app's sound goes through render() with these cells, which must outlive the
    // running tap. A failure leaves nothing behind.
    virtual Result start(const TapRequest& request, TapCells& cells) = 0;
};

} // namespace tavero
