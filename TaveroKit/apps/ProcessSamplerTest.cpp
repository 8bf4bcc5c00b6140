#include "apps/ProcessSampler.h"

#include "apps/ProcessesOf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t second = 1'000'000'000;

// A machine whose processes are set by hand.
struct FakeProcesses final : ProcessSource {
    std::vector<ProcessCounters> now;
    std::map<std::int32_t, std::string> paths;
    std::map<std::int32_t, AppIdentity> owners;
    std::uint64_t time = 100 * second;
    Timebase base;
    int pathsAsked = 0;

    std::span<const ProcessCounters> processes(bool threads) override {
        if (!threads)
            for (ProcessCounters& process : now) process.threads = 0;
        return now;
    }
    std::optional<std::string> path(std::int32_t pid) override {
        ++pathsAsked;
        const auto found = paths.find(pid);
        return found == paths.end() ? std::nullopt : std::optional(found->second);
    }
    std::optional<AppIdentity> owner(std::int32_t pid, const std::string&) override {
        const auto found = owners.find(pid);
        return found == owners.end() ? std::nullopt : std::optional(found->second);
    }
    std::uint64_t clock() override { return time; }
    Timebase timebase() override { return base; }

    void add(ProcessCounters process, std::string path) {
        process.hasUsage = true;
        now.push_back(process);
        paths[process.pid] = std::move(path);
    }
};

class ProcessSamplerTest : public testing::Test {
  protected:
    std::vector<ProcessSample> sample(bool threads = false) {
        const auto samples = sampler.sample(source, threads);
        return {samples.begin(), samples.end()};
    }
    std::vector<ProcessSample> sampleAfter(std::uint64_t ticks) {
        source.time += ticks;
        return sample();
    }

    FakeProcesses source;
    ProcessSampler sampler;
};

std::vector<std::int32_t> pids(const std::vector<ProcessSample>& samples) {
    std::vector<std::int32_t> result;
    result.reserve(samples.size());
    for (const ProcessSample& s : samples) result.push_back(s.pid);
    return result;
}

TEST_F(ProcessSamplerTest, TheFirstCallHasTotalsButNoRates) {
    source.add({.pid = 7,
                .start = 1,
                .cpuTime = 5 * second,
                .memory = 4096,
                .diskRead = 10,
                .diskWritten = 20,
                .threads = 3},
               "/Applications/Web.app/Contents/MacOS/Web");
    EXPECT_THAT(sample(true),
                ElementsAre(ProcessSample{.pid = 7,
                                          .name = "Web",
                                          .path = "/Applications/Web.app/Contents/MacOS/Web",
                                          .memory = 4096,
                                          .diskRead = 10,
                                          .diskWritten = 20,
                                          .hasUsage = true,
                                          .app = {AppIdentity::Kind::app, "/Applications/Web.app"},
                                          .threads = 3}));
}

TEST_F(ProcessSamplerTest, OneWholeCoreIsOneAndFourThreadsAreFour) {
    source.add({.pid = 7}, "/opt/one");
    source.add({.pid = 8}, "/opt/four");
    sample();
    source.now[0].cpuTime += second;
    source.now[1].cpuTime += 4 * second;
    const auto samples = sampleAfter(second);
    EXPECT_DOUBLE_EQ(samples[0].cpu, 1.0);
    EXPECT_DOUBLE_EQ(samples[1].cpu, 4.0);
}

TEST_F(ProcessSamplerTest, RatesAreBytesASecondSinceThePreviousCall) {
    source.add({.pid = 7, .diskRead = 100, .diskWritten = 1000}, "/opt/a");
    sample();
    source.now[0].diskRead = 200;
    source.now[0].diskWritten = 1600;
    const auto samples = sampleAfter(2 * second);
    EXPECT_DOUBLE_EQ(samples[0].diskReadRate, 50);
    EXPECT_DOUBLE_EQ(samples[0].diskWriteRate, 300);
    EXPECT_EQ(samples[0].diskWritten, 1600u);
}

TEST_F(ProcessSamplerTest, TicksBecomeNanosecondsByTheTimebase) {
    source.base = {125, 3};
    source.add({.pid = 7}, "/opt/a");
    sample();
    source.now[0].cpuTime = 12'000'000;
    source.now[0].diskRead = 500;
    const auto samples = sampleAfter(24'000'000); // a second
    EXPECT_DOUBLE_EQ(samples[0].cpu, 0.5);
    EXPECT_DOUBLE_EQ(samples[0].diskReadRate, 500);
}

TEST_F(ProcessSamplerTest, AProcessSeenLaterStartsAtZeroHoweverHardItWorked) {
    source.add({.pid = 7}, "/opt/a");
    sample();
    source.add({.pid = 8, .cpuTime = 9 * second, .diskRead = 9999}, "/opt/b");
    const auto samples = sampleAfter(second);
    EXPECT_EQ(samples[1].cpu, 0);
    EXPECT_EQ(samples[1].diskReadRate, 0);
    EXPECT_EQ(samples[1].diskRead, 9999u);
}

