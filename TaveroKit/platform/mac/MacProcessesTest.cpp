#include "platform/mac/MacProcesses.h"

#include "apps/ProcessSampler.h"
#include "platform/sim/SimMachine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <vector>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int most = std::numeric_limits<int>::max();

// Calls that answer whatever they are set to, sense or not.
struct FakeTable final : MacProcessTable {
    int expected = 1;                  // the answer without room
    std::vector<std::int32_t> pids{7}; // as many as there is room for are written
    std::optional<int> listed;         // the answer with room, if not the number written
    std::size_t room = 0;              // of the last list

    int refusal = 0;
    Usage used{.userTime = 2, .systemTime = 3, .footprint = 4, .start = 1};
    int pathResult = 1;
    std::string pathBytes = "/x";
    int taskResult = 96;
    TaskInfo task{.threads = 5};
    int tasksAsked = 0;
    std::uint64_t time = 1;
    Timebase base{.numer = 125, .denom = 3};

    int listAllPids(std::span<std::int32_t> list) override {
        if (list.empty()) return expected;
        room = list.size();
        const std::size_t count = std::min(pids.size(), room);
        std::copy_n(pids.begin(), count, list.begin());
        return listed.value_or(static_cast<int>(count));
    }
    int usage(std::int32_t, Usage& usage) override {
        usage = used; // even if it refuses, as a call may leave anything behind
        return refusal;
    }
    int path(std::int32_t, std::span<char> buffer) override {
        std::copy_n(pathBytes.begin(), std::min(pathBytes.size(), buffer.size()), buffer.begin());
        return pathResult;
    }
    int taskInfo(std::int32_t, TaskInfo& info) override {
        ++tasksAsked;
        info = task;
        return taskResult;
    }
    std::uint64_t absoluteTime() override { return time; }
    Timebase timebase() override { return base; }
};

struct MacProcessesTest : testing::Test {
    std::shared_ptr<FakeTable> table = std::make_shared<FakeTable>();

    std::vector<ProcessCounters> processes(bool threads = false) {
        MacProcesses source(table);
        const auto processes = source.processes(threads);
        return {processes.begin(), processes.end()};
    }
    std::vector<std::int32_t> pids() {
        std::vector<std::int32_t> pids;
        for (const ProcessCounters& process : processes()) pids.push_back(process.pid);
        return pids;
    }
    std::optional<std::string> path() { return MacProcesses(table).path(7); }
};

TEST_F(MacProcessesTest, TheListHasRoomForSixtyFourMoreThanExpected) {
    table->expected = 2;
    table->pids = {9, 8, 7}; // one was born in between
    EXPECT_THAT(pids(), ElementsAre(9, 8, 7));
    EXPECT_EQ(table->room, 66u);
}

TEST_F(MacProcessesTest, AListThatIsShorterThanExpectedIsTakenAsItIs) {
    table->expected = 500;
    table->pids = {9};
    EXPECT_THAT(pids(), ElementsAre(9));
    table->pids = {};
    EXPECT_THAT(pids(), IsEmpty());
}

TEST_F(MacProcessesTest, NothingExpectedOrAFailureIsAnEmptyList) {
    for (const int expected : {0, -1, std::numeric_limits<int>::min()}) {
        table->expected = expected;
        EXPECT_THAT(pids(), IsEmpty()) << expected;
    }
    EXPECT_EQ(table->room, 0u); // and was not asked again
}

TEST_F(MacProcessesTest, ASecondCallThatFailsKeepsNothing) {
    for (const int listed : {0, -1, std::numeric_limits<int>::min()}) {
        table->listed = listed;
        EXPECT_THAT(pids(), IsEmpty()) << listed;
    }
}

TEST_F(MacProcessesTest, ACountBeyondTheRoomIsCutToIt) {
    table->expected = 1;
    table->pids.assign(300, 7);
    table->listed = most;
    EXPECT_THAT(pids(), SizeIs(65));
}

TEST_F(MacProcessesTest, AnAbsurdExpectationTakesNoAbsurdRoom) {
    table->expected = most;
    EXPECT_THAT(pids(), ElementsAre(7));
    EXPECT_LT(table->room, 1'000'000u);
}

TEST_F(MacProcessesTest, TheKernelAndPidsBelowOneAreLeftOut) {
    table->pids = {0, -1, 3, std::numeric_limits<std::int32_t>::min()};
    EXPECT_THAT(pids(), ElementsAre(3));
}

TEST_F(MacProcessesTest, CountersAreThoseOfTheUsage) {
    table->used = {.userTime = 100,
                   .systemTime = 20,
                   .footprint = 3,
                   .start = 4,
                   .diskRead = 5,
                   .diskWritten = 6};
    EXPECT_THAT(processes(), ElementsAre(ProcessCounters{.pid = 7,
                                                         .start = 4,
                                                         .hasUsage = true,
                                                         .cpuTime = 120,
                                                         .memory = 3,
                                                         .diskRead = 5,
                                                         .diskWritten = 6}));
}

