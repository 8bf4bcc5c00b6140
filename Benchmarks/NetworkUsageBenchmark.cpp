#include "CpuTime.h"
#include "platform/linux/network/LinuxNetworkUsage.h"
#include "platform/linux/network/SockDiagSockets.h"

#include <benchmark/benchmark.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace tavero {
namespace {

// Processes that hold connections over the loopback, both ends of each, and others beside them. All
// connections move some bytes every second.
class Talkers {
  public:
    Talkers(std::int64_t connections, std::int64_t talkers, std::int64_t others) {
        for (std::int64_t i = 0; i < talkers; ++i) start(connections / talkers);
        for (std::int64_t i = 0; i < others; ++i) start(0);
    }
    ~Talkers() {
        for (const pid_t pid : pids_) ::kill(pid, SIGKILL);
        for (const pid_t pid : pids_) ::waitpid(pid, nullptr, 0);
    }
    Talkers(const Talkers&) = delete;
    Talkers& operator=(const Talkers&) = delete;

  private:
    struct Connection {
        int near;
        int far;
    };

    void start(std::int64_t connections) {
        const pid_t pid = ::fork();
        if (pid > 0) pids_.push_back(pid);
        if (pid == 0) live(connections);
    }

    [[noreturn]] static void live(std::int64_t count) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        std::vector<Connection> connections;
        for (std::int64_t i = 0; i < count; ++i) connections.push_back(connect());
        std::array<char, 1000> bytes = {};
        while (true) {
            for (const Connection& connection : connections) {
                if (::send(connection.near, bytes.data(), bytes.size(), 0) < 0) ::_exit(1);
                if (::recv(connection.far, bytes.data(), bytes.size(), MSG_WAITALL) < 0) ::_exit(1);
            }
            connections.empty() ? static_cast<unsigned>(::pause()) : ::sleep(1);
        }
    }

    static Connection connect() {
        const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        const int near = ::socket(AF_INET, SOCK_STREAM, 0);
        if (::bind(listener, generic, length) != 0 || ::listen(listener, 1) != 0 ||
            ::getsockname(listener, generic, &length) != 0 || ::connect(near, generic, length) != 0)
            ::_exit(1);
        const int far = ::accept(listener, nullptr, nullptr);
        ::close(listener);
        return {near, far};
    }

    std::vector<pid_t> pids_;
};

// One read a second with 400 sockets in 20 of 1,000 processes, as in use; only its CPU time counts.
// With `fresh`, a new connection opens before each read, whose owner is to be found.
void networkUsage(benchmark::State& state, bool fresh) {
    const Talkers talkers(state.range(0) / 2, 20, 980);
    LinuxNetworkUsage usage(std::make_unique<SockDiagSockets>(),
                            SocketOwners("/", std::make_shared<ProcessFiles>("/")),
                            LinuxNetworkUsage::Local::counts);
    ::sleep(2);
    for (int i = 0; i < 3; ++i) usage.read();
    std::size_t processes = 0;
    for (auto _ : state) {
        const std::unique_ptr<Talkers> another =
            fresh ? std::make_unique<Talkers>(1, 1, 0) : nullptr;
        ::sleep(1);
        const double before = cpuSeconds();
        processes = usage.read().size();
        state.SetIterationTime(cpuSeconds() - before);
    }
    state.counters["talking"] = static_cast<double>(processes);
}
void NetworkUsage(benchmark::State& state) { networkUsage(state, false); }
void NetworkUsageWithNewSockets(benchmark::State& state) { networkUsage(state, true); }
BENCHMARK(NetworkUsage)->Arg(400)->Iterations(12)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(NetworkUsageWithNewSockets)
    ->Arg(400)
    ->Iterations(12)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tavero
