#pragma once

#include "platform/AudioCapturePermission.h"

#include <functional>
#include <utility>
#include <vector>

namespace tavero {

// A permission that a test sets, and a user who answers when the test says so.
class FakeCapturePermission final : public AudioCapturePermission {
  public:
    Status now = Status::granted;
    std::vector<std::function<void(bool)>> asked;

    Status status() override { return now; }
    void request(std::function<void(bool granted)> done) override {
        asked.push_back(std::move(done));
    }
    void answer(Status status) {
        now = status;
        for (const auto& done : std::exchange(asked, {})) done(status == Status::granted);
    }
};

} // namespace tavero
