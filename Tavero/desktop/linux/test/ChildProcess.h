#pragma once

#include <cstdint>
#include <functional>

namespace tavero {

// A process of the test's own, which is killed and reaped with this object.
class ChildProcess {
  public:
    // How it takes SIGTERM from its first moment on: ends, ignores it, or keeps it waiting, so that
    // one can ask whether it came.
    enum class OnTerm { ends, ignores, keeps };

    // Waits until it is killed, after having run `first`, which must not allocate.
    explicit ChildProcess(OnTerm onTerm, const std::function<void()>& first = {});
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    std::int32_t pid() const { return pid_; }
    // Returns when it has ended by itself, with the signal that ended it, 0 for none. Kills it
    // after so long a time that the test may say it never happens.
    int signalThatEndedIt();

  private:
    std::int32_t pid_;
    bool isReaped_ = false;
};

// Whether a process that keeps SIGTERM waiting was sent one.
bool hasPendingTerm(std::int32_t pid);

} // namespace tavero
