#pragma once

#include <cstdint>
#include <optional>

namespace tavero {

// Holds on to one process (a pidfd). Whatever becomes of the process and of its number, this never
// means another one.
class ProcessHandle {
  public:
    // Absent if there is no such process, if no descriptor is left, or on a kernel that can't do it
    // (before Linux 5.3).
    static std::optional<ProcessHandle> open(std::int32_t pid);

    ~ProcessHandle();
    ProcessHandle(ProcessHandle&& other) noexcept;
    ProcessHandle& operator=(ProcessHandle&& other) noexcept;

    // True from its exit on, whether or not its parent has noticed.
    bool hasEnded() const;
    // Sends SIGTERM. False if it couldn't be: the process is gone or must not be signalled.
    bool terminate() const;

  private:
    explicit ProcessHandle(int descriptor) : descriptor_(descriptor) {}

    int descriptor_;
};

} // namespace tavero
