#include "desktop/linux/test/ChildProcess.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <stdexcept>
#include <string>

namespace tavero {

ChildProcess::ChildProcess(OnTerm onTerm, const std::function<void()>& first) {
    // Set here and inherited, so that there is no moment before.
    sigset_t term, before;
    sigemptyset(&term);
    sigaddset(&term, SIGTERM);
    const auto handlerBefore = std::signal(SIGTERM, onTerm == OnTerm::ignores ? SIG_IGN : SIG_DFL);
    pthread_sigmask(onTerm == OnTerm::keeps ? SIG_BLOCK : SIG_UNBLOCK, &term, &before);
    pid_ = fork();
    if (pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL); // should the test crash
        if (first) first();
        for (;;) pause();
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    std::signal(SIGTERM, handlerBefore);
    if (pid_ < 0) throw std::runtime_error("no process");
}

ChildProcess::~ChildProcess() {
    if (isReaped_) return;
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
}

int ChildProcess::signalThatEndedIt() {
    const int handle = static_cast<int>(syscall(SYS_pidfd_open, pid_, 0));
    pollfd exit{.fd = handle, .events = POLLIN, .revents = 0};
    if (poll(&exit, 1, 10'000) <= 0) kill(pid_, SIGKILL);
    close(handle);
    int status = 0;
    waitpid(pid_, &status, 0);
    isReaped_ = true;
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

bool hasPendingTerm(std::int32_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string name; status >> name; status.ignore(4096, '\n'))
        if (name == "ShdPnd:") {
            unsigned long long pending = 0;
            status >> std::hex >> pending;
            return (pending >> (SIGTERM - 1) & 1) != 0;
        }
    throw std::runtime_error("no such process");
}

} // namespace tavero
