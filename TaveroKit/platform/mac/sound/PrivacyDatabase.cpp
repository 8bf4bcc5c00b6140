#include "platform/mac/sound/PrivacyDatabase.h"

#include <atomic>
#include <utility>

namespace tavero {

namespace {

// Passes on the first answer that it is given, and no if it goes away without one.
class Answer {
  public:
    explicit Answer(std::function<void(bool)> done) : done_(std::move(done)) {}
    ~Answer() { give(false); }
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;

    void give(bool granted) {
        if (!given_.exchange(true)) done_(granted);
    }

  private:
    std::function<void(bool)> done_;
    std::atomic<bool> given_ = false;
};

} // namespace

PrivacyDatabase::PrivacyDatabase(std::unique_ptr<PrivacyCalls> calls) : calls_(std::move(calls)) {}

AudioCapturePermission::Status PrivacyDatabase::status() {
    const std::optional<int> answer = calls_->preflight();
    if (answer == 0) return Status::granted;
    return answer == 1 ? Status::denied : Status::notAsked;
}

void PrivacyDatabase::request(std::function<void(bool granted)> done) {
    const auto answer = std::make_shared<Answer>(std::move(done));
    if (!calls_->request([answer](bool granted) { answer->give(granted); })) answer->give(false);
}

} // namespace tavero
