#include "platform/linux/processes/LinuxProcesses.h"

#include "apps/ProcessSampler.h"
#include "apps/SystemActivities.h"
#include "platform/linux/TemporaryTree.h"
#include "platform/linux/processes/AllocationCount.h"
#include "platform/linux/processes/AsNobody.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t second = 1'000'000'000;
const std::uint64_t page = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));

// A machine whose /proc is a folder and whose clocks are set by hand.
class LinuxProcessesTest : public testing::Test {
  protected:
    struct Process {
        std::string comm = "tool";
        std::string exe = "/opt/tool";
        std::int32_t parent = 1;
        std::uint64_t start = 1000;
        std::uint64_t ownPages = 10;
        std::uint64_t read = 0;
        std::uint64_t written = 0;
        std::int64_t threads = 1;
        std::uint64_t ticks = 0;
        bool isKernelThread = false;
        std::string cgroup = "/";
        std::string commandLine;
    };

    LinuxProcessesTest() { fork(); }

    static std::string path(std::int32_t pid, const std::string& name) {
        return "proc/" + std::to_string(pid) + "/" + name;
    }
    // Writes the files of a process; its clock stands at 0 unless it was set.
    void set(std::int32_t pid, const Process& process) {
        const auto text = [](auto number) { return std::to_string(number); };
        tree.write(path(pid, "stat"),
                   text(pid) + " (" + process.comm + ") S " + text(process.parent) + " 1 1 0 -1 " +
                       (process.isKernelThread ? "69238880" : "4194560") + " 1 2 3 4 " +
                       text(process.ticks) + " 0 0 0 20 0 " + text(process.threads) + " 0 " +
                       text(process.start) + " 1 " + text(process.ownPages + 7) + "\n");
        tree.write(path(pid, "statm"), "5000 " + text(process.ownPages + 7) + " 7 1 0 400 0\n");
        tree.write(path(pid, "io"), "rchar: 1\nread_bytes: " + text(process.read) +
                                        "\nwrite_bytes: " + text(process.written) + "\n");
        tree.write(path(pid, "cgroup"), "0::" + process.cgroup + "\n");
        tree.write(path(pid, "cmdline"), process.commandLine);
        tree.remove(path(pid, "exe"));
        if (!process.exe.empty()) tree.link(path(pid, "exe"), process.exe);
        cpu.try_emplace(pid, 0);
    }
    // As after a fork, so that the next pass lists the folder.
    void fork() {
        tree.write("proc/stat", "cpu  1 2 3 4\nprocesses " + std::to_string(++forks) + "\n");
    }
    void end(std::int32_t pid) {
        tree.remove("proc/" + std::to_string(pid));
        cpu.erase(pid);
    }
    std::vector<ProcessSample> sample(std::uint64_t elapsed = second, bool threads = false) {
        now += elapsed;
        const auto samples = sampler.sample(source, threads);
        return {samples.begin(), samples.end()};
    }

    TemporaryTree tree;
    std::map<std::int32_t, std::uint64_t> cpu; // who isn't in it has no clock
    std::uint64_t now = 1000 * second;
    int forks = 0;
    std::shared_ptr<DesktopFolders> desktop = std::make_shared<DesktopFolders>(
        std::vector<std::string>{(tree.root() / "applications").string()});
    LinuxProcesses source{tree.root(), desktop,
                          ProcessClocks{.cpu =
                                            [this](std::int32_t pid) {
                                                const auto clock = cpu.find(pid);
                                                return clock == cpu.end()
                                                           ? std::nullopt
                                                           : std::optional(clock->second);
                                            },
                                        .now = [this] { return now; }}};
    ProcessSampler sampler;
};

std::vector<std::int32_t> pids(const std::vector<ProcessSample>& samples) {
    std::vector<std::int32_t> result;
    result.reserve(samples.size());
    for (const ProcessSample& s : samples) result.push_back(s.pid);
    return result;
}

TEST_F(LinuxProcessesTest, AProcessIsToldWithItsFigures) {
    set(7, {.exe = "/opt/thing/thing", .ownPages = 3, .read = 10, .written = 20, .threads = 4});
    EXPECT_THAT(sample(second, true),
                ElementsAre(ProcessSample{.pid = 7,
                                          .name = "thing",
                                          .path = "/opt/thing/thing",
                                          .memory = 3 * page,
                                          .diskRead = 10,
                                          .diskWritten = 20,
                                          .hasUsage = true,
                                          .app = {AppIdentity::Kind::tool, "thing"},
                                          .threads = 4}));
    EXPECT_EQ(sample()[0].threads, 0); // not asked for
    EXPECT_EQ(sample(second, true)[0].threads, 4);
}

