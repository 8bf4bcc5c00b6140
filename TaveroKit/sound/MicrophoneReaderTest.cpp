#include "sound/MicrophoneReader.h"

#include "sound/test/FakeAudio.h"
#include "sound/test/FakeAudioProcesses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = AppIdentity::Kind;

struct MicrophoneReaderTest : testing::Test {
    FakeAudio audio;
    FakeAudioProcesses processes;

    void record(AudioObjectID object, AppIdentity identity) {
        const auto pid = static_cast<std::int32_t>(object);
        audio.addProcess(object, pid, false, true);
        processes.run(pid, std::move(identity));
    }
    std::vector<std::string> names() { return MicrophoneReader::appsUsingInput(audio, processes); }
};

TEST_F(MicrophoneReaderTest, AppsOfAnyPlaceAndToolsAreNamedInOrderButNeverTheSystem) {
    record(10, {Kind::tool, "recorder"});
    record(11, {Kind::app, "/Users/ada/Downloads/Beta.app"});
    record(12, AppIdentity::system);
    record(13, {Kind::app, "/Applications/Web.app"});
    EXPECT_THAT(names(), ElementsAre("Beta", "Web", "recorder")); // by code, as a set has it
}

TEST_F(MicrophoneReaderTest, AnAppIsNamedOnceForAllItsProcesses) {
    record(10, {Kind::app, "/Applications/Web.app"});
    record(11, {Kind::app, "/Applications/Web.app"});
    EXPECT_THAT(names(), ElementsAre("Web"));
}

TEST_F(MicrophoneReaderTest, ThisProgramIsNeverNamed) {
    record(FakeAudioProcesses::own, {Kind::app, "/Applications/Tavero.app"});
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(MicrophoneReaderTest, OnlyAnInputThatRunsCounts) {
    record(10, {Kind::tool, "recorder"});
    for (const FakeAudio::Value& value :
         {FakeAudio::Value(0u), FakeAudio::Value(2u), FakeAudio::Value(FakeAudio::Unreadable{})}) {
        audio.put(10, {AudioSelector::processIsRunningInput}, value);
        EXPECT_THAT(names(), IsEmpty());
    }
    audio.put(10, {AudioSelector::processIsRunningInput}, 1u);
    EXPECT_THAT(names(), ElementsAre("recorder"));
}

TEST_F(MicrophoneReaderTest, AProcessThatQuitsBetweenTwoReadsIsPassedOver) {
    record(10, {Kind::tool, "alpha"});
    record(11, {Kind::tool, "beta"});
    record(12, {Kind::tool, "gamma"});
    audio.remove(10, {AudioSelector::processID});
    processes.quit(11);
    EXPECT_THAT(names(), ElementsAre("gamma"));
    audio.removeObject(12);
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(MicrophoneReaderTest, WithoutAListNobodyIsNamed) { EXPECT_THAT(names(), IsEmpty()); }

} // namespace
} // namespace tavero
