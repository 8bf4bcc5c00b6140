#pragma once

#include "platform/AudioTapSource.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tavero {

// Interceptions that move no sound: a test says what they hear and whether they run, and can read
// in which order they began and ended. Must outlive them.
class FakeTaps final : public AudioTapSource {
  public:
    struct Tap {
        int number = 0; // the first one made is 1
        TapRequest request;
        TapCells* cells = nullptr;
        bool isRunning = true;
    };

    // Which requests fail; none if it is empty.
    std::function<bool(const TapRequest&)> fails;
    bool isDeniable = true;
    // "+1", "-1": what began and ended, by number. A failure is "!".
    std::vector<std::string> log;

    // Those that live, in the order in which they were made.
    const std::vector<std::shared_ptr<Tap>>& live() const { return live_; }
    // The one that intercepts a process, or the meter of it. Null if there is none.
    Tap* of(AudioObjectID process, bool listenOnly = false) const {
        for (const auto& tap : live_) {
            const auto& objects = tap->request.processObjects;
            if (tap->request.listenOnly == listenOnly &&
                std::find(objects.begin(), objects.end(), process) != objects.end())
                return tap.get();
        }
        return nullptr;
    }
    // A block of a process's sound, of this level, passes whatever listens to it.
    void sound(AudioObjectID process, float level) {
        for (Tap* tap : {of(process), of(process, true)}) {
            if (!tap) continue;
            tap->cells->peak = std::max<float>(tap->cells->peak, level);
            tap->cells->recent = std::max<float>(tap->cells->recent, level);
            tap->cells->latest = level;
        }
    }

    bool canBeDenied() const override { return isDeniable; }
    Result start(const TapRequest& request, TapCells& cells) override {
        if (fails && fails(request)) {
            log.emplace_back("!");
            return TapFailure{TapFailure::Step::aggregate, -1};
        }
        const auto tap = std::make_shared<Tap>(Tap{++made_, request, &cells});
        live_.push_back(tap);
        log.push_back("+" + std::to_string(tap->number));
        return std::make_unique<Running>(*this, tap);
    }

  private:
    struct Running final : RunningTap {
        Running(FakeTaps& owner, std::shared_ptr<Tap> of) : taps(owner), tap(std::move(of)) {}
        ~Running() override {
            std::erase(taps.live_, tap);
            taps.log.push_back("-" + std::to_string(tap->number));
        }
        bool isRunning() override { return tap->isRunning; }

        FakeTaps& taps;
        std::shared_ptr<Tap> tap;
    };

    std::vector<std::shared_ptr<Tap>> live_;
    int made_ = 0;
};

} // namespace tavero
