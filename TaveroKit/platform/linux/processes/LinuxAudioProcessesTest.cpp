#include "platform/linux/processes/LinuxAudioProcesses.h"

#include "apps/ProcessSampler.h"
#include "platform/linux/TemporaryTree.h"
#include "platform/linux/processes/AsNobody.h"
#include "platform/linux/processes/LinuxProcesses.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tavero {
namespace {

using Kind = AppIdentity::Kind;

std::string entry(const std::string& rest) { return "[Desktop Entry]\nType=Application\n" + rest; }

class LinuxAudioProcessesTest : public testing::Test {
  protected:
    struct Process {
        std::string exe;
        std::string cgroup = "/user.slice/user-1000.slice/session-2.scope";
        std::int32_t parent = 1;
        std::string comm = "thing";
        std::uint64_t start = 1000;
        std::string state = "S";
        std::string commandLine;
        std::string environment;
        std::string flatpakInfo;
        bool isKernelThread = false;
    };

    static std::string path(std::int32_t pid, const std::string& name = "") {
        return "proc/" + std::to_string(pid) + "/" + name;
    }
    void set(std::int32_t pid, const Process& process) {
        const auto text = [](auto number) { return std::to_string(number); };
        tree.write(path(pid, "stat"), text(pid) + " (" + process.comm + ") " + process.state + " " +
                                          text(process.parent) + " 1 1 0 -1 " +
                                          (process.isKernelThread ? "69238880" : "4194560") +
                                          " 1 2 3 4 0 0 0 0 20 0 1 0 " + text(process.start) +
                                          " 1 10\n");
        tree.write(path(pid, "cgroup"), "0::" + process.cgroup + "\n");
        tree.write(path(pid, "cmdline"), process.commandLine);
        tree.write(path(pid, "environ"), process.environment);
        tree.remove(path(pid, "root"));
        if (!process.flatpakInfo.empty())
            tree.write(path(pid, "root/.flatpak-info"), process.flatpakInfo);
        tree.remove(path(pid, "exe"));
        if (!process.exe.empty()) tree.link(path(pid, "exe"), process.exe);
    }
    void end(std::int32_t pid) { tree.remove("proc/" + std::to_string(pid)); }

    std::string file(const std::string& id) const {
        return (tree.root() / "applications" / (id + ".desktop")).string();
    }
    AppIdentity app(const std::string& id) const { return {Kind::app, file(id)}; }

