#pragma once

#include "platform/AudioCapturePermission.h"

#include <functional>
#include <memory>
#include <optional>

namespace tavero {

// The two calls to the Mac's privacy database, for the capture of audio. From any thread.
class PrivacyCalls {
  public:
    virtual ~PrivacyCalls() = default;

    // What TCCAccessPreflight answers. Absent if this system has no such call.
    virtual std::optional<int> preflight() = 0;
    // TCCAccessRequest; `completion` follows on any thread. False if this system has no such call.
    virtual bool request(std::function<void(bool granted)> completion) = 0;
};

// The permission as that database has it. A system without one never asked.
class PrivacyDatabase final : public AudioCapturePermission {
  public:
    explicit PrivacyDatabase(std::unique_ptr<PrivacyCalls> calls);

    Status status() override;
    void request(std::function<void(bool granted)> done) override;

  private:
    std::unique_ptr<PrivacyCalls> calls_;
};

} // namespace tavero
