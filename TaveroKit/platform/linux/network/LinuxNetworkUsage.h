#pragma once

#include "platform/ConnectionSource.h"
#include "platform/linux/network/SockDiagSource.h"
#include "platform/linux/network/SocketOwners.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace tavero {

// What each process moves over TCP, by the kernel's socket diagnosis, without a privilege.
//
// A connection counts from the first read on, from its start if it was opened later, and to its
// last byte, which the kernel tells as it closes. Its bytes wait until its owner is found; they are
// dropped if it closes before. One that this side aborts may lose what it moved since the last
// read: the kernel then tells a 0. What isn't told here: UDP, whose sockets have no counts;
// connections that were opened and closed between two reads; other network namespaces, so most
// containers; what the headers of packets add. All that is in the counters of the interfaces, and
// nobody's.
class LinuxNetworkUsage : public NetworkUsageSource {
  public:
    // Whether connections count whose ends are both on this machine. They load no network.
    enum class Local { isLeftOut, counts };

    LinuxNetworkUsage(std::unique_ptr<SockDiagSource> source, SocketOwners owners,
                      Local local = Local::isLeftOut);

    std::unordered_map<std::int32_t, NetworkBytes> read() override;

  private:
    struct Connection {
        std::uint64_t inode = 0; // 0 once no process has it
        std::uint64_t cgroup = 0;
        NetworkBytes bytes;
        NetworkBytes counted; // the part of it that was reported
        std::optional<HeldFile> holder;
        bool isOpen = true;
        int missed = 0; // dumps in a row that lacked it
        int searches = 0;
        std::uint64_t nextSearch = 0; // by reads_
    };
    using Connections = std::unordered_map<std::uint64_t, Connection>; // by cookie
    using Usage = std::unordered_map<std::int32_t, NetworkBytes>;

    void takeOpen();
    void takeClosed();
    void findHolders();
    bool isSearchDue(const Connection& connection) const;
    std::optional<std::int32_t> ownerOf(const Connection& connection);
    void setBaseline();
    Usage takeGrowth();

    std::unique_ptr<SockDiagSource> source_;
    SocketOwners owners_;
    Local local_;
    TcpConnections told_;
    Connections connections_;
    std::vector<std::uint64_t> wanted_;
    std::uint64_t reads_ = 0;
    bool hasBaseline_ = false;
};

} // namespace tavero