TEST_F(MacProcessesTest, TimesThatTogetherPassTheWidthStayAtTheLargest) {
    table->used.userTime = table->used.systemTime = ~0ull;
    EXPECT_EQ(processes().front().cpuTime, ~0ull);
}

TEST_F(MacProcessesTest, ARefusedProcessIsListedWithoutAnyFigure) {
    table->refusal = -1;
    EXPECT_THAT(processes(true), ElementsAre(ProcessCounters{.pid = 7}));
}

TEST_F(MacProcessesTest, ThreadsAreCountedOnlyWhenAskedFor) {
    EXPECT_EQ(processes(false).front().threads, 0);
    EXPECT_EQ(table->tasksAsked, 0);
    EXPECT_EQ(processes(true).front().threads, 5);
}

TEST_F(MacProcessesTest, AThreadCountThatFailsOrIsNegativeIsZero) {
    for (const int result : {0, -1}) {
        table->taskResult = result;
        EXPECT_EQ(processes(true).front().threads, 0);
    }
    table->taskResult = 1;
    table->task.threads = -5;
    EXPECT_EQ(processes(true).front().threads, 0);
}

TEST_F(MacProcessesTest, APathEndsAtItsFirstZeroByte) {
    table->pathBytes = std::string("/bin/sh\0/junk", 13);
    EXPECT_EQ(path(), "/bin/sh");
}

TEST_F(MacProcessesTest, APathWithoutAnEndFillsTheBuffer) {
    table->pathBytes = std::string(5'000, 'a');
    for (const int result : {1, 4096, most}) {
        table->pathResult = result;
        EXPECT_EQ(path(), std::string(4096, 'a'));
    }
}

TEST_F(MacProcessesTest, AFailedOrEmptyPathIsAbsent) {
    for (const int result : {0, -1, std::numeric_limits<int>::min()}) {
        table->pathResult = result;
        EXPECT_EQ(path(), std::nullopt) << result;
    }
    table->pathResult = 12;
    table->pathBytes.clear();
    EXPECT_EQ(path(), std::nullopt);
}

TEST_F(MacProcessesTest, AProcessWithoutAPathIsTriedAgainInTheNextPass) {
    MacProcesses source(table);
    ProcessSampler sampler;
    table->pathResult = 0;
    EXPECT_THAT(sampler.sample(source, false), IsEmpty());
    table->pathResult = 2;
    EXPECT_THAT(sampler.sample(source, false), SizeIs(1));
}

TEST_F(MacProcessesTest, ATimebaseWithoutADenominatorGivesNoRates) {
    table->base = {.numer = 0, .denom = 0};
    MacProcesses source(table);
    ProcessSampler sampler;
    sampler.sample(source, false);
    table->time += 1'000'000;
    table->used.userTime += 1'000'000;
    table->used.diskRead += 1'000'000;
    const ProcessSample sample = sampler.sample(source, false).front();
    EXPECT_EQ(sample.cpu, 0);
    EXPECT_EQ(sample.diskReadRate, 0);
    EXPECT_EQ(sample.memory, 4u);
}

TEST_F(MacProcessesTest, TheTimebaseIsReadOnce) {
    MacProcesses source(table);
    table->base = {};
    EXPECT_EQ(source.timebase().numer, 125u);
}

TEST(MacProcesses, FourThreadsThatWorkAreFourCores) {
    SimMachine sim;
    SimState& state = sim.state();
    state.processes = {
        {.pid = 5, .path = "/opt/one", .usage = MacProcessTable::Usage{.start = 1}},
        {.pid = 6, .path = "/opt/four", .usage = MacProcessTable::Usage{.start = 2}}};
    MacProcesses source(sim.processTable());
    ProcessSampler sampler;
    sampler.sample(source, false);
    state.absoluteTime += 24'000'000;
    state.processes[0].usage->userTime = 24'000'000;
    state.processes[1].usage->systemTime = 4 * 24'000'000;
    const auto samples = sampler.sample(source, false);
    EXPECT_NEAR(samples[0].cpu, 1, 1e-9);
    EXPECT_NEAR(samples[1].cpu, 4, 1e-9);
}

TEST(MacProcesses, AProcessThatEndsInTheMiddleOfAPassIsListedWithoutFiguresOrNotAtAll) {
    SimMachine sim;
    sim.state().processes = {{.pid = 5, .path = "/opt/a", .usage = MacProcessTable::Usage{}}};
    MacProcesses source(sim.processTable());
    ASSERT_THAT(source.processes(false), SizeIs(1));
    sim.state().end(5);
    EXPECT_EQ(source.path(5), std::nullopt);
    EXPECT_THAT(source.processes(false), IsEmpty());
}

TEST(MacProcesses, ARefusedProcessKeepsItsIdentityThoughItsPathIsNoLongerTold) {
    SimMachine sim;
    sim.state().processes = {{.pid = 5, .path = "/usr/libexec/trustd", .usage = std::nullopt}};
    MacProcesses source(sim.processTable());
    ProcessSampler sampler;
    sampler.sample(source, false);
    sim.state().processes[0].path.reset();
    EXPECT_EQ(sampler.sample(source, false).front().name, "trustd");
}

} // namespace
} // namespace tavero