TEST_F(ProcessSamplerTest, AReusedPidGetsANewIdentityButTheOldBaseline) {
    source.add({.pid = 7, .start = 1, .cpuTime = 5 * second}, "/opt/old");
    sample();
    source.now[0].start = 2;
    source.now[0].cpuTime = 1 * second;
    source.paths[7] = "/opt/new";
    auto samples = sampleAfter(second);
    EXPECT_EQ(samples[0].name, "new");
    EXPECT_EQ(samples[0].app.id, "new");
    EXPECT_EQ(samples[0].cpu, 0); // below the old counter

    source.now[0].start = 3;
    source.now[0].cpuTime = 2 * second;
    samples = sampleAfter(second);
    EXPECT_DOUBLE_EQ(samples[0].cpu, 1); // above it
}

TEST_F(ProcessSamplerTest, DiskCountersThatStepBackWrap) {
    source.add({.pid = 7, .diskRead = 10}, "/opt/a");
    sample();
    source.now[0].diskRead = 9;
    EXPECT_DOUBLE_EQ(sampleAfter(second)[0].diskReadRate, 18446744073709551615.0);
}

TEST_F(ProcessSamplerTest, ACPUCounterThatStepsBackGivesZero) {
    source.add({.pid = 7, .cpuTime = 10}, "/opt/a");
    sample();
    source.now[0].cpuTime = 9;
    EXPECT_EQ(sampleAfter(second)[0].cpu, 0);
}

TEST_F(ProcessSamplerTest, AnIdentityIsFoundOutOnce) {
    source.add({.pid = 7, .start = 1}, "/opt/a");
    sample();
    source.paths[7] = "/opt/other";
    EXPECT_EQ(sampleAfter(second)[0].path, "/opt/a");
    EXPECT_EQ(source.pathsAsked, 1);
}

TEST_F(ProcessSamplerTest, AProcessThatReplacesItsProgramGetsANewIdentityAndKeepsItsBaseline) {
    source.add({.pid = 7, .start = 1}, "/bin/sh");
    sample();
    source.now[0].revision = 1;
    source.now[0].cpuTime = second / 2;
    source.paths[7] = "/Applications/Web.app/x";
    const auto samples = sampleAfter(second);
    EXPECT_EQ(samples[0].app.id, "/Applications/Web.app");
    EXPECT_DOUBLE_EQ(samples[0].cpu, 0.5);
}

TEST_F(ProcessSamplerTest, AProcessWithoutAPathIsTriedAgainInTheNextCall) {
    source.add({.pid = 7}, "/opt/a");
    source.paths.clear();
    EXPECT_THAT(sample(), IsEmpty());
    source.paths[7] = "/opt/a";
    source.now[0].cpuTime = 5;
    const auto samples = sampleAfter(second);
    EXPECT_THAT(pids(samples), ElementsAre(7));
    EXPECT_EQ(samples[0].cpu, 0);
}

TEST_F(ProcessSamplerTest, ARefusedProcessIsListedAndKeepsItsIdentity) {
    source.now.push_back({.pid = 7, .memory = 99, .threads = 9});
    source.paths[7] = "/usr/libexec/secretd";
    const ProcessSample refused{
        .pid = 7, .name = "secretd", .path = "/usr/libexec/secretd", .app = AppIdentity::system};
    EXPECT_THAT(sample(true), ElementsAre(refused));
    EXPECT_THAT(sample(true), ElementsAre(refused));
    EXPECT_EQ(source.pathsAsked, 1);
}

TEST_F(ProcessSamplerTest, AProcessThatComesToBeRefusedLosesItsNumbersAndItsBaseline) {
    source.add({.pid = 7, .start = 5, .cpuTime = 1, .memory = 4, .diskRead = 3}, "/opt/a");
    sample();
    const ProcessCounters measured = source.now[0];
    source.now[0] = {.pid = 7};
    EXPECT_THAT(
        sampleAfter(second),
        ElementsAre(ProcessSample{
            .pid = 7, .name = "a", .path = "/opt/a", .app = {AppIdentity::Kind::tool, "a"}}));
    source.now[0] = measured;
    source.now[0].cpuTime = second;
    source.now[0].diskRead = 1000;
    const auto samples = sampleAfter(second);
    EXPECT_EQ(samples[0].cpu, 0);
    EXPECT_EQ(samples[0].diskReadRate, 0);
}

TEST_F(ProcessSamplerTest, PidsBelowOneAreSkipped) {
    source.add({.pid = 0}, "/kernel");
    source.add({.pid = -3}, "/opt/x");
    source.add({.pid = 1}, "/sbin/launchd");
    EXPECT_THAT(pids(sample()), ElementsAre(1));
}

TEST_F(ProcessSamplerTest, AnEmptyListClearsEveryBaseline) {
    source.add({.pid = 7}, "/opt/a");
    sample();
    const ProcessCounters process = source.now[0];
    source.now.clear();
    EXPECT_THAT(sampleAfter(second), IsEmpty());
    source.now = {process};
    source.now[0].cpuTime = second;
    EXPECT_EQ(sampleAfter(second)[0].cpu, 0);
    EXPECT_EQ(source.pathsAsked, 2);
}

