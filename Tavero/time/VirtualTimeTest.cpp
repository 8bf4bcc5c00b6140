#include "time/VirtualTime.h"

#include <gtest/gtest.h>

#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;

TEST(VirtualTime, CallsComeInTheOrderOfTheirTimes) {
    VirtualTime time;
    std::string heard;
    const Timer late = time.after(2s, [&] { heard += 'c'; });
    const Timer early = time.after(1s, [&] { heard += 'a'; });
    const Timer equal = time.after(1s, [&] { heard += 'b'; });
    time.advance(1s);
    EXPECT_EQ(heard, "ab");
    time.advance(1s);
    EXPECT_EQ(heard, "abc");
}

TEST(VirtualTime, NowIsTheDueTimeDuringACall) {
    VirtualTime time;
    const Date start = time.now();
    Date seen;
    const Timer timer = time.after(1500ms, [&] { seen = time.now(); });
    time.advance(1h);
    EXPECT_EQ(seen, start + 1500ms);
    EXPECT_EQ(time.now(), start + 1h);
}

TEST(VirtualTime, ADestroyedTimerIsNeverCalled) {
    VirtualTime time;
    bool called = false;
    Timer timer = time.after(1s, [&] { called = true; });
    timer.reset();
    time.advance(1h);
    EXPECT_FALSE(called);
    EXPECT_EQ(time.pending(), 0u);
}

TEST(VirtualTime, AnActionMayDestroyItsOwnTimerAndAskForTheNext) {
    VirtualTime time;
    int calls = 0;
    Timer timer;
    std::function<void()> again = [&] {
        ++calls;
        timer = time.after(5s, again);
    };
    timer = time.after(5s, again);
    time.advance(24h * 30);
    EXPECT_EQ(calls, 30 * 24 * 3600 / 5);
}

TEST(VirtualTime, ATurnedWallClockMovesNoCall) {
    VirtualTime time;
    bool called = false;
    const Timer timer = time.after(10s, [&] { called = true; });
    time.setWallClock(time.now() + 1h);
    time.advance(9s);
    EXPECT_FALSE(called);
    time.advance(1s);
    EXPECT_TRUE(called);
}

TEST(VirtualTime, AWorkersJobIsReportedWhenItsTimeHasPassed) {
    VirtualTime time;
    const std::unique_ptr<Worker> worker = time.worker(200ms);
    int result = 0;
    worker->call([] { return 7; }, [&](int value) { result = value; });
    EXPECT_EQ(result, 0);
    time.advance(199ms);
    EXPECT_EQ(result, 0);
    time.advance(1ms);
    EXPECT_EQ(result, 7);
}

TEST(VirtualTime, ADestroyedWorkerReportsNothing) {
    VirtualTime time;
    std::unique_ptr<Worker> worker = time.worker();
    bool reported = false;
    worker->call([] { return 1; }, [&](int) { reported = true; });
    worker.reset();
    time.advance(1s);
    EXPECT_FALSE(reported);
}

} // namespace
} // namespace tavero
