#include "desktop/linux/LinuxRunningApps.h"

#include "desktop/linux/test/ChildProcess.h"
#include "platform/linux/TemporaryTree.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <map>
#include <stdexcept>

// Real processes, all of them children of this test. There is no bus.
namespace tavero {
namespace {

using OnTerm = ChildProcess::OnTerm;

const std::string app = "/home/u/Notes.AppImage";

struct RunningAppsTest : testing::Test {
    std::map<std::string, std::vector<std::int32_t>> processes; // by app
    std::optional<std::vector<std::int32_t>> whenAskedAgain;

    LinuxRunningApps apps(const std::filesystem::path& root = "/") {
        const auto processesOf = [this, calls = 0](const std::string& path) mutable {
            return ++calls > 1 && whenAskedAgain ? *whenAskedAgain : processes[path];
        };
        return {processesOf, QDBusConnection("no such connection"), root};
    }
};

TEST_F(RunningAppsTest, AnAppThatDoesNotRunIsAbsent) {
    EXPECT_FALSE(apps().askToQuit(app));
    EXPECT_FALSE(apps().askToQuit(""));
    processes[app] = {0, -1, INT32_MIN, INT32_MAX};
    EXPECT_FALSE(apps().askToQuit(app));
}

TEST_F(RunningAppsTest, AProcessEndsAndThatIsToldOnThisMachine) {
    ChildProcess child(OnTerm::ends);
    processes[app] = {child.pid()};
    const auto haveEnded = apps().askToQuit(app);
    ASSERT_TRUE(haveEnded);
    EXPECT_EQ(child.signalThatEndedIt(), SIGTERM);
    EXPECT_TRUE((*haveEnded)());
}

TEST_F(RunningAppsTest, OneThatIgnoresTheRequestHasNotEndedOnThisMachine) {
    ChildProcess obedient(OnTerm::ends), stubborn(OnTerm::ignores);
    processes[app] = {obedient.pid(), stubborn.pid()};
    const auto haveEnded = apps().askToQuit(app);
    ASSERT_TRUE(haveEnded);
    EXPECT_EQ(obedient.signalThatEndedIt(), SIGTERM);
    EXPECT_FALSE((*haveEnded)());
    kill(stubborn.pid(), SIGKILL);
    EXPECT_EQ(stubborn.signalThatEndedIt(), SIGKILL);
    EXPECT_TRUE((*haveEnded)());
}

// A process with a helper that it started itself; both keep the signal waiting.
class AppWithHelper {
  public:
    AppWithHelper() : parent_(OnTerm::keeps, [this] { startHelper(); }) {
        close(toTest_[1]);
        if (read(toTest_[0], &helper_, sizeof helper_) != sizeof helper_)
            throw std::runtime_error("no helper");
    }
    ~AppWithHelper() { close(toTest_[0]); }

    std::int32_t parent() const { return parent_.pid(); }
    std::int32_t helper() const { return helper_; }

  private:
    struct Pipe {
        Pipe() {
            if (pipe(ends) != 0) throw std::runtime_error("no pipe");
        }
        int operator[](std::size_t i) const { return ends[i]; }
        int ends[2];
    };

    void startHelper() const {
        if (fork() != 0) {
            close(toTest_[1]);
            return;
        }
        prctl(PR_SET_PDEATHSIG, SIGKILL); // goes with its parent
        const std::int32_t pid = getpid();
        [[maybe_unused]] const ssize_t ignored = write(toTest_[1], &pid, sizeof pid);
        for (;;) pause();
    }

