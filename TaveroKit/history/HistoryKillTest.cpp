#include "history/HistoryStore.h"

#include "history/test/FaultyVfs.h"
#include "history/test/SmallHistory.h"
#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>

namespace tavero {
namespace {

// A number that a process and its child share.
class SharedNumber {
  public:
    SharedNumber()
        : number_(new (::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<int>()) {}
    ~SharedNumber() { ::munmap(number_, sizeof(std::atomic<int>)); }
    SharedNumber(const SharedNumber&) = delete;
    SharedNumber& operator=(const SharedNumber&) = delete;

    std::atomic<int>& operator*() { return *number_; }

  private:
    std::atomic<int>* number_;
};

struct Life {
    int finished = -1; // steps; below 0 while the store was being opened
    bool wasKilled = false;
};

// Lives in a process of its own that ends itself in the call with this number.
Life liveUntil(int call, FaultyVfs& vfs, const std::filesystem::path& file) {
    SharedNumber finished;
    *finished = -1;
    const pid_t child = ::fork();
    if (child == 0) {
        vfs.failFrom(call, FaultyVfs::Fault::killed);
        HistoryStore store(file);
        *finished = 0;
        for (int step = 0; step < SmallHistory::steps; ++step) {
            SmallHistory::live(store, step);
            *finished = step + 1;
        }
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    const bool wasKilled = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    EXPECT_TRUE(wasKilled || (WIFEXITED(status) && WEXITSTATUS(status) == 0));
    return {.finished = *finished, .wasKilled = wasKilled};
}

// Ends a life at each of its calls, one life a call, each from the same beginning, until one comes
// to this step. Returns how many lives were ended.
template <typename Begin>
int killAtEveryCall(int lastStep, Begin begin) {
    FaultyVfs vfs;
    for (int call = 1;; ++call) {
        const TemporaryTree tree;
        const std::filesystem::path file = tree.root() / "history.sqlite";
        begin(file);
        const Life life = liveUntil(call, vfs, file);
        EXPECT_EQ(SmallHistory::fault(file, life.finished, false), "") << "call " << call;
        if (!life.wasKilled || life.finished >= lastStep || testing::Test::HasFailure())
            return call - 1;

        HistoryStore next(file);
        SmallHistory::live(next, SmallHistory::steps);
        next.flush();
        EXPECT_TRUE(SmallHistory::hasMinute(file, SmallHistory::steps));
    }
}

TEST(HistoryStore, AKillAtAnyWriteLeavesWholeRowsInAFileThatOpens) {
    const int kills = killAtEveryCall(SmallHistory::steps, [](const std::filesystem::path& file) {
        const HistoryStore store(file);
        SmallHistory::addOldRows(file);
    });
    EXPECT_GE(kills, 200);
}

TEST(HistoryStore, AKillWhileTheFileIsMadeLeavesOneThatOpens) {
    const int kills = killAtEveryCall(1, [](const std::filesystem::path&) {});
    EXPECT_GE(kills, 40);
}

} // namespace
} // namespace tavero