TEST_F(LinuxProcessesTest, TheClockTellsTheCores) {
    set(7, {});
    set(8, {});
    sample();
    cpu[7] += second / 2;
    cpu[8] += 3 * second;
    const auto samples = sample();
    EXPECT_DOUBLE_EQ(samples[0].cpu, 0.5);
    EXPECT_DOUBLE_EQ(samples[1].cpu, 3);
    EXPECT_EQ(sample()[0].cpu, 0);
}

TEST_F(LinuxProcessesTest, WithoutAClockTheTicksTellTheCores) {
    set(7, {.ticks = 100});
    cpu.clear();
    sample();
    set(7, {.ticks = 100 + static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK))});
    cpu.clear();
    EXPECT_DOUBLE_EQ(sample()[0].cpu, 1);
}

TEST_F(LinuxProcessesTest, ARecordedMachineIsReadWithoutTheClocksOfThisOne) {
    set(1, {.exe = "/opt/recorded"}); // a pid that this machine has too
    LinuxProcesses recorded(tree.root(), desktop, ProcessClocks::recorded());
    EXPECT_EQ(recorded.processes(false).size(), 1u);
    EXPECT_EQ(recorded.processes(false)[0].cpuTime, 0u);
    end(1);
    EXPECT_TRUE(recorded.processes(false).empty());
}

TEST_F(LinuxProcessesTest, AProcessWhoseClockMovedIsReadAgain) {
    set(7, {.read = 100});
    sample();
    set(7, {.ownPages = 20, .read = 300, .threads = 9});
    cpu[7] += 1;
    const auto samples = sample(second, true);
    EXPECT_EQ(samples[0].memory, 20 * page);
    EXPECT_DOUBLE_EQ(samples[0].diskReadRate, 200);
    EXPECT_EQ(samples[0].threads, 9);
}

TEST_F(LinuxProcessesTest, TheMemoryOfAQuietProcessIsNeverOlderThanSomeSeconds) {
    for (std::int32_t pid = 1; pid <= 40; ++pid) set(pid, {});
    sample();
    for (std::int32_t pid = 1; pid <= 40; ++pid) set(pid, {.ownPages = 2});
    const auto fresh = [&] {
        std::size_t count = 0;
        for (const ProcessSample& s : sample()) count += s.memory == 2 * page;
        return count;
    };
    std::array<std::size_t, 14> counts = {};
    for (std::size_t& count : counts) count = fresh();
    EXPECT_EQ(counts[3], 0u);
    EXPECT_GT(counts[7], 0u);
    EXPECT_LT(counts[7], 40u); // they take turns
    EXPECT_EQ(counts[13], 40u);
}

TEST_F(LinuxProcessesTest, AProcessThatWasBornIsFoundAfterAFork) {
    set(7, {});
    sample();
    set(9, {});
    EXPECT_THAT(pids(sample()), ElementsAre(7));
    set(5, {});
    fork();
    EXPECT_THAT(pids(sample()), ElementsAre(5, 7, 9));
}

TEST_F(LinuxProcessesTest, ACountOfForksThatStandsStillIsNotTrustedForLong) {
    set(7, {});
    sample();
    set(9, {});
    EXPECT_THAT(pids(sample(9 * second)), ElementsAre(7));
    EXPECT_THAT(pids(sample(second)), ElementsAre(7, 9));
}

TEST_F(LinuxProcessesTest, WithoutACountOfForksEveryPassLists) {
    tree.write("proc/stat", "cpu 1 2 3 4\n");
    set(7, {});
    sample();
    set(9, {});
    EXPECT_THAT(pids(sample()), ElementsAre(7, 9));
}

TEST_F(LinuxProcessesTest, AProcessThatVanishedIsGoneEvenWithoutAListing) {
    for (std::int32_t pid : {5, 7, 9}) set(pid, {});
    sample();
    end(7);
    cpu[9] = second;
    const auto samples = sample();
    EXPECT_THAT(pids(samples), ElementsAre(5, 9));
    EXPECT_DOUBLE_EQ(samples[1].cpu, 1);
    end(5);
    end(9);
    fork();
    EXPECT_THAT(sample(), IsEmpty());
}

