#include "platform/mac/sound/MacAudioProcesses.h"

#include "platform/sim/SimMachine.h"
#include "sound/AudioApps.h"
#include "sound/MicrophoneReader.h"
#include "sound/test/FakeAudio.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using Kind = AppIdentity::Kind;

// Answers with any bytes for every pid.
struct AnyPath final : MacProcessTable {
    int result = 1;
    std::string bytes;

    int listAllPids(std::span<std::int32_t>) override { return 0; }
    int usage(std::int32_t, Usage&) override { return -1; }
    int path(std::int32_t, std::span<char> buffer) override {
        std::copy_n(bytes.begin(), std::min(bytes.size(), buffer.size()), buffer.begin());
        return result;
    }
    int taskInfo(std::int32_t, TaskInfo&) override { return 0; }
    std::uint64_t absoluteTime() override { return 0; }
    Timebase timebase() override { return {}; }
};

struct MacAudioProcessesTest : testing::Test {
    SimMachine sim;
    std::shared_ptr<AnyPath> table = std::make_shared<AnyPath>();
    MacAudioProcesses anyPath{table, sim.bundleInfo(), "/Users/ada", 4242};
    MacAudioProcesses processes{sim.processTable(), sim.bundleInfo(), "/Users/ada", 4242};

    void run(std::int32_t pid, const std::string& path) {
        sim.state().processes.push_back({.pid = pid, .path = path, .usage = std::nullopt});
    }
};

TEST_F(MacAudioProcessesTest, AProcessIsWhoTheListOfAppsSaysItIs) {
    run(5, "/Applications/Alpha.app/Contents/Frameworks/Alpha Helper.app/Contents/MacOS/Helper");
    run(6, "/usr/sbin/coreaudiod");
    run(7, "/opt/homebrew/bin/player");
    EXPECT_EQ(processes.identity(5), (AppIdentity{Kind::app, "/Applications/Alpha.app"}));
    EXPECT_EQ(processes.identity(6), AppIdentity::system);
    EXPECT_EQ(processes.identity(7), (AppIdentity{Kind::tool, "player"}));
    EXPECT_EQ(processes.identity(8), std::nullopt); // there is none
    EXPECT_EQ(processes.ownPid(), 4242);
}

TEST_F(MacAudioProcessesTest, APathEndsAtItsFirstZeroByteAndBrokenBytesAreReplaced) {
    table->bytes = std::string("/opt/a\xff\0junk", 12);
    EXPECT_EQ(anyPath.identity(5), (AppIdentity{Kind::tool, "a\uFFFD"}));
    for (const int result : {0, -1}) {
        table->result = result;
        EXPECT_EQ(anyPath.identity(5), std::nullopt);
    }
}

TEST_F(MacAudioProcessesTest, APathLongerThanTheBufferIsCut) {
    table->bytes = "/opt/" + std::string(9'000, 'a');
    EXPECT_EQ(anyPath.identity(5), (AppIdentity{Kind::tool, std::string(4'091, 'a')}));
}

TEST_F(MacAudioProcessesTest, AnAppIsCalledWhatItsBundleSays) {
    sim.state().bundleInfo["/Applications/Alpha.app"] = {
        {"CFBundleDisplayName", {std::string("Alpha Player")}}};
    EXPECT_EQ(processes.displayName({Kind::app, "/Applications/Alpha.app"}), "Alpha Player");
    EXPECT_EQ(processes.displayName({Kind::app, "/Applications/Beta.app"}), "Beta");
    EXPECT_EQ(processes.displayName({Kind::tool, "player"}), "player");
}

TEST_F(MacAudioProcessesTest, TheUserKnowsTheAppsOfTheFoldersForApplicationsOnly) {
    for (const char* known :
         {"/Applications/Alpha.app", "/Applications/Tools/Alpha.app",
          "/System/Applications/Alpha.app", "/Users/ada/Applications/Alpha.app",
          "/System/Volumes/Preboot/Cryptexes/App/System/Applications/Alpha.app"})
        EXPECT_TRUE(processes.isUserApp(known)) << known;
    for (const char* unknown :
         {"/Users/ada/Downloads/Alpha.app", "/Users/bob/Applications/Alpha.app",
          "/Volumes/Alpha/Alpha.app", "/Volumes/Disk/Applications/Alpha.app",
          "/System/Library/CoreServices/Alpha.app", "/ApplicationsOld/Alpha.app", "/Applications",
          "/applications/Alpha.app", ""})
        EXPECT_FALSE(processes.isUserApp(unknown)) << unknown;
}

TEST_F(MacAudioProcessesTest, ABundleInTheApplicationsOfTheHomeIsListedAndOneInDownloadsIsNot) {
    FakeAudio audio;
    audio.addProcess(10, 5);
    audio.addProcess(11, 6);
    run(5, "/Users/ada/Applications/Alpha.app/Contents/MacOS/Alpha");
    run(6, "/Users/ada/Downloads/Beta.app/Contents/MacOS/Beta");
    EXPECT_THAT(AudioApps::all(audio, processes),
                ElementsAre(Field(&AudioApp::id, "/Users/ada/Applications/Alpha.app")));
}

TEST_F(MacAudioProcessesTest, ThisProgramAndProcessesWithoutABundleAreNoAudioApps) {
    FakeAudio audio;
    audio.addProcess(10, 4242, true);
    audio.addProcess(11, 6, true);
    audio.addProcess(12, 7, true);
    run(4242, "/Applications/Tavero.app/Contents/MacOS/Tavero");
    run(6, "/usr/sbin/systemsoundserverd");
    run(7, "/opt/homebrew/bin/player");
    EXPECT_THAT(AudioApps::all(audio, processes), IsEmpty());
}

TEST_F(MacAudioProcessesTest, AnyAppOrToolMayBeSaidToUseTheMicrophoneButNeverTheSystem) {
    FakeAudio audio;
    audio.addProcess(10, 7, false, true);
    audio.addProcess(11, 6, false, true);
    audio.addProcess(12, 5, false, true);
    run(5, "/Users/ada/Downloads/Beta.app/Contents/MacOS/Beta");
    run(6, "/usr/libexec/heard");
    run(7, "/opt/homebrew/bin/recorder");
    EXPECT_THAT(MicrophoneReader::appsUsingInput(audio, processes),
                ElementsAre("Beta", "recorder"));
}

} // namespace
} // namespace tavero