    Pipe toTest_;
    std::int32_t helper_ = 0;
    ChildProcess parent_;
};

TEST_F(RunningAppsTest, OnlyTheAppItselfIsAskedAndItsHelperIsWaitedForOnThisMachine) {
    const AppWithHelper both;
    processes[app] = {both.helper(), both.parent()};
    const auto haveEnded = apps().askToQuit(app);
    ASSERT_TRUE(haveEnded);
    EXPECT_TRUE(hasPendingTerm(both.parent()));
    EXPECT_FALSE(hasPendingTerm(both.helper()));
    EXPECT_FALSE((*haveEnded)());
}

TEST_F(RunningAppsTest, AnAppStartedByAnotherAppIsAskedAloneOnThisMachine) {
    const AppWithHelper both;
    processes[app] = {both.helper()};
    ASSERT_TRUE(apps().askToQuit(app));
    EXPECT_TRUE(hasPendingTerm(both.helper()));
    EXPECT_FALSE(hasPendingTerm(both.parent()));
}

TEST_F(RunningAppsTest, AProcessThatIsGoneIsAbsentOnThisMachine) {
    ChildProcess child(OnTerm::ends);
    processes[app] = {child.pid()};
    kill(child.pid(), SIGKILL);
    siginfo_t exit{};
    waitid(P_PID, static_cast<id_t>(child.pid()), &exit, WEXITED | WNOWAIT);
    EXPECT_FALSE(apps().askToQuit(app)); // it still has its number
    child.signalThatEndedIt();
    EXPECT_FALSE(apps().askToQuit(app));
}

TEST_F(RunningAppsTest, ANumberThatCameToMeanAnotherProcessIsNotSignalledOnThisMachine) {
    const ChildProcess notes(OnTerm::keeps), other(OnTerm::keeps);
    processes[app] = {other.pid(), notes.pid()};
    whenAskedAgain = {notes.pid()};
    ASSERT_TRUE(apps().askToQuit(app));
    EXPECT_TRUE(hasPendingTerm(notes.pid()));
    EXPECT_FALSE(hasPendingTerm(other.pid()));

    whenAskedAgain.emplace();
    processes[app] = {other.pid()};
    EXPECT_FALSE(apps().askToQuit(app));
    EXPECT_FALSE(hasPendingTerm(other.pid()));
}

TEST_F(RunningAppsTest, TaveroDoesNotQuitItselfThisWayOnThisMachine) {
    const ChildProcess child(OnTerm::keeps);
    processes[app] = {child.pid(), getpid()};
    EXPECT_FALSE(apps().askToQuit(app));
    EXPECT_FALSE(hasPendingTerm(child.pid()));
}

// /proc as it would be told of other processes.
std::string statusFile(std::int32_t pid) { return "proc/" + std::to_string(pid) + "/status"; }
std::string status(std::int32_t parent, unsigned user, unsigned actsForUser) {
    return "PPid:\t" + std::to_string(parent) + "\nUid:\t" + std::to_string(user) + "\t" +
           std::to_string(actsForUser) + "\n";
}

TEST_F(RunningAppsTest, NeitherDoesItEndWhatItRunsInsideOnThisMachine) {
    const ChildProcess terminal(OnTerm::keeps), shell(OnTerm::keeps);
    const TemporaryTree tree({
        {statusFile(getpid()), status(shell.pid(), getuid(), getuid())},
        {statusFile(shell.pid()), status(terminal.pid(), getuid(), getuid())},
        {statusFile(terminal.pid()), status(0, getuid(), getuid())},
    });
    processes[app] = {terminal.pid()};
    EXPECT_FALSE(apps(tree.root()).askToQuit(app));
    EXPECT_FALSE(hasPendingTerm(terminal.pid()));
}

TEST_F(RunningAppsTest, OnlyProcessesOfThisUserCountOnThisMachine) {
    const unsigned me = getuid();
    const ChildProcess own(OnTerm::keeps), others(OnTerm::keeps), privileged(OnTerm::keeps),
        untold(OnTerm::keeps);
    const TemporaryTree tree({
        {statusFile(own.pid()), status(others.pid(), me, me)},
        {statusFile(others.pid()), status(0, me + 1, me)},
        {statusFile(privileged.pid()), status(0, me, me + 1)},
    });
    processes[app] = {others.pid(), privileged.pid(), untold.pid()};
    EXPECT_FALSE(apps(tree.root()).askToQuit(app));
    processes[app].push_back(own.pid());
    EXPECT_TRUE(apps(tree.root()).askToQuit(app));
    EXPECT_TRUE(hasPendingTerm(own.pid())); // what started it isn't there to hand the request down
    for (const ChildProcess* process : {&others, &privileged, &untold})
        EXPECT_FALSE(hasPendingTerm(process->pid()));
}

TEST_F(RunningAppsTest, TheProgramOfAProcessDecidesWhetherItIsAskedOnThisMachine) {
    const ChildProcess sandbox(OnTerm::keeps), notes(OnTerm::keeps);
    const TemporaryTree tree({
        {statusFile(sandbox.pid()), status(0, getuid(), getuid())},
        {statusFile(notes.pid()), status(sandbox.pid(), getuid(), getuid())},
    });
    tree.link("proc/" + std::to_string(sandbox.pid()) + "/exe", "/usr/bin/bwrap");
    processes[app] = {sandbox.pid(), notes.pid()};
    ASSERT_TRUE(apps(tree.root()).askToQuit(app));
    EXPECT_FALSE(hasPendingTerm(sandbox.pid()));
    EXPECT_TRUE(hasPendingTerm(notes.pid()));
}

TEST_F(RunningAppsTest, WithoutABusAnAppThatCouldBeOnItGetsTheSignalOnThisMachine) {
    const std::string entry = "/usr/share/applications/org.example.Notes.desktop";
    ChildProcess child(OnTerm::ends);
    processes[entry] = {child.pid()};
    const auto haveEnded = apps().askToQuit(entry);
    ASSERT_TRUE(haveEnded);
    EXPECT_EQ(child.signalThatEndedIt(), SIGTERM);
    EXPECT_TRUE((*haveEnded)());
}

} // namespace
} // namespace tavero
