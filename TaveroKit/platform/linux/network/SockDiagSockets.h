#pragma once

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/network/SockDiagSource.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tavero {

// The kernel's socket diagnosis (NETLINK_SOCK_DIAG): a dump of the connections that carry data, and
// the final counts of those that closed, which the kernel sends by itself. Neither needs a
// privilege. Only this program's own network namespace is told of: what a container with a network
// of its own moves isn't.
class SockDiagSockets : public SockDiagSource {
  public:
    SockDiagSockets();

    // False if the kernel refuses.
    bool isAvailable();

    void read(TcpConnections& connections) override;

  private:
    enum class Answer { all, incomplete, refused };
    Answer dump(std::uint8_t family, std::uint64_t deadline, std::vector<TcpConnection>& found);
    void takeClosed(std::vector<TcpConnection>& closed);
    bool open();

    FileDescriptor questions_;
    FileDescriptor news_; // of connections that closed
    std::vector<std::byte> buffer_;
};

} // namespace tavero