TEST_F(ProcessSamplerTest, TheOrderIsTheSourcesAndProcessesAreFoundWhereverTheyMoved) {
    for (std::int32_t pid = 1; pid <= 6; ++pid)
        source.add({.pid = pid, .start = 1}, "/opt/" + std::to_string(pid));
    sample();
    // 2 and 5 are gone, 9 is new, the rest is in another order.
    const auto at = [&](std::size_t i) { return source.now[i]; };
    std::vector<ProcessCounters> next{at(5), at(0), {.pid = 9, .hasUsage = true}, at(3), at(2)};
    source.paths[9] = "/opt/9";
    for (ProcessCounters& process : next) process.cpuTime = second;
    source.now = next;
    const auto samples = sampleAfter(second);
    EXPECT_THAT(pids(samples), ElementsAre(6, 1, 9, 4, 3));
    for (const ProcessSample& s : samples) {
        EXPECT_EQ(s.name, std::to_string(s.pid));
        EXPECT_EQ(s.cpu, s.pid == 9 ? 0 : 1);
    }
    EXPECT_EQ(source.pathsAsked, 7);
}

TEST_F(ProcessSamplerTest, APidListedTwiceIsTwoSamples) {
    source.add({.pid = 7}, "/opt/a");
    sample();
    source.now.push_back(source.now[0]);
    const auto samples = sampleAfter(second);
    EXPECT_THAT(pids(samples), ElementsAre(7, 7));
    EXPECT_EQ(samples[1].path, "/opt/a");
}

TEST_F(ProcessSamplerTest, AClockThatStandsStillOrGoesBackGivesNoRates) {
    source.add({.pid = 7}, "/opt/a");
    sample();
    source.now[0].cpuTime = source.now[0].diskRead = 5;
    EXPECT_EQ(sampleAfter(0)[0].cpu, 0);
    source.now[0].cpuTime = source.now[0].diskRead = 9;
    source.time -= second;
    const auto samples = sample();
    EXPECT_EQ(samples[0].cpu, 0);
    EXPECT_EQ(samples[0].diskReadRate, 0);
}

TEST_F(ProcessSamplerTest, ABrokenTimebaseGivesNoRates) {
    source.base = {1, 0};
    source.add({.pid = 7}, "/opt/a");
    sample();
    source.now[0].cpuTime = second;
    EXPECT_EQ(sampleAfter(second)[0].cpu, 0);
}

TEST_F(ProcessSamplerTest, TheNameIsTheLastComponentOfThePath) {
    source.add({.pid = 1}, "/opt/a/");
    source.add({.pid = 2}, "plain");
    source.add({.pid = 3}, "//");
    const auto samples = sample();
    EXPECT_EQ(samples[0].name, "a");
    EXPECT_EQ(samples[1].name, "plain");
    EXPECT_EQ(samples[2].name, "//");
}

TEST_F(ProcessSamplerTest, APathThatIsNotUTF8BecomesText) {
    source.add({.pid = 1}, "/opt/a\xFF");
    const auto samples = sample();
    EXPECT_EQ(samples[0].path, "/opt/a\uFFFD");
    EXPECT_EQ(samples[0].app.id, "a\uFFFD");
}

TEST_F(ProcessSamplerTest, ASourceMayKnowTheOwnerBetterThanThePath) {
    const AppIdentity files{AppIdentity::Kind::app, "/usr/share/applications/files.desktop"};
    source.add({.pid = 1}, "/usr/bin/files");
    source.add({.pid = 2}, "/usr/bin/other");
    source.add({.pid = 3}, "/usr/bin/tool");
    source.owners[1] = files;
    source.owners[3] = {AppIdentity::Kind::tool, ""};
    const auto samples = sample();
    EXPECT_EQ(samples[0].app, files);
    EXPECT_EQ(samples[1].app, AppIdentity::system);
    EXPECT_EQ(samples[2].app, (AppIdentity{AppIdentity::Kind::tool, "tool"}));
}

TEST(ProcessesOf, AnAppsProcessesAreTheOnesThatBelongToItNow) {
    FakeProcesses source;
    source.add({.pid = 10}, "/Applications/Mail.app/Contents/MacOS/Mail");
    source.add({.pid = 11}, "/Applications/Mail.app/Contents/Helpers/Fetch");
    source.add({.pid = 12}, "/usr/libexec/mds");
    source.add({.pid = 13}, "/opt/tool");
    EXPECT_THAT(processesOf(source, "/Applications/Mail.app"), ElementsAre(10, 11));
    EXPECT_THAT(processesOf(source, "macOS System"), IsEmpty());
    EXPECT_THAT(processesOf(source, ""), IsEmpty());
    source.now.erase(source.now.begin());
    EXPECT_THAT(processesOf(source, "/Applications/Mail.app"), ElementsAre(11));
}

} // namespace
} // namespace tavero