    TemporaryTree tree{
        {"proc/self/cgroup", "0::/user.slice/user-1000.slice/session-2.scope\n"},
        {"applications/org.x.Music.desktop", entry("Name=Music\nExec=/usr/bin/x-music %U\n")},
        {"applications/org.x.Radio.desktop",
         entry("Name=Radio\nExec=/usr/bin/flatpak run org.x.Radio\n")},
        {"applications/player_player.desktop", entry("Name=Player\nX-SnapInstanceName=player\n")},
        {"applications/podcasts.desktop",
         entry("Name=Podcasts\nExec=python3 /usr/share/podcasts/main.py\n")},
        {"applications/org.x.Alarms.desktop",
         entry("Name=Alarms\nNoDisplay=true\nExec=/usr/libexec/x-alarms\n")},
        {"applications/org.x.Terminal.desktop",
         entry("Name=Terminal\nExec=x-terminal\nCategories=TerminalEmulator;\n")}};
    const std::vector<std::string> folders{(tree.root() / "applications").string()};
    LinuxAudioProcesses processes{tree.root(), folders, 42};
};

TEST_F(LinuxAudioProcessesTest, ANativeAppIsKnownByItsProgram) {
    set(7, {.exe = "/usr/bin/x-music"});
    EXPECT_EQ(processes.identity(7), app("org.x.Music"));
    EXPECT_EQ(processes.displayName(app("org.x.Music")), "Music");
    EXPECT_TRUE(processes.isUserApp(file("org.x.Music")));
}

TEST_F(LinuxAudioProcessesTest, ANativeAppIsKnownByTheUnitOfTheSession) {
    set(7, {.exe = "/opt/other", .cgroup = "/app.slice/app-gnome-org.x.Music-71.scope"});
    EXPECT_EQ(processes.identity(7), app("org.x.Music"));
}

TEST_F(LinuxAudioProcessesTest, AFlatpakIsKnownByItsSandboxAndByItsUnit) {
    set(7, {.exe = "/app/bin/radio", .flatpakInfo = "[Application]\nname=org.x.Radio\n"});
    set(8, {.exe = "/usr/bin/radio", .cgroup = "/app.slice/app-flatpak-org.x.Radio-8.scope"});
    EXPECT_EQ(processes.identity(7), app("org.x.Radio"));
    EXPECT_EQ(processes.identity(8), app("org.x.Radio"));
}

TEST_F(LinuxAudioProcessesTest, ASnapIsKnownByItsUnitAndByItsMount) {
    set(7, {.exe = "/snap/player/12/bin/player",
            .cgroup = "/snap.player.player-3b241101-e2bb-4255-8caf-4136c566a962.scope"});
    set(8, {.exe = "/snap/player/12/bin/helper"});
    EXPECT_EQ(processes.identity(7), app("player_player"));
    EXPECT_EQ(processes.identity(8), app("player_player"));
}

TEST_F(LinuxAudioProcessesTest, AnAppImageIsAnAppByItsOwnFile) {
    using namespace std::string_literals;
    set(7, {.exe = "/tmp/.mount_tunesAbCdEf/usr/bin/tunes",
            .environment = "HOME=/home/ann\0APPIMAGE=/home/ann/Tunes-2.1.AppImage\0"s});
    const AppIdentity tunes{Kind::app, "/home/ann/Tunes-2.1.AppImage"};
    EXPECT_EQ(processes.identity(7), tunes);
    EXPECT_EQ(processes.displayName(tunes), "Tunes-2.1");
    EXPECT_TRUE(processes.isUserApp(tunes.id));
}

TEST_F(LinuxAudioProcessesTest, AScriptIsKnownByItsFileAndNotByItsInterpreter) {
    using namespace std::string_literals;
    set(7, {.exe = "/usr/bin/python3.11",
            .commandLine = "python3\0-u\0/usr/share/podcasts/main.py\0"s});
    set(8, {.exe = "/usr/bin/python3.11", .commandLine = "python3\0/home/ann/beep.py\0"s});
    EXPECT_EQ(processes.identity(7), app("podcasts"));
    EXPECT_EQ(processes.identity(8), (AppIdentity{Kind::tool, "python3.11"}));
}

TEST_F(LinuxAudioProcessesTest, TheChildOfAnAppIsTheApps) {
    set(7, {.exe = "/usr/bin/x-music"});
    set(8, {.exe = "/usr/bin/decoder", .parent = 7});
    set(9, {.exe = "/usr/libexec/decoder-worker", .parent = 8});
    EXPECT_EQ(processes.identity(9), app("org.x.Music"));
}

TEST_F(LinuxAudioProcessesTest, AChildKnownToBeAnAppsStaysItWhenItsParentEnds) {
    set(7, {.exe = "/usr/bin/x-music"});
    set(8, {.exe = "/usr/bin/decoder", .parent = 7});
    processes.identity(8);
    end(7);
    set(8, {.exe = "/usr/bin/decoder", .parent = 1});
    EXPECT_EQ(processes.identity(8), app("org.x.Music"));
}

TEST_F(LinuxAudioProcessesTest, APlayerTypedIntoATerminalIsATool) {
    set(6, {.exe = "/usr/bin/x-terminal"});
    set(7, {.exe = "/usr/bin/bash", .parent = 6});
    set(8, {.exe = "/usr/bin/tuneplay", .parent = 7});
    const AppIdentity tool{Kind::tool, "tuneplay"};
    EXPECT_EQ(processes.identity(8), tool);
    EXPECT_EQ(processes.displayName(tool), "tuneplay");
    EXPECT_FALSE(processes.isUserApp(tool.id));
}

TEST_F(LinuxAudioProcessesTest, TheSystemIsNoUserApp) {
    set(7, {.exe = "/usr/bin/pipewire", .cgroup = "/user.slice/session.slice/pipewire.service"});
    set(8, {.comm = "kworker/0:1", .isKernelThread = true});
    EXPECT_EQ(processes.identity(7), AppIdentity::system);
    EXPECT_EQ(processes.identity(8), AppIdentity::system);
    EXPECT_FALSE(processes.isUserApp(AppIdentity::system.id));
    EXPECT_FALSE(processes.isUserApp(""));
}

TEST_F(LinuxAudioProcessesTest, WhatIsHiddenFromTheMenusIsNoUserApp) {
    set(7, {.exe = "/usr/libexec/x-alarms"});
    EXPECT_EQ(processes.identity(7), app("org.x.Alarms"));
    EXPECT_FALSE(processes.isUserApp(file("org.x.Alarms")));
}

TEST_F(LinuxAudioProcessesTest, AnEntryThatWasDeletedIsNoUserApp) {
    EXPECT_FALSE(processes.isUserApp(file("org.x.Deleted")));
}

TEST_F(LinuxAudioProcessesTest, AnAppThatIsInstalledLaterIsFound) {
    set(7, {.exe = "/usr/bin/x-music"});
    processes.identity(7);
    std::filesystem::last_write_time(tree.root() / "applications",
                                     std::filesystem::file_time_type());
    processes.identity(7); // its answer is kept, so that nothing is looked for
    tree.write("applications/late.desktop", entry("Name=Late\nExec=/opt/late/late\n"));
    set(8, {.exe = "/opt/late/late"});
    EXPECT_EQ(processes.identity(8), app("late"));
    EXPECT_TRUE(processes.isUserApp(file("late")));
}

TEST_F(LinuxAudioProcessesTest, ARecycledPidIsAnotherProcess) {
    set(7, {.exe = "/usr/bin/x-music", .start = 1000});
    EXPECT_EQ(processes.identity(7), app("org.x.Music"));
    set(7, {.exe = "/usr/bin/tuneplay", .start = 2000});
    EXPECT_EQ(processes.identity(7), (AppIdentity{Kind::tool, "tuneplay"}));
}

TEST_F(LinuxAudioProcessesTest, AProgramThatReplacesItselfIsKnownByItsNewOne) {
    set(7, {.exe = "/usr/bin/sh", .comm = "sh"});
    EXPECT_EQ(processes.identity(7), (AppIdentity{Kind::tool, "sh"}));
    set(7, {.exe = "/usr/bin/x-music", .comm = "x-music"});
    EXPECT_EQ(processes.identity(7), app("org.x.Music"));
}

TEST_F(LinuxAudioProcessesTest, AProcessThatIsPutIntoItsUnitLaterBelongsToItsAppThen) {
    set(7, {.exe = "/opt/other"});
    EXPECT_EQ(processes.identity(7), (AppIdentity{Kind::tool, "other"}));
    set(7, {.exe = "/opt/other", .cgroup = "/app.slice/app-org.x.Music-7.scope"});
    EXPECT_EQ(processes.identity(7), app("org.x.Music"));
}

TEST_F(LinuxAudioProcessesTest, AProcessThatIsGoneHasNoIdentity) {
    EXPECT_FALSE(processes.identity(7));
    set(7, {.exe = "/usr/bin/x-music"});
    EXPECT_TRUE(processes.identity(7));
    end(7);
    EXPECT_FALSE(processes.identity(7));
    EXPECT_EQ(processes.remembered(), 0u);
}

TEST_F(LinuxAudioProcessesTest, AProcessThatOnlyWaitsForItsParentIsGone) {
    set(7, {.exe = "/usr/bin/x-music"});
    processes.identity(7);
    set(7, {.exe = "", .state = "Z"});
    EXPECT_FALSE(processes.identity(7));
    set(8, {.exe = ""}); // its memory is gone already
    EXPECT_FALSE(processes.identity(8));
}

TEST_F(LinuxAudioProcessesTest, APidThatIsRecycledWhileItIsReadHasNoIdentity) {
    const Process script{.exe = "/usr/bin/python3"};
    set(7, script);
    // Whoever reads the command line waits until the other process is there.
    const std::string pipe = (tree.root() / path(7, "cmdline")).string();
    std::filesystem::remove(pipe);
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::thread other([&] {
        const int writer = ::open(pipe.c_str(), O_WRONLY);
        set(8, {.exe = "/usr/bin/python3", .start = 2000});
        std::filesystem::rename(tree.root() / path(8, "stat"), tree.root() / path(7, "stat"));
        ::close(writer);
    });
    const std::optional<AppIdentity> identity = processes.identity(7);
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK); // lets go of who still waits
    other.join();
    ::close(reader);
    EXPECT_FALSE(identity);
    EXPECT_EQ(processes.remembered(), 0u);
    std::filesystem::remove(pipe);
    tree.write(path(7, "cmdline"), "");
    EXPECT_EQ(processes.identity(7), (AppIdentity{Kind::tool, "python3"}));
}

