#pragma once

#include "platform/AudioTapSource.h"
#include "platform/mac/sound/MacAudioHardware.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tavero {

// A tap of the Mac: a process tap, and a private aggregate device of that and of the output, on
// which a block plays what was tapped. The ids are 0, and the proc null, where there is none.
class ProcessTap final : public RunningTap {
  public:
    // The cells must outlive it.
    ProcessTap(std::shared_ptr<MacAudioHardware> hardware, std::shared_ptr<AudioObjects> objects,
               TapCells& cells);
    // Gives the app's sound back, even after a start that failed half-way.
    ~ProcessTap() override;
    ProcessTap(const ProcessTap&) = delete;
    ProcessTap& operator=(const ProcessTap&) = delete;

    // Once. Absent if all went well.
    std::optional<TapFailure> start(const TapRequest& request);
    bool isRunning() override;

  private:
    // Each gives the status of its call.
    std::int32_t createTap(const TapRequest& request, const std::string& uuid);
    std::int32_t createAggregate(const TapRequest& request, const std::string& tapUUID);
    std::int32_t createProc();

    std::shared_ptr<MacAudioHardware> hardware_;
    std::shared_ptr<AudioObjects> objects_;
    TapCells& cells_;
    AudioObjectID tapID_ = 0;
    AudioObjectID aggregateID_ = 0;
    MacAudioHardware::IOProcID procID_ = nullptr;
};

// The taps of a Mac, by its calls or by those of a simulated one.
class ProcessTaps final : public AudioTapSource {
  public:
    ProcessTaps(std::shared_ptr<MacAudioHardware> hardware, std::shared_ptr<AudioObjects> objects);

    Result start(const TapRequest& request, TapCells& cells) override;

  private:
    std::shared_ptr<MacAudioHardware> hardware_;
    std::shared_ptr<AudioObjects> objects_;
};

} // namespace tavero
