#include "sound/tap/AppAudioTap.h"

#include "sound/tap/Render.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// Taps that play what the test gives them.
class FakeTaps : public AudioTapSource {
  public:
    std::optional<TapFailure> failure;
    TapRequest request;
    TapCells* cells = nullptr; // of the tap that runs
    bool isRunning = true;
    int ended = 0;

    Result start(const TapRequest& asked, TapCells& cellsOfTap) override {
        request = asked;
        if (failure) return *failure;
        cells = &cellsOfTap;
        return std::make_unique<Running>(*this);
    }

    // One block of one sample; gives what is heard.
    float play(float sample) {
        float heard = 99;
        const AudioBuffer input{1, sizeof(float), &sample};
        const AudioBuffer output{1, sizeof(float), &heard};
        render({&input, 1}, {&output, 1}, cells->gain, cells->peak, cells->recent, cells->latest);
        return heard;
    }

  private:
    class Running : public RunningTap {
      public:
        explicit Running(FakeTaps& taps) : taps_(taps) {}
        ~Running() override {
            taps_.cells = nullptr;
            ++taps_.ended;
        }
        bool isRunning() override { return taps_.isRunning; }

      private:
        FakeTaps& taps_;
    };
};

const TapRequest someApp{.processObjects = {40, 41}, .outputUID = "usb", .sourceUID = "builtIn"};
const TapRequest someMeter{.processObjects = {40}, .outputUID = "usb", .listenOnly = true};

class AppAudioTapTest : public testing::Test {
  protected:
    FakeTaps taps;

    std::unique_ptr<AppAudioTap> start(TapRequest request, float volume) {
        AppAudioTap::Result result = AppAudioTap::start(taps, std::move(request), volume, Date(5s));
        return std::get<std::unique_ptr<AppAudioTap>>(std::move(result));
    }
};

TEST_F(AppAudioTapTest, KeepsWhatItWasMadeFor) {
    const auto tap = start(someApp, .5f);
    EXPECT_EQ(tap->processObjects(), (std::vector<AudioObjectID>{40, 41}));
    EXPECT_EQ(tap->outputUID(), "usb");
    EXPECT_EQ(tap->sourceUID(), "builtIn");
    EXPECT_EQ(tap->started(), Date(5s));
    EXPECT_EQ(tap->volume(), .5f);
    EXPECT_EQ(taps.request.processObjects, tap->processObjects());
    EXPECT_EQ(taps.request.sourceUID, tap->sourceUID());
    EXPECT_FALSE(taps.request.listenOnly);
}

TEST_F(AppAudioTapTest, TheVolumeIsCutToWhatThereIs) {
    const auto tap = start(someApp, 3);
    EXPECT_EQ(tap->volume(), 1);
    tap->setVolume(1.5f);
    EXPECT_EQ(tap->volume(), 1);
    tap->setVolume(-1);
    EXPECT_EQ(tap->volume(), 0);
    tap->setVolume(.25f);
    EXPECT_EQ(tap->volume(), .25f);
    tap->setVolume(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(tap->volume(), 0);
    EXPECT_EQ(start(someApp, -std::numeric_limits<float>::infinity())->volume(), 0);
}

TEST_F(AppAudioTapTest, TheVolumeHoldsFromTheNextBlockOn) {
    const auto tap = start(someApp, 1);
    EXPECT_EQ(taps.play(.5f), .5f);
    tap->setVolume(.5f);
    EXPECT_EQ(taps.play(.5f), .25f);
    tap->setVolume(0);
    EXPECT_EQ(taps.play(.5f), 0);
}

TEST_F(AppAudioTapTest, OneThatOnlyListensPlaysNothingAndHasNoVolume) {
    const auto tap = start(someMeter, 1);
    EXPECT_TRUE(taps.request.listenOnly);
    EXPECT_EQ(tap->volume(), 0);
    tap->setVolume(1);
    EXPECT_EQ(tap->volume(), 0);
    EXPECT_EQ(taps.play(.5f), 0);
    EXPECT_EQ(tap->latestLevel(), .5f);
}

TEST_F(AppAudioTapTest, TheRecentPeakIsThereOnce) {
    const auto tap = start(someApp, 1);
    EXPECT_EQ(tap->takeRecentPeak(), 0);
    taps.play(-.5f);
    taps.play(.25f);
    EXPECT_EQ(tap->latestLevel(), .25f);
    EXPECT_EQ(tap->takeRecentPeak(), .5f);
    EXPECT_EQ(tap->takeRecentPeak(), 0);
    taps.play(.125f);
    EXPECT_EQ(tap->takeRecentPeak(), .125f);
}

TEST_F(AppAudioTapTest, HasHeardSoundOnceAnyHasPassedWhateverTheVolume) {
    const auto tap = start(someApp, 0);
    EXPECT_FALSE(tap->hasHeardSound());
    taps.play(0);
    EXPECT_FALSE(tap->hasHeardSound());
    taps.play(-.001f);
    EXPECT_TRUE(tap->hasHeardSound());
    taps.play(0);
    tap->takeRecentPeak();
    EXPECT_TRUE(tap->hasHeardSound());
    EXPECT_EQ(tap->latestLevel(), 0);
}

TEST_F(AppAudioTapTest, RunsAsLongAsThePlatformSaysUntilItIsStopped) {
    const auto tap = start(someApp, 1);
    EXPECT_TRUE(tap->isRunning());
    taps.isRunning = false;
    EXPECT_FALSE(tap->isRunning());
    taps.isRunning = true;
    tap->stop();
    EXPECT_FALSE(tap->isRunning());
}

TEST_F(AppAudioTapTest, StopsOnceHoweverOftenItIsTold) {
    auto tap = start(someApp, 1);
    taps.play(.5f);
    tap->stop();
    tap->stop();
    EXPECT_EQ(taps.ended, 1);
    EXPECT_EQ(tap->takeRecentPeak(), .5f);
    tap.reset();
    EXPECT_EQ(taps.ended, 1);
}

TEST_F(AppAudioTapTest, DestroyingItStopsIt) {
    start(someApp, 1);
    EXPECT_EQ(taps.ended, 1);
}

TEST_F(AppAudioTapTest, AFailureIsToldWithItsStepAndStatus) {
    taps.failure = TapFailure{TapFailure::Step::aggregate, -50};
    const AppAudioTap::Result result = AppAudioTap::start(taps, someApp, 1, Date());
    EXPECT_EQ(std::get<AppAudioTap::Failure>(result),
              (TapFailure{TapFailure::Step::aggregate, -50}));
}

} // namespace
} // namespace tavero
