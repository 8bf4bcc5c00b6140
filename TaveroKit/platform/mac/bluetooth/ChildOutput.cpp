#include "platform/mac/bluetooth/ChildOutput.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <thread>

extern char** environ; // NOLINT: the system's name

namespace tavero {

namespace {

using Steady = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto cancelCheck = 100ms; // how long a wait goes on after having been cancelled
constexpr auto exitCheck = 5ms;
constexpr auto killTime = 1s;

class Pipe {
  public:
    // The system has no call on every platform that makes it close at the start of a program.
    Pipe() {
        if (::pipe(ends_) != 0) ends_[0] = ends_[1] = -1;
        for (const int end : ends_)
            if (end >= 0) ::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    ~Pipe() {
        closeWritable();
        if (ends_[0] >= 0) ::close(ends_[0]);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    bool isOpen() const { return ends_[0] >= 0; }
    int readable() const { return ends_[0]; }
    int writable() const { return ends_[1]; }
    void closeWritable() {
        if (ends_[1] >= 0) ::close(ends_[1]);
        ends_[1] = -1;
    }

  private:
    int ends_[2];
};

// In a process group of its own, to be killed as a whole.
std::optional<pid_t> spawn(const std::vector<std::string>& command, int output) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str())); // the call doesn't write to them
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    sigset_t noSignals;
    sigemptyset(&noSignals);
    if (posix_spawn_file_actions_init(&files) != 0) return std::nullopt;
    if (posix_spawnattr_init(&attributes) != 0) {
        posix_spawn_file_actions_destroy(&files);
        return std::nullopt;
    }
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setsigmask(&attributes, &noSignals);
    pid_t child = 0;
    const int error =
        posix_spawn(&child, arguments.front(), &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error == 0 ? std::optional(child) : std::nullopt;
}

// Whether a wait may go on.
struct Patience {
    Steady::time_point deadline;
    const std::atomic<bool>& isCancelled;

    bool lasts() const { return !isCancelled && Steady::now() < deadline; }
};

std::optional<std::string> readToEnd(int output, std::size_t mostBytes, const Patience& patience) {
    std::string text;
    std::array<char, 16'384> part;
    while (patience.lasts()) {
        pollfd ready{.fd = output, .events = POLLIN, .revents = 0};
        if (::poll(&ready, 1, static_cast<int>(cancelCheck.count())) <= 0) continue;
        const ssize_t count = ::read(output, part.data(), part.size());
        if (count == 0) return text;
        if (count < 0 && errno != EINTR) return std::nullopt;
        if (count > 0) text.append(part.data(), static_cast<std::size_t>(count));
        if (text.size() > mostBytes) return std::nullopt;
    }
    return std::nullopt;
}

bool hasEnded(pid_t child) {
    const pid_t ended = ::waitpid(child, nullptr, WNOHANG);
    return ended == child || (ended < 0 && errno != EINTR);
}

bool waitFor(pid_t child, const Patience& patience) {
    while (!hasEnded(child)) {
        if (!patience.lasts()) return false;
        std::this_thread::sleep_for(exitCheck);
    }
    return true;
}

} // namespace

std::optional<std::string> childOutput(const std::vector<std::string>& command,
                                       const ChildLimits& limits,
                                       const std::atomic<bool>& isCancelled) {
    if (command.empty()) return std::nullopt;
    Pipe pipe;
    if (!pipe.isOpen()) return std::nullopt;
    const Patience patience{Steady::now() + limits.time, isCancelled};
    const std::optional<pid_t> child = spawn(command, pipe.writable());
    if (!child) return std::nullopt;
    pipe.closeWritable(); // or else its end would never come

    std::optional<std::string> output = readToEnd(pipe.readable(), limits.bytes, patience);
    if (output && waitFor(*child, patience)) return output;
    ::kill(-*child, SIGKILL);
    // One that the kernel holds on to is left to it.
    const std::atomic<bool> never = false;
    waitFor(*child, {Steady::now() + killTime, never});
    return std::nullopt;
}

} // namespace tavero