TEST_F(LinuxAudioProcessesTest, PidsThatNoProcessHasAreNoTrouble) {
    for (const std::int32_t pid : {0, -1, -2147483647, 2147483647})
        EXPECT_FALSE(processes.identity(pid));
}

TEST_F(LinuxAudioProcessesTest, BrokenFilesAreNoTrouble) {
    set(7, {.exe = "/usr/bin/x-music"});
    tree.write(path(7, "cgroup"), std::string(100'000, ':'));
    EXPECT_EQ(processes.identity(7), app("org.x.Music"));
    for (const std::string& stat : {std::string(), std::string("7 (x"), std::string(9'999, ')')}) {
        tree.write(path(7, "stat"), stat);
        EXPECT_FALSE(processes.identity(7));
    }
}

TEST_F(LinuxAudioProcessesTest, AProcessWhoseLinkLeadsToNoFileIsKnownByWhatItSaysItself) {
    set(7, {.exe = "/memfd:x (deleted)", .commandLine = "/usr/bin/x-music"});
    set(8, {.exe = "/memfd:x (deleted)", .comm = "x-music"});
    EXPECT_EQ(processes.identity(7), app("org.x.Music"));
    EXPECT_EQ(processes.identity(8), app("org.x.Music"));
}

TEST_F(LinuxAudioProcessesTest, AnotherUsersProcessIsKnownByWhatIsOpenToAll) {
    set(7, {.exe = "/app/bin/radio",
            .cgroup = "/app.slice/app-flatpak-org.x.Radio-7.scope",
            .flatpakInfo = "[Application]\nname=org.x.Radio\n"});
    set(8, {.exe = "/usr/bin/x-music"});
    const auto closed = [&](const std::string& name) {
        std::filesystem::permissions(tree.root() / name, std::filesystem::perms::none);
    };
    closed(path(7, "root"));
    closed("proc/8/");
    const auto answers = [&] {
        const AsNobody nobody;
        return std::pair(processes.identity(7), processes.identity(8));
    };
    std::filesystem::permissions(tree.root(), std::filesystem::perms::all);
    EXPECT_EQ(answers(),
              std::pair(std::optional(app("org.x.Radio")), std::optional<AppIdentity>()));
    for (const char* name : {"proc/7/root", "proc/8"})
        std::filesystem::permissions(tree.root() / name, std::filesystem::perms::owner_all);
}

TEST_F(LinuxAudioProcessesTest, ParentsThatAreEachOthersEnd) {
    set(7, {.exe = "/opt/a", .parent = 8});
    set(8, {.exe = "/opt/b", .parent = 7});
    set(9, {.exe = "/opt/c", .parent = 9});
    EXPECT_EQ(processes.identity(7), (AppIdentity{Kind::tool, "a"}));
    EXPECT_EQ(processes.identity(9), (AppIdentity{Kind::tool, "c"}));
}

TEST_F(LinuxAudioProcessesTest, TheDeadAreForgotten) {
    set(1, {.exe = "/opt/first"});
    for (std::int32_t pid = 1000; pid < 1200; ++pid) {
        set(pid, {.exe = "/opt/short-lived"});
        ASSERT_TRUE(processes.identity(pid));
        end(pid);
        ASSERT_LE(processes.remembered(), 66u);
    }
}

TEST_F(LinuxAudioProcessesTest, TheOwnPidIsTheGivenOne) {
    EXPECT_EQ(processes.ownPid(), 42);
    set(42, {.exe = "/usr/bin/x-music"});
    EXPECT_EQ(processes.identity(42), app("org.x.Music")); // it answers for itself as for any
}

TEST_F(LinuxAudioProcessesTest, AppsAreCalledInTheUsersLanguage) {
    tree.write("applications/org.x.Music.desktop", entry("Name=Music\nName[de]=Musik\n"));
    LinuxAudioProcesses german(tree.root(), folders, 42, "de_AT.UTF-8");
    EXPECT_EQ(german.displayName(app("org.x.Music")), "Musik");
    EXPECT_EQ(processes.displayName(app("org.x.Music")), "Music");
}

TEST_F(LinuxAudioProcessesTest, TextThatIsNotUTF8IsMadeIt) {
    tree.write("applications/bad.desktop", entry("Name=B\xFF\n"));
    set(7, {.exe = "/opt/\xFF"});
    EXPECT_EQ(processes.identity(7), (AppIdentity{Kind::tool, "\uFFFD"}));
    EXPECT_EQ(processes.displayName(app("bad")), "B\uFFFD");
}

TEST_F(LinuxAudioProcessesTest, AnswersAreThoseOfTheListOfApps) {
    using namespace std::string_literals;
    tree.write("proc/stat", "processes 1\n");
    set(1, {.exe = "/usr/lib/systemd/systemd", .cgroup = "/init.scope", .parent = 0});
    set(2, {.parent = 0, .comm = "kthreadd", .isKernelThread = true});
    set(6, {.exe = "/usr/bin/x-terminal"});
    set(7, {.exe = "/usr/bin/bash", .parent = 6});
    set(8, {.exe = "/opt/tuneplay/3.1/bin/tuneplay", .parent = 7});
    set(9, {.exe = "/usr/bin/x-music (deleted)", .parent = 99});
    set(10, {.exe = "/usr/libexec/decoder", .parent = 12});
    set(11, {.exe = "/usr/bin/python3", .commandLine = "python3\0/usr/share/podcasts/main.py\0"s});
    set(12, {.exe = "/app/bin/radio", .flatpakInfo = "[Application]\nname=org.x.Radio\n"});
    set(13, {.exe = "/memfd:x", .comm = "ghost"});
    set(14, {.exe = "/usr/bin/mixer", .cgroup = "/machine.slice/machine-box.scope"});
    LinuxProcesses source(tree.root(), std::make_shared<DesktopFolders>(folders),
                          ProcessClocks::recorded());
    ProcessSampler sampler;
    const auto samples = sampler.sample(source, false);
    ASSERT_EQ(samples.size(), 11u);
    for (const ProcessSample& sample : samples)
        EXPECT_EQ(processes.identity(sample.pid), sample.app) << sample.pid;
    EXPECT_EQ(processes.identity(10), app("org.x.Radio"));
}

TEST_F(LinuxAudioProcessesTest, MayBeAskedFromManyThreads) {
    set(7, {.exe = "/usr/bin/x-music"});
    for (std::int32_t pid = 8; pid < 16; ++pid) set(pid, {.exe = "/usr/bin/d", .parent = pid - 1});
    std::atomic<int> right = 0;
    std::latch start(4);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            start.arrive_and_wait();
            for (std::int32_t pid = 7; pid < 16; ++pid)
                right += processes.identity(pid) == app("org.x.Music") &&
                         processes.displayName(app("org.x.Music")) == "Music" &&
                         processes.isUserApp(file("org.x.Music")) && processes.ownPid() == 42;
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(right, 4 * 9);
}

TEST(LinuxAudioProcessesHost, AProcessWhoseLinkIsRefusedIsSomebodysOnThisMachine) {
    LinuxAudioProcesses processes("/", {}, ::getpid());
    const AsNobody nobody;
    EXPECT_TRUE(processes.identity(1));
}

TEST(LinuxAudioProcessesHost, AChildIsSeenUntilItEndsOnThisMachine) {
    LinuxAudioProcesses processes("/", {}, ::getpid());
    int orders[2] = {};
    ASSERT_EQ(::pipe(orders), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        char order = 0;
        ::close(orders[1]);
        ::_exit(::read(orders[0], &order, 1) == 0 ? 0 : 1);
    }
    const auto itself = processes.identity(processes.ownPid());
    ASSERT_TRUE(itself);
    EXPECT_EQ(processes.identity(child), itself); // the same program
    ::close(orders[0]);
    ::close(orders[1]);
    siginfo_t info = {};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(processes.identity(child)); // it waits for this program
    ::waitpid(child, nullptr, 0);
    EXPECT_FALSE(processes.identity(child));
}

} // namespace
} // namespace tavero