TEST_F(LinuxProcessesTest, AProcessThatVanishesBetweenListingAndReadingIsLeftOut) {
    set(7, {});
    tree.folder("proc/8");
    EXPECT_THAT(pids(sample()), ElementsAre(7));
}

TEST_F(LinuxProcessesTest, AReusedPidIsAnotherProcess) {
    set(7, {.comm = "old", .exe = "/opt/old", .start = 1, .read = 500});
    cpu[7] = 5 * second;
    sample();
    set(7, {.comm = "old", .exe = "/opt/new", .start = 2, .read = 100});
    tree.remove(path(7, "io"));
    cpu[7] = second;
    fork();
    const auto samples = sample();
    EXPECT_EQ(samples[0].path, "/opt/new");
    EXPECT_EQ(samples[0].app.id, "new");
    EXPECT_EQ(samples[0].cpu, 0);
    EXPECT_EQ(samples[0].diskRead, 0u); // nothing of the old one is left
}

TEST_F(LinuxProcessesTest, AProgramThatReplacesItselfIsKnownByItsNewOne) {
    set(7, {.comm = "sh", .exe = "/usr/bin/sh"});
    sample();
    set(7, {.comm = "thing", .exe = "/opt/thing"});
    cpu[7] = second;
    const auto samples = sample();
    EXPECT_EQ(samples[0].path, "/opt/thing");
    EXPECT_DOUBLE_EQ(samples[0].cpu, 1);
}

TEST_F(LinuxProcessesTest, AProcessThatIsPutIntoItsUnitLaterBelongsToItsAppThen) {
    tree.write("applications/maps.desktop", "[Desktop Entry]\nType=Application\nName=Maps\n");
    set(1, {});
    sample();
    set(7, {.exe = "/opt/maps"});
    fork();
    EXPECT_EQ(sample()[1].app.kind, AppIdentity::Kind::tool);
    set(7, {.exe = "/opt/maps", .cgroup = "/app.slice/app-maps-1.scope"});
    EXPECT_EQ(sample()[1].app.kind, AppIdentity::Kind::tool);
    const AppIdentity maps{AppIdentity::Kind::app,
                           (tree.root() / "applications/maps.desktop").string()};
    for (int i = 0; i < 4; ++i) sample();
    EXPECT_EQ(sample()[1].app, maps);
    set(7, {.exe = "/opt/maps"}); // and stays
    for (int i = 0; i < 10; ++i) EXPECT_EQ(sample()[1].app, maps);
}

TEST_F(LinuxProcessesTest, AProcessWhoseStarterEndedStaysWithItsApp) {
    tree.write("applications/web.desktop",
               "[Desktop Entry]\nType=Application\nExec=/opt/web/web\n");
    const std::string web = (tree.root() / "applications/web.desktop").string();
    set(1, {});
    sample();
    set(8, {.exe = "/opt/web/web"});
    set(9, {.exe = "/usr/bin/helper", .parent = 8});
    fork();
    EXPECT_EQ(sample()[2].app.id, web);
    end(8);
    set(9, {.exe = "/usr/bin/helper", .parent = 1});
    for (int i = 0; i < 10; ++i) EXPECT_EQ(sample()[1].app.id, web);
}

TEST_F(LinuxProcessesTest, ProcessesMayCallThemselvesAnything) {
    std::int32_t pid = 0;
    for (const std::string comm :
         {") R 1 (", "a b", "", "\n", "\xFF\xC3(", "(((((((((((((((", "12345678901234567890"})
        set(++pid, {.comm = comm, .exe = "/opt/\xFF"});
    const auto samples = sample();
    ASSERT_EQ(samples.size(), 7u);
    for (const ProcessSample& s : samples) {
        EXPECT_TRUE(s.hasUsage);
        EXPECT_TRUE(s.name.starts_with("\uFFFD"));
    }
}

TEST_F(LinuxProcessesTest, AnExecutableThatWasReplacedKeepsItsPath) {
    set(7, {.exe = "/opt/thing (deleted)"});
    EXPECT_EQ(sample()[0].path, "/opt/thing");
}

