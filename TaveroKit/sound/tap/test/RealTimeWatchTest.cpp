#include "sound/tap/test/RealTimeWatch.h"

#include <gtest/gtest.h>

#include <linux/futex.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <shared_mutex>
#include <thread>

namespace tavero {
namespace {

template <typename Code>
RealTimeFaults faultsOf(Code code) {
    resetRealTimeFaults();
    {
        const RealTimeScope scope;
        code();
    }
    return realTimeFaults();
}

// Out of the compiler's sight, or it would leave the allocation out.
void* volatile kept = nullptr;

TEST(RealTimeWatch, NoticesNewAndDelete) {
    EXPECT_EQ(faultsOf([] { kept = new int; }).allocations, 1);
    EXPECT_EQ(faultsOf([] { delete static_cast<int*>(kept); }).allocations, 1);
}

TEST(RealTimeWatch, NoticesEachCallOfTheAllocator) {
    EXPECT_EQ(faultsOf([] { kept = std::malloc(10); }).allocations, 1);
    EXPECT_EQ(faultsOf([] { kept = std::realloc(kept, 1000); }).allocations, 1);
    EXPECT_EQ(faultsOf([] { std::free(kept); }).allocations, 1);
    EXPECT_EQ(faultsOf([] { kept = std::calloc(10, 10); }).allocations, 1);
    std::free(kept);
    EXPECT_EQ(faultsOf([] { kept = std::aligned_alloc(64, 64); }).allocations, 1);
    std::free(kept);
}

TEST(RealTimeWatch, NoticesLocks) {
    std::mutex mutex;
    EXPECT_EQ(faultsOf([&] { const std::lock_guard lock(mutex); }).locks, 1);
    EXPECT_EQ(faultsOf([&] { const std::unique_lock lock(mutex, std::try_to_lock); }).locks, 1);
    std::shared_mutex shared;
    EXPECT_EQ(faultsOf([&] { const std::shared_lock lock(shared); }).locks, 1);
    EXPECT_EQ(faultsOf([&] { const std::unique_lock lock(shared); }).locks, 1);
}

TEST(RealTimeWatch, NoticesWaits) {
    EXPECT_EQ(faultsOf([] { std::this_thread::sleep_for(std::chrono::nanoseconds(1)); }).waits, 1);
    pollfd none = {};
    EXPECT_EQ(faultsOf([&] { ::poll(&none, 0, 0); }).waits, 1);
    // What a wait on an atomic value comes down to; here the value is another one already.
    std::uint32_t value = 0;
    EXPECT_EQ(faultsOf([&] { ::syscall(SYS_futex, &value, FUTEX_WAIT, 1, nullptr); }).waits, 1);
}

TEST(RealTimeWatch, CountsOnlyTheThreadInTheScope) {
    const RealTimeFaults faults = faultsOf([] {});
    EXPECT_EQ(faults, RealTimeFaults{});
    resetRealTimeFaults();
    kept = std::malloc(10);
    std::free(kept);
    EXPECT_EQ(realTimeFaults(), RealTimeFaults{});

    std::atomic<bool> go = false;
    std::thread other([&] {
        while (!go) std::this_thread::yield();
        kept = std::malloc(10);
        std::free(kept);
        go = false;
    });
    EXPECT_EQ(faultsOf([&] {
                  go = true;
                  while (go) std::this_thread::yield();
              }),
              RealTimeFaults{});
    other.join();
}

TEST(RealTimeWatch, ScopesNest) {
    EXPECT_EQ(faultsOf([] {
                  { const RealTimeScope inner; }
                  kept = std::malloc(10);
              }).allocations,
              1);
    std::free(kept);
}

} // namespace
} // namespace tavero
