#include "platform/linux/network/LinuxNetworkUsage.h"

#include "platform/linux/network/SockDiagSockets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <thread>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tavero {
namespace {

// The two ends of a connection over the loopback interface, both this program's.
class Loopback {
  public:
    Loopback() {
        const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(listener, generic, length), 0);
        EXPECT_EQ(::listen(listener, 1), 0);
        EXPECT_EQ(::getsockname(listener, generic, &length), 0);
        near_ = ::socket(AF_INET, SOCK_STREAM, 0);
        EXPECT_EQ(::connect(near_, generic, length), 0);
        far_ = ::accept(listener, nullptr, nullptr);
        ::close(listener);
    }
    ~Loopback() { close(); }
    Loopback(const Loopback&) = delete;
    Loopback& operator=(const Loopback&) = delete;

    void move(std::size_t count) const {
        std::vector<char> bytes(std::min<std::size_t>(count, 10'000));
        for (std::size_t left = count; left > 0; left -= std::min(left, bytes.size())) {
            const std::size_t part = std::min(left, bytes.size());
            ASSERT_EQ(::send(near_, bytes.data(), part, 0), static_cast<ssize_t>(part));
            ASSERT_EQ(::recv(far_, bytes.data(), part, MSG_WAITALL), static_cast<ssize_t>(part));
        }
    }
    // As a rule 0: what a slow machine made the kernel send again.
    std::uint64_t sentAgain() const {
        tcp_info info = {};
        socklen_t length = sizeof info;
        ::getsockopt(near_, IPPROTO_TCP, TCP_INFO, &info, &length);
        return info.tcpi_bytes_retrans;
    }
    std::set<std::uint64_t> cookies() const {
        std::set<std::uint64_t> cookies;
        for (const int end : {near_, far_}) {
            std::uint64_t cookie = 0;
            socklen_t length = sizeof cookie;
            ::getsockopt(end, SOL_SOCKET, SO_COOKIE, &cookie, &length);
            cookies.insert(cookie);
        }
        return cookies;
    }
    void close() {
        for (int* end : {&near_, &far_})
            if (*end >= 0) ::close(std::exchange(*end, -1));
    }

  private:
    int near_ = -1;
    int far_ = -1;
};

bool isAllowed() { return SockDiagSockets().isAvailable(); }

// The kernel's answers; one in which the end of certain connections must stand waits for it, since
// the kernel tells it a moment late.
class PatientSockDiag : public SockDiagSource {
  public:
    explicit PatientSockDiag(std::set<std::uint64_t>& ending) : ending_(ending) {}
    void read(TcpConnections& connections) override {
        kernel_.read(connections);
        TcpConnections more = connections;
        for (int reads = 0; reads < 50'000 && !hasEnded(more); ++reads) {
            std::this_thread::yield();
            kernel_.read(more);
            connections.closed.insert(connections.closed.end(), more.closed.begin(),
                                      more.closed.end());
        }
    }

  private:
    bool hasEnded(const TcpConnections& told) {
        for (const TcpConnection& closed : told.closed) ending_.erase(closed.cookie);
        return ending_.empty();
    }
    SockDiagSockets kernel_;
    std::set<std::uint64_t>& ending_;
};

// This machine, read by default with the loopback.
struct Host {
    explicit Host(LinuxNetworkUsage::Local local = LinuxNetworkUsage::Local::counts)
        : usage_(std::make_unique<PatientSockDiag>(ending),
                 SocketOwners("/", std::make_shared<ProcessFiles>("/")), local) {}
    NetworkBytes ours() {
        const auto usage = usage_.read();
        const auto entry = usage.find(::getpid());
        return entry == usage.end() ? NetworkBytes{} : entry->second;
    }

    std::set<std::uint64_t> ending;

  private:
    LinuxNetworkUsage usage_;
};

TEST(LinuxNetworkUsageHost, BytesOverTheLoopbackAreCountedExactlyOnThisMachine) {
    const Loopback connection;
    Host host;
    EXPECT_EQ(host.ours(), NetworkBytes{});
    connection.move(300'000);
    const NetworkBytes moved = host.ours();
    // Where the kernel refuses, nothing is told.
    const std::uint64_t expected = isAllowed() ? 300'000 : 0;
    EXPECT_EQ(moved, (NetworkBytes{expected, expected + connection.sentAgain()}));
    EXPECT_EQ(host.ours(), NetworkBytes{});
}

TEST(LinuxNetworkUsageHost, AConnectionThatClosesIsCountedToItsLastByteOnThisMachine) {
    Host host;
    host.ours();
    Loopback connection;
    connection.move(1000);
    const NetworkBytes first = host.ours();
    connection.move(50'000);
    const std::uint64_t again = connection.sentAgain();
    if (isAllowed()) host.ending = connection.cookies();
    connection.close();
    const NetworkBytes last = host.ours();
    const std::uint64_t expected = isAllowed() ? 51'000 : 0;
    const std::uint64_t ends = isAllowed() ? 2 : 0; // one byte for the end of each stream
    EXPECT_EQ(first.received + last.received, expected + ends);
    EXPECT_EQ(first.sent + last.sent, expected + again);
    EXPECT_TRUE(host.ending.empty());
}

TEST(LinuxNetworkUsageHost, TheLoopbackIsLeftOutByDefaultOnThisMachine) {
    const Loopback connection;
    Host host(LinuxNetworkUsage::Local::isLeftOut);
    host.ours();
    connection.move(100'000);
    EXPECT_LT(host.ours().received, 100'000u);
}

} // namespace
} // namespace tavero
