#include "desktop/linux/ProcessHandle.h"

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <utility>

namespace tavero {

// By number, for not every C library has functions for these two calls.

std::optional<ProcessHandle> ProcessHandle::open(std::int32_t pid) {
    const long descriptor = syscall(SYS_pidfd_open, pid, 0);
    if (descriptor < 0) return std::nullopt;
    return ProcessHandle(static_cast<int>(descriptor));
}

bool ProcessHandle::terminate() const {
    return syscall(SYS_pidfd_send_signal, descriptor_, SIGTERM, nullptr, 0) == 0;
}

bool ProcessHandle::hasEnded() const {
    pollfd exit{.fd = descriptor_, .events = POLLIN, .revents = 0};
    return poll(&exit, 1, 0) > 0;
}

ProcessHandle::~ProcessHandle() {
    if (descriptor_ >= 0) close(descriptor_);
}

ProcessHandle::ProcessHandle(ProcessHandle&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

ProcessHandle& ProcessHandle::operator=(ProcessHandle&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

} // namespace tavero
