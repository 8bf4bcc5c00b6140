#include "time/ClockQueue.h"

#include "time/VirtualTime.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace tavero {
namespace {

using namespace std::chrono_literals;

TEST(ClockQueue, TasksRunInOrderAndNeverFromWithinTheCall) {
    VirtualTime time;
    ClockQueue queue(time);
    std::vector<int> ran;
    queue.async([&] {
        ran.push_back(1);
        queue.async([&] { ran.push_back(3); });
    });
    queue.async([&] { ran.push_back(2); });
    EXPECT_TRUE(ran.empty());
    time.advance(0s);
    EXPECT_EQ(ran, (std::vector<int>{1, 2, 3}));
}

TEST(ClockQueue, ADelayedTaskRunsWhenItsTimeHasCome) {
    VirtualTime time;
    ClockQueue queue(time);
    int runs = 0;
    queue.after(50ms, [&] { ++runs; });
    time.advance(49ms);
    EXPECT_EQ(runs, 0);
    time.advance(1ms);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(time.pending(), 0u);
}

TEST(ClockQueue, OnItsOwnThreadSyncRunsAtOnce) {
    VirtualTime time;
    ClockQueue queue(time);
    int runs = 0;
    queue.sync([&] { ++runs; });
    EXPECT_EQ(runs, 1);
}

TEST(ClockQueue, WhatIsStillToComeEndsWithTheQueue) {
    VirtualTime time;
    int runs = 0;
    std::optional<ClockQueue> queue(time);
    queue->async([&] { ++runs; });
    queue->after(1s, [&] { ++runs; });
    const auto owned = std::make_shared<int>();
    queue->async([owned] {});
    queue.reset();
    EXPECT_EQ(owned.use_count(), 1);
    EXPECT_EQ(time.pending(), 0u);
    time.advance(2s);
    EXPECT_EQ(runs, 0);
}

TEST(ClockQueue, APosterMayOutliveItsQueue) {
    VirtualTime time;
    int runs = 0;
    std::optional<ClockQueue> queue(time);
    const ClockQueue::Poster post = queue->poster();
    post([&] { ++runs; });
    time.advance(0s);
    EXPECT_EQ(runs, 1);
    queue.reset();
    post([&] { ++runs; });
    std::thread([&] { post([&] { ++runs; }); }).join();
    time.advance(1s);
    EXPECT_EQ(runs, 1);
}

// With Qt's events and another thread, for a few milliseconds.
class ClockQueueOnThisMachine : public testing::Test {
  protected:
    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    QEventLoop loop;
    std::unique_ptr<Clock> clock = hostClock();
};

TEST_F(ClockQueueOnThisMachine, TasksFromAnotherThreadRunInOrderOnThisOne) {
    ClockQueue queue(*clock);
    const std::thread::id mainThread = std::this_thread::get_id();
    std::vector<int> ran;
    std::thread other([&] {
        for (int i = 0; i < 100; ++i)
            queue.async([&, i] {
                EXPECT_EQ(std::this_thread::get_id(), mainThread);
                ran.push_back(i);
                if (i == 99) loop.quit();
            });
    });
    loop.exec();
    other.join();
    ASSERT_EQ(ran.size(), 100u);
    EXPECT_TRUE(std::is_sorted(ran.begin(), ran.end()));
}

TEST_F(ClockQueueOnThisMachine, TasksOfBothThreadsKeepTheOrderInWhichTheyCame) {
    ClockQueue queue(*clock);
    std::vector<int> ran;
    std::thread([&] { queue.async([&] { ran.push_back(1); }); }).join();
    queue.async([&] { ran.push_back(2); });
    queue.after(5ms, [&] { loop.quit(); });
    loop.exec();
    EXPECT_EQ(ran, (std::vector<int>{1, 2}));
}

TEST_F(ClockQueueOnThisMachine, SyncFromAnotherThreadReturnsWhenTheTaskHasRun) {
    ClockQueue queue(*clock);
    bool ranFirst = false;
    std::thread other([&] {
        bool ran = false;
        queue.sync([&] { ran = true; });
        ranFirst = ran;
        queue.async([&] { loop.quit(); });
    });
    loop.exec();
    other.join();
    EXPECT_TRUE(ranFirst);
}

// Whatever the moment: the thread sanitizer watches.
TEST_F(ClockQueueOnThisMachine, ItMayGoWhileAnotherThreadPosts) {
    for (int round = 0; round < 50; ++round) {
        std::optional<ClockQueue> queue(*clock);
        const ClockQueue::Poster post = queue->poster();
        std::thread other([&] {
            for (int i = 0; i < 20; ++i) post([] {});
        });
        QCoreApplication::processEvents();
        queue.reset();
        other.join();
        QCoreApplication::processEvents();
    }
}

} // namespace
} // namespace tavero
