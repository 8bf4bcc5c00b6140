#pragma once

#include "platform/AudioTapSource.h"
#include "records/Date.h"

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tavero {

// One running interception of one app's sound: what the app plays goes, times the volume, to an
// output, and nowhere else; or, if it only listens, is measured and nothing more. Destroying it
// gives the sound back. Main thread only.
class AppAudioTap {
  public:
    using Failure = TapFailure;
    using Result = std::variant<std::unique_ptr<AppAudioTap>, Failure>;

    // A tap that runs from now on, or why there is none. The volume is cut to 0...1; one that only
    // listens has none.
    static Result start(AudioTapSource& source, TapRequest request, float volume, Date now);

    const std::vector<AudioObjectID>& processObjects() const { return request_.processObjects; }
    const std::string& outputUID() const { return request_.outputUID; }
    const std::optional<std::string>& sourceUID() const { return request_.sourceUID; }
    Date started() const { return started_; }

    float volume() const;
    // From the next block on. Ignored by one that only listens.
    void setVolume(float volume);

    // True once a sample that isn't 0 has passed, whatever the volume.
    bool hasHeardSound() const;
    // The level of the latest block, before the volume.
    float latestLevel() const;
    // The highest level since this was last asked.
    float takeRecentPeak();
    bool isRunning() const;

    // Ends the interception. More than once is fine.
    void stop();

  private:
    AppAudioTap(TapRequest request, float volume, Date now);

    TapRequest request_;
    Date started_;
    TapCells cells_;
    std::unique_ptr<RunningTap> running_; // ends first: its real-time code uses the cells
};

} // namespace tavero
