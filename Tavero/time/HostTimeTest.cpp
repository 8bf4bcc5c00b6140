#include "time/Clock.h"
#include "time/ThreadWorker.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <vector>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// These run the real clock and a real thread, for some milliseconds.
class HostTimeOnThisMachine : public testing::Test {
  protected:
    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    QEventLoop loop;
};

TEST_F(HostTimeOnThisMachine, CallsComeInOrderAndNotBeforeTheirTime) {
    const std::unique_ptr<Clock> clock = hostClock();
    const auto start = std::chrono::steady_clock::now();
    std::vector<int> heard;
    const Timer last = clock->after(30ms, [&] {
        heard.push_back(3);
        loop.quit();
    });
    const Timer second = clock->after(10ms, [&] { heard.push_back(2); });
    const Timer first = clock->after(0ms, [&] { heard.push_back(1); });
    EXPECT_TRUE(heard.empty());
    loop.exec();
    EXPECT_EQ(heard, (std::vector<int>{1, 2, 3}));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 30ms);
}

TEST_F(HostTimeOnThisMachine, ADestroyedTimerIsNeverCalled) {
    const std::unique_ptr<Clock> clock = hostClock();
    bool called = false;
    Timer cancelled = clock->after(1ms, [&] { called = true; });
    cancelled.reset();
    const Timer end = clock->after(10ms, [&] { loop.quit(); });
    loop.exec();
    EXPECT_FALSE(called);
}

TEST_F(HostTimeOnThisMachine, AnActionMayReplaceItsOwnTimer) {
    const std::unique_ptr<Clock> clock = hostClock();
    int calls = 0;
    Timer timer;
    std::function<void()> again = [&] {
        if (++calls == 5) return loop.quit();
        timer = clock->after(1ms, again);
    };
    timer = clock->after(1ms, again);
    loop.exec();
    EXPECT_EQ(calls, 5);
}

TEST_F(HostTimeOnThisMachine, JobsRunInOrderOnAnotherThreadAndReportOnThisOne) {
    ThreadWorker worker;
    const std::thread::id mainThread = std::this_thread::get_id();
    std::vector<int> done;
    for (int i = 0; i < 100; ++i)
        worker.call([] { return std::this_thread::get_id(); },
                    [&, i](std::thread::id ranOn) {
                        EXPECT_NE(ranOn, mainThread);
                        EXPECT_EQ(std::this_thread::get_id(), mainThread);
                        done.push_back(i);
                        if (i == 99) loop.quit();
                    });
    loop.exec();
    ASSERT_EQ(done.size(), 100u);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(done[static_cast<std::size_t>(i)], i);
}

TEST_F(HostTimeOnThisMachine, ADestroyedWorkerFinishesItsJobAndReportsNothing) {
    std::atomic<bool> started = false;
    std::atomic<bool> finished = false;
    bool reported = false;
    {
        ThreadWorker worker;
        worker.call(
            [&] {
                started = true;
                started.notify_one();
                finished = true;
                return 0;
            },
            [&](int) { reported = true; });
        started.wait(false);
    }
    EXPECT_TRUE(finished);
    QCoreApplication::processEvents();
    EXPECT_FALSE(reported);
}

} // namespace
} // namespace tavero
