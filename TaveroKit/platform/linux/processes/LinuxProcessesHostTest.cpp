#include "platform/linux/processes/LinuxProcesses.h"

#include "apps/ProcessSampler.h"
#include "platform/linux/processes/AsNobody.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>
#include <vector>

#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace tavero {
namespace {

constexpr std::uint64_t second = 1'000'000'000;

// A child that burns CPU when told to and says when it has burnt it.
class Burner {
  public:
    Burner() {
        if (::pipe(orders_) != 0 || ::pipe(answers_) != 0) throw std::bad_alloc();
        pid_ = ::fork();
        if (pid_ == 0) run();
        burn(0); // it runs and holds its memory
    }
    ~Burner() {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
        for (const int file : {orders_[0], orders_[1], answers_[0], answers_[1]}) ::close(file);
    }
    std::int32_t pid() const { return pid_; }
    void burn(std::uint64_t nanoseconds) {
        char done = 0;
        if (::write(orders_[1], &nanoseconds, sizeof nanoseconds) < 0) std::abort();
        if (::read(answers_[0], &done, 1) != 1) std::abort();
    }

    static constexpr std::size_t memory = 32 << 20;

  private:
    [[noreturn]] void run() const {
        std::vector<char> held(memory, 'x');
        std::uint64_t order = 0;
        while (::read(orders_[0], &order, sizeof order) == sizeof order) {
            timespec time = {};
            const auto used = [&] {
                ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
                return static_cast<std::uint64_t>(time.tv_sec) * second +
                       static_cast<std::uint64_t>(time.tv_nsec);
            };
            for (const std::uint64_t start = used(); used() - start < order;) {
            }
            if (::write(answers_[1], held.data(), 1) != 1) break;
        }
        ::_exit(0);
    }

    int orders_[2] = {};
    int answers_[2] = {};
    pid_t pid_ = 0;
};

const ProcessSample* find(std::span<const ProcessSample> samples, std::int32_t pid) {
    for (const ProcessSample& s : samples)
        if (s.pid == pid) return &s;
    return nullptr;
}

class LinuxProcessesHost : public testing::Test {
  protected:
    LinuxProcesses source{"/", std::make_shared<DesktopFolders>(std::vector<std::string>{})};
    ProcessSampler sampler;
};

TEST_F(LinuxProcessesHost, AChildsCPUAndMemoryAreSeenOnThisMachine) {
    Burner child;
    sampler.sample(source, true);
    const std::uint64_t before = source.clock();
    child.burn(second / 5);
    const auto samples = sampler.sample(source, true);
    const double elapsed = static_cast<double>(source.clock() - before) / 1e9;
    const ProcessSample* sample = find(samples, child.pid());
    ASSERT_TRUE(sample);
    EXPECT_TRUE(sample->hasUsage);
    EXPECT_NEAR(sample->cpu * elapsed, 0.2, 0.05);
    EXPECT_GE(sample->memory, Burner::memory);
    EXPECT_GE(sample->threads, 1);
    EXPECT_LE(sample->threads, 2); // the thread sanitizer adds one of its own
    EXPECT_EQ(sample->path, std::filesystem::read_symlink("/proc/self/exe"));
}

TEST_F(LinuxProcessesHost, TheFirstProcessIsToldToAnybodyOnThisMachine) {
    const AsNobody nobody;
    const ProcessSample* first = find(sampler.sample(source, true), 1);
    ASSERT_TRUE(first);
    EXPECT_TRUE(first->hasUsage);
    EXPECT_FALSE(first->path.empty());
    EXPECT_FALSE(first->name.empty());
    EXPECT_GE(first->threads, 1);
}

TEST_F(LinuxProcessesHost, AChildThatEndedIsGoneOnThisMachine) {
    auto child = std::make_unique<Burner>();
    const std::int32_t pid = child->pid();
    EXPECT_TRUE(find(sampler.sample(source, false), pid));
    child.reset();
    EXPECT_FALSE(find(sampler.sample(source, false), pid));
}

TEST_F(LinuxProcessesHost, ListsWhatPsListsOnThisMachine) {
    Burner child;
    FILE* ps = ::popen("ps -e -o pid= -o rss= -o nlwp= -o stat=", "r");
    ASSERT_TRUE(ps);
    const auto samples = sampler.sample(source, true);
    int pid = 0, listed = 0, alike = 0, threads = 0;
    unsigned long kilobytes = 0;
    char state[16] = {};
    while (std::fscanf(ps, "%d %lu %d %15s", &pid, &kilobytes, &threads, state) == 4) {
        if (state[0] == 'Z') continue; // waits for its parent
        ++listed;
        const ProcessSample* sample = find(samples, pid);
        // Our figure leaves out what is shared, and both move.
        alike += sample && sample->threads <= threads + 8 &&
                 sample->memory <= kilobytes * 1024 + kilobytes * 256 + (16 << 20);
    }
    ::pclose(ps);
    EXPECT_GE(listed, 3); // this program, its child, ps
    // A few come and go between the two.
    EXPECT_GE(alike + 5 + listed / 5, listed);
}

} // namespace
} // namespace tavero
