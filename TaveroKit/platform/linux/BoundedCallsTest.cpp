#include "platform/linux/BoundedCalls.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <thread>

namespace tavero {
namespace {

constexpr std::chrono::minutes plenty{5};

TEST(BoundedCalls, WorkThatEndsInTimeIsDone) {
    BoundedCalls calls(plenty);
    int done = 0;
    EXPECT_TRUE(calls.run([&] { ++done; }));
    EXPECT_TRUE(calls.run([&] { ++done; }));
    EXPECT_EQ(done, 2);
}

TEST(BoundedCalls, WorkThatHangsIsLeftAloneAndNothingElseIsBegun) {
    BoundedCalls calls(std::chrono::milliseconds(1));
    std::promise<void> end;
    EXPECT_FALSE(calls.run([held = end.get_future().share()] { held.wait(); }));
    bool begun = false;
    EXPECT_FALSE(calls.run([&] { begun = true; }));
    EXPECT_FALSE(begun);
    end.set_value();
}

TEST(BoundedCalls, OnceItHasEndedTheNextOneRuns) {
    BoundedCalls calls(std::chrono::milliseconds(1));
    std::promise<void> end;
    ASSERT_FALSE(calls.run([held = end.get_future().share()] { held.wait(); }));
    end.set_value();
    const auto done = std::make_shared<std::atomic<int>>(0);
    while (!calls.run([done] { ++*done; })) std::this_thread::yield();
    EXPECT_GE(*done, 1);
}

TEST(BoundedCalls, ItMayGoAwayWhileWorkHangs) {
    std::promise<void> end;
    const auto over = std::make_shared<std::promise<void>>();
    {
        BoundedCalls calls(std::chrono::milliseconds(1));
        ASSERT_FALSE(calls.run([held = end.get_future().share(), over] {
            held.wait();
            over->set_value();
        }));
    }
    end.set_value();
    over->get_future().wait();
}

} // namespace
} // namespace tavero
