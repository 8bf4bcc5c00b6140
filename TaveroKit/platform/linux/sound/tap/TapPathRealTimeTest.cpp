#include "platform/linux/sound/tap/TapPath.h"

#include "platform/linux/sound/tap/test/PathBench.h"
#include "sound/tap/test/RealTimeWatch.h"

#include <pipewire/data-loop.h>

#include <cstdlib>
#include <memory>

using namespace tavero;
using namespace tavero::test;

namespace {

std::unique_ptr<RealTimeScope> scope;

int watch(spa_loop*, bool, std::uint32_t, const void*, std::size_t, void*) {
    scope = std::make_unique<RealTimeScope>();
    resetRealTimeFaults();
    return 0;
}

int endWatch(spa_loop*, bool, std::uint32_t, const void*, std::size_t, void*) {
    void* volatile memory = std::malloc(1);
    std::free(memory);
    scope.reset();
    return 0;
}

} // namespace

TEST_F(TapPathService, ItsThreadAsksForNoMemoryAndTakesNoLock) {
    Path path(0.5f);
    const Program app(player("level"));
    Recorder recorder(graph, {"test.headset"}, "256/48000");
    EXPECT_TRUE(recorder.waitForLevel(0, 0.4f));
    // All that the thread does between two cycles is counted as well, and what is the library's.
    const auto onItsThread = [&](spa_invoke_func_t call) {
        const TestGraph::Lock lock(path.graph);
        pw_context* context = pw_core_get_context(path.graph.core());
        pw_data_loop_invoke(pw_context_get_data_loop(context), call, 0, nullptr, 0, true, nullptr);
    };
    onItsThread(watch);
    recorder.clear();
    EXPECT_TRUE(recorder.waitForFrames(10'000));
    const RealTimeFaults faults = realTimeFaults();
    onItsThread(endWatch);
    EXPECT_EQ(faults.allocations, 0);
    EXPECT_EQ(faults.locks, 0);
    EXPECT_EQ(faults.waits, 0);
    EXPECT_GT(realTimeFaults().allocations, 0) << "the thread was watched, up to the last call";
}