TEST_F(LinuxProcessesTest, AProgramThatRunsFromMemoryIsCalledAsItCallsItself) {
    set(7, {.comm = "runner", .exe = "/memfd:x-91ac (deleted)", .commandLine = "run now"});
    set(8, {.comm = "runner", .exe = "/memfd:y (deleted)", .commandLine = "/opt/run"});
    const auto samples = sample();
    EXPECT_EQ(samples[0].path, "runner");
    EXPECT_EQ(samples[1].path, "/opt/run");
}

TEST_F(LinuxProcessesTest, KernelThreadsAreTheSystemsUnderOneNameAKind) {
    set(2, {.comm = "kthreadd", .exe = "", .isKernelThread = true});
    set(3, {.comm = "kworker/0:1-events", .exe = "", .ownPages = 9, .isKernelThread = true});
    auto samples = sample();
    EXPECT_EQ(samples[0].name, "[kthreadd]");
    EXPECT_EQ(samples[1].name, "[kworker]");
    EXPECT_EQ(samples[1].path, "[kworker]");
    EXPECT_EQ(samples[1].memory, 0u);
    EXPECT_EQ(samples[1].app, AppIdentity::system);
    set(3, {.comm = "kworker/0:1-idle", .exe = "", .isKernelThread = true});
    cpu[3] = second;
    samples = sample();
    EXPECT_EQ(samples[1].name, "[kworker]");
    EXPECT_DOUBLE_EQ(samples[1].cpu, 1);
}

TEST_F(LinuxProcessesTest, AProcessThatOnlyWaitsForItsParentIsNotListed) {
    set(7, {.exe = ""}); // its executable is gone with its memory
    EXPECT_THAT(sample(), IsEmpty());
}

TEST_F(LinuxProcessesTest, AKnownProcessThatWaitsForItsParentStays) {
    set(7, {.exe = "/opt/a"});
    sample();
    set(7, {.exe = ""});
    EXPECT_THAT(pids(sample()), ElementsAre(7));
}

