#pragma once

#include <functional>

namespace tavero {

// Whether this program may listen to what apps play.
class AudioCapturePermission {
  public:
    enum class Status { granted, denied, notAsked };

    virtual ~AudioCapturePermission() = default;

    // As it is stored. From any thread.
    virtual Status status() = 0;

    // Lets the system ask the user, if it hasn't yet. `done` is called once, on any thread, maybe
    // from within the call; what holds is then in status().
    virtual void request(std::function<void(bool granted)> done) = 0;
};

} // namespace tavero
