#include "sound/AudioApps.h"

#include "sound/test/FakeAudio.h"
#include "sound/test/FakeAudioProcesses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = AppIdentity::Kind;

struct AudioAppsTest : testing::Test {
    FakeAudio audio;
    FakeAudioProcesses processes;
    AudioObjectID next = 100;

    // A process of an app of this name.
    AudioObjectID add(const std::string& app, bool plays = false) {
        const AudioObjectID object = next++;
        const auto pid = static_cast<std::int32_t>(object);
        audio.addProcess(object, pid, plays);
        processes.runApp(pid, app);
        return object;
    }
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const AudioApp& app : AudioApps::all(audio, processes)) names.push_back(app.name);
        return names;
    }
};

TEST_F(AudioAppsTest, TwoProcessesOfOneBundleGiveOneApp) {
    audio.addProcess(31, 5);
    audio.addProcess(30, 6, true);
    processes.runApp(5, "Web");
    processes.runApp(6, "Web");
    EXPECT_THAT(AudioApps::all(audio, processes),
                ElementsAre(AudioApp{.id = "/Applications/Web.app",
                                     .name = "Web",
                                     .bundlePath = "/Applications/Web.app",
                                     .processObjects = {30, 31},
                                     .isPlaying = true}));
}

TEST_F(AudioAppsTest, AnAppPlaysIfAnyOfItsProcessesDoes) {
    const AudioObjectID first = add("Web", true);
    const AudioObjectID second = add("Web", false);
    const auto plays = [&](std::uint32_t one, std::uint32_t other) {
        audio.put(first, {AudioSelector::processIsRunningOutput}, one);
        audio.put(second, {AudioSelector::processIsRunningOutput}, other);
        return AudioApps::all(audio, processes).front().isPlaying;
    };
    EXPECT_TRUE(plays(1, 0));
    EXPECT_TRUE(plays(0, 1));
    EXPECT_FALSE(plays(0, 0));
    EXPECT_FALSE(plays(2, 0)); // no answer that it has
    audio.remove(first, {AudioSelector::processIsRunningOutput});
    EXPECT_FALSE(AudioApps::all(audio, processes).front().isPlaying);
}

TEST_F(AudioAppsTest, ThisProgramNeverAppears) {
    audio.addProcess(10, FakeAudioProcesses::own, true);
    processes.runApp(FakeAudioProcesses::own, "Tavero");
    EXPECT_THAT(AudioApps::all(audio, processes), IsEmpty());
}

TEST_F(AudioAppsTest, OnlyAppsThatTheUserKnowsAppear) {
    audio.addProcess(10, 1);
    audio.addProcess(11, 2);
    audio.addProcess(12, 3);
    add("Known");
    processes.run(1, AppIdentity::system);
    processes.run(2, {Kind::tool, "/Applications/player"}); // its kind decides, not its id
    processes.run(3, {Kind::app, "/Users/ada/Downloads/Beta.app"});
    EXPECT_THAT(names(), ElementsAre("Known"));
}

TEST_F(AudioAppsTest, AProcessThatQuitsBetweenTwoReadsIsPassedOver) {
    const AudioObjectID unread = add("Alpha");
    const AudioObjectID gone = add("Beta");
    add("Gamma");
    audio.removeObject(unread);                      // listed, but tells no pid any more
    processes.quit(static_cast<std::int32_t>(gone)); // told its pid, and then was gone
    EXPECT_THAT(names(), ElementsAre("Gamma"));
}

TEST_F(AudioAppsTest, WithoutAListThereAreNone) {
    EXPECT_THAT(AudioApps::all(audio, processes), IsEmpty());
    EXPECT_THAT(AudioApps::playing(audio, processes), IsEmpty());
}

TEST_F(AudioAppsTest, AppsThatPlayComeFirstAndThenTheNameDecides) {
    add("delta");
    add("Charlie");
    add("bravo", true);
    add("Alpha");
    add("Echo", true);
    EXPECT_THAT(names(), ElementsAre("bravo", "Echo", "Alpha", "Charlie", "delta"));
}

TEST_F(AudioAppsTest, AppsOfOneNameAreOrderedByTheirPaths) {
    for (const char* id : {"/Applications/C.app", "/Applications/A.app", "/Applications/B.app"}) {
        add("X");
        processes.run(static_cast<std::int32_t>(next - 1), {Kind::app, id});
    }
    processes.call("/Applications/A.app", "same");
    processes.call("/Applications/B.app", "SAME");
    processes.call("/Applications/C.app", "Same");
    EXPECT_THAT(names(), ElementsAre("same", "SAME", "Same"));
}

TEST_F(AudioAppsTest, ThoseThatPlayAreTheBeginningOfAll) {
    add("Quiet");
    add("zulu", true);
    add("Yankee", true);
    const std::vector<AudioApp> all = AudioApps::all(audio, processes);
    EXPECT_THAT(AudioApps::playing(audio, processes), ElementsAre(all[0], all[1]));
}

TEST_F(AudioAppsTest, AnAppRecordsIfAnyOfItsProcessesDoes) {
    const AudioObjectID first = add("Web");
    const AudioObjectID second = add("Web");
    const AudioApp app = AudioApps::all(audio, processes).front();
    EXPECT_FALSE(AudioApps::isUsingInput(audio, app));
    audio.put(second, {AudioSelector::processIsRunningInput}, 1u);
    EXPECT_TRUE(AudioApps::isUsingInput(audio, app));
    audio.removeObject(first);
    EXPECT_TRUE(AudioApps::isUsingInput(audio, app));
    audio.put(second, {AudioSelector::processIsRunningInput}, 2u);
    EXPECT_FALSE(AudioApps::isUsingInput(audio, app));
    EXPECT_FALSE(AudioApps::isUsingInput(audio, {}));
}

} // namespace
} // namespace tavero
