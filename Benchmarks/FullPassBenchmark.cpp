#include "CpuTime.h"
#include "MonitorEngine.h"
#include "Readers.h"
#include "apps/ProcessSampler.h"
#include "platform/linux/processes/LinuxProcesses.h"

#include <benchmark/benchmark.h>

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace tavero {
namespace {

// Processes beside those of the machine, a tenth of which wake up once a second.
class Population {
  public:
    explicit Population(std::int64_t count) {
        for (std::int64_t i = 0; i < count; ++i)
            if (const pid_t pid = ::fork(); pid > 0)
                pids_.push_back(pid);
            else if (pid == 0)
                live(i % 10 == 0);
    }
    ~Population() {
        for (const pid_t pid : pids_) ::kill(pid, SIGKILL);
        for (const pid_t pid : pids_) ::waitpid(pid, nullptr, 0);
    }

  private:
    [[noreturn]] static void live(bool wakes) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        while (true) wakes ? ::sleep(1) : static_cast<unsigned>(::pause());
    }

    std::vector<pid_t> pids_;
};

// One pass a second, as in use: between two passes the caches forget. Only the passes' CPU time
// counts.
template <typename Pass>
void measure(benchmark::State& state, Pass pass) {
    const Population population(state.range(0));
    std::size_t processes = pass();
    pass();
    for (auto _ : state) {
        ::sleep(1);
        const double before = cpuSeconds();
        processes = pass();
        state.SetIterationTime(cpuSeconds() - before);
    }
    state.counters["processes"] = static_cast<double>(processes);
}

std::shared_ptr<DesktopFolders> desktop() {
    return std::make_shared<DesktopFolders>(applicationFolders("", "", ""));
}

// Every process with its usage.
void ProcessPass(benchmark::State& state) {
    LinuxProcesses source("/", desktop());
    ProcessSampler sampler;
    measure(state, [&] { return sampler.sample(source, true).size(); });
}
BENCHMARK(ProcessPass)->Arg(1000)->Iterations(12)->UseManualTime()->Unit(benchmark::kMicrosecond);

// All that the main window asks of the engine: the same, the apps they belong to, their rows, and
// whatever else this machine has.
void EnginePass(benchmark::State& state) {
    MonitorEngine engine(readers(Machine::host()));
    Date now{};
    measure(state, [&] {
        now += std::chrono::seconds(1);
        return static_cast<std::size_t>(
            engine.sample(MonitorEngine::Detail::full, 40, true, now).processCount);
    });
}
BENCHMARK(EnginePass)->Arg(1000)->Iterations(12)->UseManualTime()->Unit(benchmark::kMicrosecond);

// The least that it can cost: the CPU clock of each process, two files of each whose clock moved,
// and the list of processes only after a fork; nothing is made out of what is read.
class Floor {
  public:
    std::size_t pass() {
        if (hasForked()) list();
        for (Process& process : processes_) {
            timespec time = {};
            ::clock_gettime(static_cast<clockid_t>(~static_cast<unsigned>(process.pid) << 3 | 2u),
                            &time);
            if (time.tv_sec == process.time.tv_sec && time.tv_nsec == process.time.tv_nsec)
                continue;
            process.time = time;
            read(process.pid, "/stat");
            read(process.pid, "/io");
        }
        return processes_.size();
    }

  private:
    struct Process {
        std::int32_t pid;
        timespec time;
    };
    struct Close {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };

    bool hasForked() {
        const ssize_t length = ::pread(stat_, buffer_.data(), buffer_.size(), 0);
        const std::string_view text(buffer_.data(), static_cast<std::size_t>(length));
        const std::size_t line = text.find("\nprocesses ");
        std::uint64_t forks = 0;
        std::from_chars(text.data() + line + 11, text.data() + text.size(), forks);
        return forks != std::exchange(forks_, forks);
    }
    void list() {
        ::rewinddir(proc_.get());
        std::size_t at = 0;
        while (const dirent* entry = ::readdir(proc_.get())) {
            std::int32_t pid = 0;
            std::from_chars(entry->d_name, entry->d_name + std::strlen(entry->d_name), pid);
            if (pid < 1) continue;
            while (at < processes_.size() && processes_[at].pid < pid)
                processes_.erase(processes_.begin() + static_cast<std::ptrdiff_t>(at));
            if (at == processes_.size() || processes_[at].pid != pid)
                processes_.insert(processes_.begin() + static_cast<std::ptrdiff_t>(at), {pid, {}});
            ++at;
        }
        processes_.resize(at);
    }
    void read(std::int32_t pid, const char* name) {
        std::array<char, 32> path = {};
        std::strcpy(std::to_chars(path.data(), path.data() + 12, pid).ptr, name);
        const int file = ::openat(::dirfd(proc_.get()), path.data(), O_RDONLY | O_CLOEXEC);
        benchmark::DoNotOptimize(::read(file, buffer_.data(), buffer_.size()));
        ::close(file);
    }

    std::unique_ptr<DIR, Close> proc_{::opendir("/proc")};
    int stat_ = ::open("/proc/stat", O_RDONLY | O_CLOEXEC);
    std::uint64_t forks_ = 0;
    std::vector<Process> processes_;
    std::vector<char> buffer_ = std::vector<char>(1 << 17);
};

void ProcessFloor(benchmark::State& state) {
    Floor floor;
    measure(state, [&] { return floor.pass(); });
}
BENCHMARK(ProcessFloor)->Arg(1000)->Iterations(12)->UseManualTime()->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tavero
