#include "platform/linux/network/SockDiagMessages.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// Datagrams of the kernel's socket diagnosis.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<tavero::TcpConnection> found;
    const auto part = tavero::parseSockDiag(std::as_bytes(std::span(data, size)), found);
    // Each takes a header at least.
    if (found.size() > size / 16 || part.error < 0) std::abort();
    return 0;
}
