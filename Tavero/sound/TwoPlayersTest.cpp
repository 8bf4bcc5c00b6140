// Two apps that really play, through the real services.

#include "platform/linux/processes/LinuxAudioProcesses.h"
#include "platform/linux/sound/LinuxAudio.h"
#include "platform/linux/sound/tap/test/Program.h"
#include "platform/linux/sound/tap/test/Recorder.h"
#include "platform/linux/sound/test/SoundSession.h"
#include "sound/AppAudioRouter.h"
#include "sound/AudioDeviceWatcher.h"
#include "time/ClockQueue.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace tavero {
namespace {

using test::Program;
using test::Recorder;
using test::TestGraph;

constexpr float tone = 0.8F;          // of each player
constexpr std::size_t settled = 2400; // frames, a twentieth of a second

class TwoPlayers : public testing::Test {
  protected:
    TwoPlayers() { restart(); }

    // A test before this may have unplugged the headset, which the services told of before the
    // microphone.
    void SetUp() override {
        ASSERT_TRUE(seen->waitUntil([this] { return seen->node("test.mic") != nullptr; }));
        const TestGraph::Lock lock(*seen);
        if (!seen->node("test.headset")) seen->makeOutput("test.headset");
    }

    // The program ends and begins again, over the same store.
    void restart() {
        end();
        const AudioSystem audio =
            linuxAudio("/", std::make_shared<LinuxAudioProcesses>(
                                "/", std::vector{applications.path().toStdString()}, ::getpid()));
        objects = audio.objects;
        router = std::make_unique<AppAudioRouter>(audio, nullptr, *clock, settings);
        router->start();
        watcher.emplace(*objects, queue, [this] { router->refresh(true); });
    }
    void end() {
        watcher.reset();
        router.reset();
        objects.reset();
    }

    // A program of its own, with an entry in the menus.
    std::unique_ptr<Program> player(const std::string& name) {
        const std::filesystem::path program = SoundSession::file(name);
        std::filesystem::copy_file(TAVERO_SOUND_PLAYER, program,
                                   std::filesystem::copy_options::overwrite_existing);
        std::ofstream(
            applications.filePath(QString::fromStdString(name + ".desktop")).toStdString())
            << "[Desktop Entry]\nType=Application\nName=" << name << "\nExec=" << program.string()
            << "\n";
        return std::make_unique<Program>(std::vector<std::string>{program.string(), name, "level"});
    }

    // While the program's own events are handled.
    static bool becomes(const std::function<bool()>& isTrue) {
        return QTest::qWaitFor(isTrue, 15000);
    }

    const AudioApp* app(const std::string& name) const {
        const auto found = std::find_if(router->apps().begin(), router->apps().end(),
                                        [&](const AudioApp& each) { return each.name == name; });
        return found == router->apps().end() ? nullptr : &*found;
    }

    // Whether the outputs come to play nothing but this.
    testing::AssertionResult hears(float speakers, float headset) {
        Recorder recorder(*seen, {"test.speakers", "test.headset"}, "256/48000");
        const auto plays = [&](std::size_t output, float level) {
            const std::vector<float> samples = recorder.samples(output);
            return samples.size() >= settled &&
                   std::all_of(samples.end() - settled, samples.end(),
                               [&](float sample) { return std::abs(sample - level) < 0.001F; });
        };
        if (becomes([&] { return plays(0, speakers) && plays(1, headset); }))
            return testing::AssertionSuccess();
        const auto last = [&](std::size_t output) {
            const std::vector<float> samples = recorder.samples(output);
            return samples.empty() ? -1 : samples.back();
        };
        return testing::AssertionFailure()
               << "speakers " << last(0) << ", headset " << last(1) << "\n"
               << seen->wiring();
    }

    QTemporaryDir applications;
    QTemporaryDir folder;
    Settings settings{folder.filePath("settings.ini")};
    std::unique_ptr<Clock> clock = hostClock();
    std::optional<TestGraph> seen{std::in_place};
    ClockQueue queue{*clock};
    std::shared_ptr<AudioObjects> objects;
    std::unique_ptr<AppAudioRouter> router;
    std::optional<AudioDeviceWatcher> watcher;
};

TEST_F(TwoPlayers, KeepTwoVolumesAndTwoOutputsThroughARestartAndWithoutTheHeadset) {
    const auto music = player("Music");
    const auto radio = player("Radio");
    router->pageAppeared();
    ASSERT_TRUE(becomes([&] { return app("Music") && app("Radio"); }));
    EXPECT_TRUE(hears(2 * tone, 0)) << "untouched";

    router->setOutput("test.headset", *app("Music"));
    router->setVolume(0.25, *app("Music"));
    router->setVolume(0.5, *app("Radio"));
    EXPECT_TRUE(hears(tone / 2, tone / 4));
    ASSERT_TRUE(becomes([&] { return !settings.get(keys::appAudioSettings).empty(); }));

    end();
    EXPECT_TRUE(hears(2 * tone, 0)) << "without the program";
    restart();
    EXPECT_TRUE(hears(tone / 2, tone / 4)) << "without a surface";

    SoundSession::output("pw-cli destroy test.headset");
    ASSERT_TRUE(becomes([&] {
        const TestGraph::Lock lock(*seen);
        return seen->node("test.headset") == nullptr;
    }));
    {
        Recorder recorder(*seen, {"test.speakers"}, "256/48000");
        EXPECT_TRUE(becomes([&] {
            const std::vector<float> samples = recorder.samples(0);
            return !samples.empty() && std::abs(samples.back() - tone * 1.5F) < 0.001F;
        })) << "as loud as it was on the speakers, not "
            << recorder.samples(0).back() << "\n"
            << seen->wiring();
    }
    {
        const TestGraph::Lock lock(*seen);
        ASSERT_NE(seen->makeOutput("test.headset"), nullptr);
    }
    ASSERT_TRUE(becomes([&] {
        const TestGraph::Lock lock(*seen);
        return seen->node("test.headset") != nullptr;
    }));
    EXPECT_TRUE(hears(tone / 2, tone / 4)) << "plugged in again";
}

TEST_F(TwoPlayers, KeepThemWhenTheServicesEndAndStartAgain) {
    auto music = player("Music");
    router->pageAppeared();
    ASSERT_TRUE(becomes([&] { return app("Music") != nullptr; }));
    router->setOutput("test.headset", *app("Music"));
    router->setVolume(0.25, *app("Music"));
    EXPECT_TRUE(hears(0, tone / 4));

    music.reset();
    seen.reset();
    SoundSession::stopServices();
    ASSERT_TRUE(becomes([&] { return router->outputs().empty() && router->taps().empty(); }));
    SoundSession::startServices();
    ASSERT_TRUE(becomes([&] { return router->defaultOutputUID() == "test.speakers"; }));
    seen.emplace();
    music = player("Music");
    EXPECT_TRUE(hears(0, tone / 4));
}

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
