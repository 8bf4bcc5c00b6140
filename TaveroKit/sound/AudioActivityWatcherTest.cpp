#include "sound/AudioActivityWatcher.h"

#include "sound/test/FakeAudio.h"
#include "sound/test/ManualQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>

namespace tavero {
namespace {

using namespace std::chrono_literals;

constexpr std::int32_t ownPid = 4242;
constexpr AudioAddress list{AudioSelector::processes};
constexpr AudioAddress running{AudioSelector::processIsRunning};

struct AudioActivityWatcherTest : testing::Test {
    AudioActivityWatcherTest() {
        audio.addProcess(10, 5);
        audio.addProcess(11, ownPid);
        audio.addProcess(12, 6);
        watcher.emplace(audio, ownPid, tasks.queue(), [this] { ++calls; });
    }

    FakeAudio audio;
    ManualTasks tasks;
    int calls = 0;
    std::optional<AudioActivityWatcher> watcher;
};

TEST_F(AudioActivityWatcherTest, EachProcessButThisOneIsListenedToFromTheStart) {
    EXPECT_TRUE(audio.isListenedTo(audioSystem, list));
    EXPECT_TRUE(audio.isListenedTo(10, running));
    EXPECT_TRUE(audio.isListenedTo(12, running));
    EXPECT_FALSE(audio.isListenedTo(11, running));
    EXPECT_EQ(calls, 0);
}

TEST_F(AudioActivityWatcherTest, AProcessThatDoesNotTellItsPidIsListenedTo) {
    audio.addProcess(13, ownPid);
    audio.put(13, {AudioSelector::processID}, FakeAudio::Unreadable{});
    audio.tell(audioSystem, list);
    tasks.run();
    EXPECT_TRUE(audio.isListenedTo(13, running));
}

TEST_F(AudioActivityWatcherTest, AChangeIsToldFiftyMillisecondsLater) {
    std::thread([&] { audio.tell(10, running); }).join();
    tasks.advance(50ms - 1ns);
    EXPECT_EQ(calls, 0);
    tasks.advance(1ns);
    EXPECT_EQ(calls, 1);
}

TEST_F(AudioActivityWatcherTest, TwoChangesTenMillisecondsApartAreOneCall) {
    audio.tell(10, running);
    tasks.advance(10ms);
    audio.tell(10, running);
    tasks.advance(1s);
    EXPECT_EQ(calls, 1);
}

TEST_F(AudioActivityWatcherTest, AChangeWhileACallIsPendingIsInThatCall) {
    audio.tell(10, running);
    tasks.advance(49ms);
    audio.tell(12, running);
    audio.tell(audioSystem, list);
    tasks.advance(1ms); // the first change decides when
    EXPECT_EQ(calls, 1);
    tasks.advance(1s);
    EXPECT_EQ(calls, 1);
}

TEST_F(AudioActivityWatcherTest, AChangeAfterTheCallIsAnother) {
    audio.tell(10, running);
    tasks.advance(50ms);
    audio.tell(10, running);
    tasks.advance(50ms);
    EXPECT_EQ(calls, 2);
}

TEST_F(AudioActivityWatcherTest, AProcessThatComesIsToldAndListenedTo) {
    audio.addProcess(13, 7);
    audio.tell(audioSystem, list);
    tasks.advance(50ms);
    EXPECT_EQ(calls, 1);
    audio.tell(13, running);
    tasks.advance(50ms);
    EXPECT_EQ(calls, 2);
}

TEST_F(AudioActivityWatcherTest, AProcessThatGoesIsToldAndNoLongerListenedTo) {
    audio.drop(10);
    audio.tell(audioSystem, list);
    tasks.advance(50ms);
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(audio.isListenedTo(10, running));
    EXPECT_TRUE(audio.isListenedTo(12, running));
}

TEST_F(AudioActivityWatcherTest, AProcessThatStaysHasOneListenerWhateverTheListSays) {
    audio.put(audioSystem, list, std::vector<std::uint32_t>{12, 10, 12, 10});
    audio.tell(audioSystem, list);
    audio.tell(audioSystem, list);
    tasks.run();
    EXPECT_EQ(audio.callsUnderWay(10, running).size(), 1u);
    EXPECT_EQ(audio.callsUnderWay(12, running).size(), 1u);
}

TEST_F(AudioActivityWatcherTest, AListThatCannotBeReadEndsTheListeningToProcesses) {
    audio.remove(audioSystem, list);
    audio.tell(audioSystem, list);
    tasks.run();
    EXPECT_FALSE(audio.isListenedTo(10, running));
    EXPECT_TRUE(audio.isListenedTo(audioSystem, list));
}

TEST_F(AudioActivityWatcherTest, ItsEndIsTheEndOfAllListening) {
    watcher.reset();
    EXPECT_FALSE(audio.hasListeners());
}

TEST_F(AudioActivityWatcherTest, NewsOnTheirWayAreNotToldAfterItsEnd) {
    audio.tell(12, running);
    tasks.advance(10ms); // pending
    audio.tell(audioSystem, list);
    const auto lateList = audio.callsUnderWay(audioSystem, list);
    const auto lateProcess = audio.callsUnderWay(10, running);
    watcher.reset();
    for (const auto& call : lateList) call();
    for (const auto& call : lateProcess) call();
    EXPECT_TRUE(tasks.isEmpty());
    tasks.advance(1s);
    EXPECT_EQ(calls, 0);
    EXPECT_FALSE(audio.hasListeners());
}

TEST_F(AudioActivityWatcherTest, CallsOfAnotherThreadAtItsEndDoNoHarm) {
    const auto late = audio.callsUnderWay(audioSystem, list);
    std::atomic<bool> began = false;
    std::atomic<bool> ended = false;
    std::thread teller([&] {
        for (int i = 0; i < 1'000 && !ended; ++i) {
            for (const auto& call : late) call();
            began = true;
        }
    });
    while (!began) std::this_thread::yield();
    watcher.reset();
    ended = true;
    teller.join();
    EXPECT_TRUE(tasks.isEmpty());
    EXPECT_FALSE(audio.hasListeners());
}

TEST(AudioActivityWatcher, ASystemThatRefusesListenersTellsNothing) {
    FakeAudio audio;
    audio.addProcess(10, 5);
    audio.refuseListeners(true);
    ManualTasks tasks;
    const AudioActivityWatcher watcher(audio, ownPid, tasks.queue(), [] { FAIL(); });
    audio.tell(10, running);
    tasks.advance(1s);
}

} // namespace
} // namespace tavero
