#pragma once

#include "platform/AudioTapSource.h"

#include <memory>
#include <utility>

namespace tavero {

// Taps for a program that only looks. What apps' volumes are is the application's doing, so nothing
// here changes what is heard; that may well be tapped by the application at the same time.
class ListeningTaps final : public AudioTapSource {
  public:
    explicit ListeningTaps(std::shared_ptr<AudioTapSource> taps) : taps_(std::move(taps)) {}

    bool canBeDenied() const override { return taps_->canBeDenied(); }
    Result start(const TapRequest& request, TapCells& cells) override {
        if (!request.listenOnly) return TapFailure{};
        return taps_->start(request, cells);
    }

  private:
    std::shared_ptr<AudioTapSource> taps_;
};

} // namespace tavero
