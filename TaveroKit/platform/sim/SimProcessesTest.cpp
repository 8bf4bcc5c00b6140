#include "platform/sim/SimMachine.h"

#include "MonitorEngine.h"
#include "apps/ProcessSampler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsSupersetOf;

constexpr double gigabyte = 1024.0 * 1024 * 1024;

// A Mac, the engine over it, and the clock that moves both.
class EngineRun {
  public:
    explicit EngineRun(Scenario scenario)
        : sim(std::move(scenario), [clock = clock_] { return *clock; }),
          engine_(readers(sim.machine())) {
        sample();
    }

    LiveSnapshot after(Date::duration time) {
        *clock_ += time;
        return sample();
    }

  private:
    LiveSnapshot sample() {
        return engine_.sample(MonitorEngine::Detail::full, 1000, true, *clock_);
    }

    std::shared_ptr<Date> clock_ = std::make_shared<Date>(Date(std::chrono::days(20'000)));

  public:
    SimMachine sim;

  private:
    MonitorEngine engine_;
};

std::vector<std::string> names(const LiveSnapshot& snapshot) {
    std::vector<std::string> names;
    for (const AppUsage& app : snapshot.apps) names.push_back(app.name);
    return names;
}

// An empty row if there is none.
AppUsage row(const LiveSnapshot& snapshot, const std::string& name) {
    const auto found = std::find_if(snapshot.apps.begin(), snapshot.apps.end(),
                                    [&](const AppUsage& app) { return app.name == name; });
    return found == snapshot.apps.end() ? AppUsage{} : *found;
}

double cores(const LiveSnapshot& snapshot) {
    double sum = 0;
    for (const AppUsage& app : snapshot.apps) sum += app.cpu;
    return sum;
}

double busyCores(const LiveSnapshot& snapshot) {
    return snapshot.cpu->total() * static_cast<double>(snapshot.cpu->perCore.size());
}

TEST(SimProcesses, AnIdleAfternoonHasTheAppsThatAPersonWouldName) {
    EngineRun run(idleAfternoon());
    const LiveSnapshot snapshot = run.after(1s);
    EXPECT_THAT(names(snapshot),
                testing::UnorderedElementsAre("Wayfarer", "Inkwell", "Mail", "Music", "Parley",
                                              "Sketchbook", "Cirrus", "Finder", "Dock",
                                              "Control Center", "Spotlight", "loginwindow",
                                              "tidewatch", "Developer Tools", "macOS System"));
    EXPECT_EQ(snapshot.appCount, 15);
    EXPECT_GT(snapshot.processCount, 90);
}

TEST(SimProcesses, ABrowserWithTwelveHelpersIsOneRow) {
    EngineRun run(idleAfternoon());
    const AppUsage browser = row(run.after(1s), "Wayfarer");
    EXPECT_EQ(browser.processCount, 13);
    EXPECT_EQ(browser.bundlePath, "/Applications/Wayfarer.app");
    EXPECT_EQ(browser.children.size(), 4u);
    EXPECT_GT(browser.threads, 150);
    EXPECT_GT(browser.cpu, 0.05);
    EXPECT_NEAR(static_cast<double>(browser.memory), 2.3 * gigabyte, 0.5 * gigabyte);
}

TEST(SimProcesses, TwoCopiesOfAnAppAreOneRow) {
    EngineRun run(idleAfternoon());
    EXPECT_EQ(row(run.after(1s), "Sketchbook").processCount, 2);
}

TEST(SimProcesses, AToolInASupportFolderJoinsItsApp) {
    EngineRun run(idleAfternoon());
    const AppUsage drive = row(run.after(1s), "Cirrus");
    EXPECT_EQ(drive.processCount, 2);
    EXPECT_EQ(drive.identity.kind, AppIdentity::Kind::app);
    EXPECT_THAT(run.after(1s).apps,
                testing::Not(testing::Contains(testing::Field(&AppUsage::name, "cirrus-sync"))));
}

TEST(SimProcesses, WithoutItsAppASupportToolStandsAlone) {
    EngineRun run(idleAfternoon());
    run.sim.quit("/Applications/Cirrus.app");
    const LiveSnapshot snapshot = run.after(1s);
    EXPECT_EQ(row(snapshot, "cirrus-sync").processCount, 1);
    EXPECT_EQ(row(snapshot, "Cirrus").processCount, 0);
}

TEST(SimProcesses, DaemonsOfTheSystemAreListedButNotMeasured) {
    EngineRun run(idleAfternoon());
    run.after(1s);
    const auto source = run.sim.machine().processes;
    ProcessSampler sampler;
    const auto samples = sampler.sample(*source, true);
    const auto server = std::find_if(samples.begin(), samples.end(), [](const auto& sample) {
        return sample.name == "WindowServer";
    });
    ASSERT_NE(server, samples.end());
    EXPECT_FALSE(server->hasUsage);
    EXPECT_EQ(server->threads, 0);
    EXPECT_EQ(server->app, AppIdentity::system);
    EXPECT_TRUE(std::none_of(samples.begin(), samples.end(),
                             [](const auto& sample) { return sample.pid == 0; }));
    EXPECT_EQ(samples.back().name, "launchd"); // the youngest come first
}

// What is missing is the kernel's and that of processes whose usage is refused.
TEST(SimProcesses, TogetherTheyUseWhatTheMachineUsesButForLessThanHalfACore) {
    for (const Scenario& scenario : scenarios()) {
        EngineRun run(scenario);
        for (int second = 0; second < 1300; ++second) {
            const LiveSnapshot snapshot = run.after(1s);
            const double unseen = busyCores(snapshot) - cores(snapshot);
            ASSERT_GT(unseen, 0.2) << scenario.name << " at " << second;
            ASSERT_LT(unseen, 0.45) << scenario.name << " at " << second;
        }
    }
}

TEST(SimProcesses, TheirDiskBytesAreMostOfTheMachines) {
    EngineRun run(idleAfternoon());
    const LiveSnapshot before = run.after(1s);
    double read = 0;
    double written = 0;
    for (int second = 0; second < 260; ++second)
        for (const AppUsage& app : run.after(1s).apps) {
            read += app.diskReadRate;
            written += app.diskWriteRate;
        }
    const LiveSnapshot after = run.after(1s);
    const auto share = [](double part, std::uint64_t from, std::uint64_t to) {
        return part / static_cast<double>(to - from);
    };
    EXPECT_NEAR(share(read, before.diskReadTotal, after.diskReadTotal), 0.95, 0.05);
    EXPECT_NEAR(share(written, before.diskWrittenTotal, after.diskWrittenTotal), 0.85, 0.1);
}

TEST(SimProcesses, ARunawayHelperTakesAWholeCoreAndItsAppSaysSo) {
    EngineRun run(runawayApp());
    EXPECT_LT(row(run.after(50s), "Inkwell").cpu, 0.1);
    run.after(20s);
    for (int minutes = 0; minutes < 10; ++minutes) {
        const AppUsage editor = row(run.after(1min), "Inkwell");
        EXPECT_NEAR(editor.cpu, 1.0, 0.05);
        EXPECT_EQ(editor.note, "mostly extension-host");
    }
    EXPECT_EQ(names(run.after(1s)).front(), "Inkwell");
}

TEST(SimProcesses, QuittingTheRunawayAppCalmsTheMachine) {
    EngineRun run(runawayApp());
    run.after(70s);
    EXPECT_GT(run.after(10s).cpu->perCore[7], 0.9);
    run.sim.quit("/Applications/Inkwell.app");
    const LiveSnapshot calm = run.after(10s);
    EXPECT_EQ(row(calm, "Inkwell").processCount, 0);
    EXPECT_LT(calm.cpu->perCore[7], 0.1);
    EXPECT_LT(run.after(2min).cpu->loadAverage.one, 1);
    EXPECT_EQ(row(run.after(24h), "Inkwell").processCount, 0); // for good
}

TEST(SimProcesses, UnderMemoryPressureAnAppBeginsAndGrowsSteadily) {
    EngineRun run(memoryPressure());
    EXPECT_EQ(row(run.after(50s), "Fieldcut").processCount, 0);
    std::uint64_t before = 0;
    run.after(10s);
    for (int minutes = 0; minutes < 8; ++minutes) {
        const AppUsage app = row(run.after(1min), "Fieldcut");
        EXPECT_GT(app.memory, before + (1ull << 30));
        before = app.memory;
    }
    const LiveSnapshot full = run.after(3min);
    EXPECT_EQ(full.memoryHeavyApps.front().name, "Fieldcut");
    EXPECT_EQ(full.memory->pressure, MemoryPressure::critical);
}

TEST(SimProcesses, QuittingTheAppThatTookTheMemoryRelievesThePressure) {
    EngineRun run(memoryPressure());
    const std::uint64_t swapped = run.after(15min).memory->swapUsed;
    run.sim.quit("/Applications/Fieldcut.app");
    const LiveSnapshot relieved = run.after(1s);
    EXPECT_EQ(relieved.memory->pressure, MemoryPressure::normal);
    EXPECT_LT(relieved.memory->swapUsed, swapped / 2);
}

TEST(SimProcesses, AProcessThatATestTakesOutOfTheListHasEnded) {
    EngineRun run(idleAfternoon());
    run.sim.state().end(702); // the browser's own; its helpers stay
    EXPECT_EQ(row(run.after(1s), "Wayfarer").processCount, 12);
    EXPECT_EQ(row(run.after(1h), "Wayfarer").processCount, 12);
}

TEST(SimProcesses, AProcessThatComesAgainHasItsOldPidAndANewStart) {
    EngineRun run(idleAfternoon());
    const auto source = run.sim.machine().processes;
    const auto indexer = [&]() -> std::optional<ProcessCounters> {
        for (const ProcessCounters& process : source->processes(false))
            if (source->path(process.pid).value_or("").ends_with("mdworker_shared")) return process;
        return std::nullopt;
    };
    run.after(80s);
    EXPECT_FALSE(indexer());
    run.after(60s);
    const auto first = indexer();
    run.after(100s);
    EXPECT_FALSE(indexer());
    run.after(500s);
    const auto second = indexer();
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->pid, second->pid);
    EXPECT_EQ(second->start - first->start, 600ull * 24'000'000);
    EXPECT_EQ(first->cpuTime, second->cpuTime); // it counts from nothing again
}

TEST(SimProcesses, AProcessThatWasEndedComesAgainWhenItsTimeComes) {
    EngineRun run(idleAfternoon());
    const auto tools = [](const LiveSnapshot& snapshot) {
        return row(snapshot, "Developer Tools").processCount;
    };
    EXPECT_EQ(tools(run.after(13s)), 2);
    auto& processes = run.sim.state().processes;
    run.sim.state().end(std::find_if(processes.begin(), processes.end(), [](const auto& process) {
                            return process.path && process.path->ends_with("/git");
                        })->pid);
    EXPECT_EQ(tools(run.after(1s)), 1);
    EXPECT_EQ(tools(run.after(59s)), 2);
}

TEST(SimProcesses, ATestSetsThemOneByOne) {
    SimMachine sim;
    MonitorEngine engine(readers(sim.machine()));
    const auto sample = [&] {
        return engine.sample(MonitorEngine::Detail::full, 10, true, Date(1s));
    };
    EXPECT_EQ(sample().processCount, 0);

    sim.state().setBundle("/Applications/A.app", {.displayName = "Alpha", .name = std::nullopt});
    sim.state().processes = {{.pid = 7,
                              .path = "/Applications/A.app/Contents/MacOS/A",
                              .usage = MacProcessTable::Usage{.footprint = 5'000},
                              .threads = 3}};
    EXPECT_THAT(names(sample()), ElementsAre("Alpha"));
    sim.state().absoluteTime += 24'000'000; // a second
    sim.state().processes[0].usage->userTime += 24'000'000;
    sim.state().processes[0].usage->systemTime += 12'000'000;
    const AppUsage app = sample().apps.at(0);
    EXPECT_DOUBLE_EQ(app.cpu, 1.5);
    EXPECT_EQ(app.memory, 5'000u);
    EXPECT_EQ(app.threads, 3);

    sim.quit("/Applications/A.app");
    EXPECT_EQ(sample().processCount, 0);
}

TEST(SimProcesses, QuittingAnAppSparesThoseWhoseNamesOnlyBeginAlike) {
    SimMachine sim;
    sim.state().processes = {{.pid = 1, .path = "/Applications/A.app/Contents/MacOS/A"},
                             {.pid = 2, .path = "/Applications/A.app2/x"},
                             {.pid = 3, .path = std::nullopt}};
    sim.quit("/Applications/A.app");
    EXPECT_EQ(sim.state().processes.size(), 2u);
}

} // namespace
} // namespace tavero
