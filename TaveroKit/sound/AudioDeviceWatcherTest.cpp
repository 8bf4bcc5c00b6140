#include "sound/AudioDeviceWatcher.h"

#include "sound/test/FakeAudio.h"
#include "sound/test/ManualQueue.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <thread>

namespace tavero {
namespace {

constexpr std::array selectors{AudioSelector::devices, AudioSelector::defaultOutput,
                               AudioSelector::defaultInput};

struct AudioDeviceWatcherTest : testing::Test {
    FakeAudio audio;
    ManualTasks tasks;
    std::unique_ptr<TaskQueue> queue = tasks.queue();
    int calls = 0;
    std::optional<AudioDeviceWatcher> watcher{std::in_place, audio, *queue, [this] { ++calls; }};
};

TEST_F(AudioDeviceWatcherTest, ADeviceOrADefaultThatChangesIsToldOnTheQueue) {
    for (const std::uint32_t selector : selectors) {
        calls = 0;
        std::thread([&] { audio.tell(audioSystem, {selector}); }).join();
        EXPECT_EQ(calls, 0);
        tasks.run();
        EXPECT_EQ(calls, 1);
    }
}

TEST_F(AudioDeviceWatcherTest, OtherNewsAreNotTold) {
    audio.tell(audioSystem, {AudioSelector::processes});
    audio.tell(audioSystem, {AudioSelector::devices, AudioScope::input});
    audio.tell(7, {AudioSelector::devices});
    tasks.run();
    EXPECT_EQ(calls, 0);
}

TEST_F(AudioDeviceWatcherTest, ItsEndIsTheEndOfAllListening) {
    EXPECT_TRUE(audio.hasListeners());
    watcher.reset();
    EXPECT_FALSE(audio.hasListeners());
}

TEST_F(AudioDeviceWatcherTest, NewsOnTheirWayAreNotToldAfterItsEnd) {
    audio.tell(audioSystem, {AudioSelector::devices}); // on the queue already
    const auto late = audio.callsUnderWay(audioSystem, {AudioSelector::devices});
    watcher.reset();
    tasks.run();
    EXPECT_EQ(calls, 0);
    queue.reset(); // and a call on another thread may outlast even the queue
    for (const auto& call : late) call();
    EXPECT_TRUE(tasks.isEmpty());
}

TEST_F(AudioDeviceWatcherTest, WhoIsToldMayEndTheWatching) {
    AudioDeviceWatcher* second = nullptr;
    std::unique_ptr<AudioDeviceWatcher> owner;
    owner = std::make_unique<AudioDeviceWatcher>(audio, *queue, [&, text = std::string(99, 'x')] {
        second = owner.get();
        owner.reset();
        EXPECT_EQ(text.size(), 99u); // what the function holds is still there
    });
    audio.tell(audioSystem, {AudioSelector::defaultOutput});
    audio.tell(audioSystem, {AudioSelector::defaultOutput});
    tasks.run();
    EXPECT_NE(second, nullptr);
    EXPECT_EQ(owner, nullptr);
    EXPECT_EQ(calls, 2);
}

TEST(AudioDeviceWatcher, ASystemThatRefusesListenersTellsNothing) {
    FakeAudio audio;
    audio.refuseListeners(true);
    ManualTasks tasks;
    const auto queue = tasks.queue();
    const AudioDeviceWatcher watcher(audio, *queue, [] { FAIL(); });
    audio.tell(audioSystem, {AudioSelector::devices});
    tasks.run();
}

} // namespace
} // namespace tavero