TEST_F(LinuxProcessesTest, BrokenFilesGiveZeros) {
    set(7, {});
    tree.write(path(7, "statm"), "rubbish");
    tree.write(path(7, "io"), std::string(100'000, 'x'));
    tree.write(path(7, "cgroup"), std::string(100'000, ':'));
    const auto samples = sample();
    EXPECT_TRUE(samples[0].hasUsage);
    EXPECT_EQ(samples[0].memory, 0u);
    EXPECT_EQ(samples[0].diskRead, 0u);
}

TEST_F(LinuxProcessesTest, WhatHasAClockButNoFilesIsListedWithoutUsage) {
    tree.link(path(7, "exe"), "/opt/hidden");
    cpu[7] = 5;
    auto samples = sample();
    ASSERT_EQ(samples.size(), 1u);
    EXPECT_FALSE(samples[0].hasUsage);
    EXPECT_EQ(samples[0].name, "hidden");
    set(7, {.exe = "/opt/hidden"});
    EXPECT_TRUE(sample()[0].hasUsage);
}

TEST_F(LinuxProcessesTest, AnotherUsersDiskBytesAreRefusedAndTheRestIsKnown) {
    sample(); // the folder itself is open from here on
    set(7, {.read = 100});
    fork();
    const auto io = tree.root() / path(7, "io");
    std::filesystem::permissions(io, std::filesystem::perms::none);
    {
        const AsNobody nobody;
        const auto samples = sample();
        ASSERT_THAT(pids(samples), ElementsAre(7));
        EXPECT_TRUE(samples[0].hasUsage);
        EXPECT_EQ(samples[0].memory, 10 * page);
        EXPECT_EQ(samples[0].diskRead, 0u);
    }
    // Once refused it isn't tried again, until the process becomes another program.
    std::filesystem::permissions(io, std::filesystem::perms::owner_read |
                                         std::filesystem::perms::owner_write);
    cpu[7] = 1;
    EXPECT_EQ(sample()[0].diskRead, 0u);
    set(7, {.comm = "other", .read = 100});
    cpu[7] = 2;
    EXPECT_EQ(sample()[0].diskRead, 100u);
}

TEST_F(LinuxProcessesTest, AProcessWhoseFilesAreAllRefusedIsLeftOut) {
    sample();
    set(7, {});
    fork();
    const auto folder = tree.root() / "proc/7";
    std::filesystem::permissions(folder, std::filesystem::perms::none);
    {
        const AsNobody nobody;
        EXPECT_THAT(sample(), IsEmpty());
    }
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    EXPECT_THAT(pids(sample()), ElementsAre(7));
}

TEST_F(LinuxProcessesTest, ACommandLineOf100000CharactersIsNoTrouble) {
    set(7, {.exe = "/usr/bin/python3",
            .commandLine = "python3" + std::string(1, '\0') + std::string(100'000, 'x')});
    EXPECT_EQ(sample()[0].name, "python3");
}

TEST_F(LinuxProcessesTest, AHelperBelongsToTheAppThatStartedItWhoeverIsListedFirst) {
    tree.write("applications/web.desktop",
               "[Desktop Entry]\nType=Application\nExec=/opt/web/web\n");
    set(7, {.comm = "tab", .exe = "/usr/libexec/tab", .parent = 8});
    set(8, {.comm = "tab", .exe = "/usr/libexec/tab", .parent = 9});
    set(9, {.exe = "/opt/web/web"});
    for (const ProcessSample& s : sample())
        EXPECT_EQ(s.app.id, (tree.root() / "applications/web.desktop").string());
}

TEST_F(LinuxProcessesTest, ParentsThatAreEachOthersEnd) {
    set(7, {.parent = 8});
    set(8, {.parent = 7});
    set(9, {.parent = 9});
    EXPECT_EQ(sample().size(), 3u);
}

TEST_F(LinuxProcessesTest, AnEmptyOrMissingFolderGivesNothing) {
    EXPECT_THAT(sample(), IsEmpty());
    LinuxProcesses nowhere(tree.root() / "nowhere", desktop);
    EXPECT_TRUE(nowhere.processes(true).empty());
    EXPECT_FALSE(nowhere.path(1));
    EXPECT_FALSE(nowhere.owner(1, "/x"));
}

TEST_F(LinuxProcessesTest, ASteadyPassAllocatesNothing) {
    for (std::int32_t pid = 1; pid <= 300; ++pid)
        set(pid, {.exe = "/opt/a/program/with/a/path/longer/than/a/short/text"});
    for (int i = 0; i < 30; ++i) sample(); // every list has found its size
    for (int i = 0; i < 30; ++i) {
        now += second;
        for (std::int32_t pid = 1; pid <= 300; pid += 10) cpu[pid] += 1000;
        const std::size_t before = allocationCount();
        const auto samples = sampler.sample(source, true);
        EXPECT_EQ(allocationCount(), before);
        EXPECT_EQ(samples.size(), 300u);
    }
    EXPECT_GT(allocationCount(), 300u); // it does count
}

TEST_F(LinuxProcessesTest, AFullDescriptorTableStopsNothing) {
    set(7, {.read = 100});
    set(8, {});
    sample();
    set(7, {.ownPages = 20, .read = 300});
    set(9, {.exe = "/opt/late"});
    cpu[7] = second;
    fork();
    std::vector<int> taken;
    rlimit before = {};
    ::getrlimit(RLIMIT_NOFILE, &before);
    rlimit few = before;
    few.rlim_cur = 64;
    ::setrlimit(RLIMIT_NOFILE, &few);
    for (int file; (file = ::open("/dev/null", O_RDONLY)) >= 0;) taken.push_back(file);
    const auto samples = sample();
    for (const int file : taken) ::close(file);
    ::setrlimit(RLIMIT_NOFILE, &before);
    ASSERT_THAT(pids(samples), ElementsAre(7, 8, 9));
    EXPECT_DOUBLE_EQ(samples[0].cpu, 1);
    EXPECT_EQ(samples[0].memory, 20 * page);
    EXPECT_EQ(samples[0].diskRead, 300u);
    EXPECT_EQ(samples[2].name, "late");
    EXPECT_TRUE(samples[2].hasUsage);
}

TEST_F(LinuxProcessesTest, TheSystemsProcessesHaveTheirOwnWords) {
    EXPECT_EQ(describeSystemProcess("tracker-miner-fs-3", source.vocabulary()), "Indexing files");
    EXPECT_EQ(describeSystemProcess("packagekitd", source.vocabulary()), "Installing updates");
    EXPECT_EQ(describeSystemProcess("mds", source.vocabulary()), "mds");
}

} // namespace
} // namespace tavero
