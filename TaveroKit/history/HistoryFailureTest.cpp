#include "history/HistoryStore.h"

#include "history/test/FaultyVfs.h"
#include "history/test/SQLiteFile.h"
#include "history/test/SmallHistory.h"
#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>

namespace tavero {
namespace {

using Rows = std::vector<std::string>;

class HistoryFailure : public testing::Test {
  protected:
    HistoryFailure() { std::filesystem::create_directory(file_.parent_path()); }

    void live(HistoryStore& store, int from = 0, int to = SmallHistory::steps) {
        for (int step = from; step < to; ++step) SmallHistory::live(store, step);
    }
    // All that a program asks of its history. What it answers may be wrong, but it answers.
    void use(HistoryStore& store) {
        live(store);
        const Date now(std::chrono::seconds(1'749'999'999));
        const Calendar utc([](std::int64_t) { return 0; });
        EXPECT_EQ(store.report(30, now, utc).dailyCPU.size(), 30u);
        store.prune(now);
        store.deleteAll();
        store.flush();
    }
    // Opens whatever lies there; a file that can't be one is refused.
    bool openAndUse() {
        std::unique_ptr<HistoryStore> store;
        try {
            store = std::make_unique<HistoryStore>(file_);
        } catch (const HistoryError&) {
            return false;
        }
        use(*store);
        return true;
    }
    std::string content() const {
        std::ifstream stream(file_, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    void setContent(const std::string& content) {
        std::ofstream(file_, std::ios::binary | std::ios::trunc) << content;
    }
    Rows rows(std::string_view statement) { return SQLiteFile(file_).rows(statement); }

    FaultyVfs vfs_;
    TemporaryTree tree_;
    std::filesystem::path file_ = tree_.root() / "Tavero" / "history.sqlite";
    std::mt19937 random_{2025}; // NOLINT(cert-msc32-c,cert-msc51-cpp): the same every time
};

// Fails every call from one on, for each of them; the disk recovers before the last step.
void failAtEveryCall(FaultyVfs& vfs, const std::filesystem::path& folder, FaultyVfs::Fault fault) {
    for (int call = 1;; ++call) {
        const std::filesystem::path file = folder / std::to_string(call);
        {
            const HistoryStore store(file);
            SmallHistory::addOldRows(file);
        }
        HistoryStore store(file);
        const int before = vfs.calls();
        vfs.failFrom(call, fault);
        constexpr int last = SmallHistory::steps - 1;
        for (int step = 0; step < last; ++step) SmallHistory::live(store, step);
        const bool hasFailed = vfs.calls() - before >= call;
        vfs.heal();
        SmallHistory::live(store, last);
        store.flush();
        ASSERT_EQ(SmallHistory::fault(file, SmallHistory::steps, true), "") << "call " << call;
        ASSERT_TRUE(SmallHistory::hasMinute(file, last));
        std::filesystem::remove(file);
        if (hasFailed) continue;
        EXPECT_GE(call, 200);
        return;
    }
}

TEST_F(HistoryFailure, AFullDiskLosesWholeRowsAndTheHistoryGoesOnWhenThereIsSpaceAgain) {
    failAtEveryCall(vfs_, tree_.root(), FaultyVfs::Fault::full);
}

TEST_F(HistoryFailure, ABrokenDiskLosesWholeRowsAndTheHistoryGoesOnWhenItIsBack) {
    failAtEveryCall(vfs_, tree_.root(), FaultyVfs::Fault::broken);
}

TEST_F(HistoryFailure, ADiskThatIsFullFromTheBeginningIsAnErrorOfTheOpening) {
    vfs_.failFrom(1, FaultyVfs::Fault::full);
    try {
        const HistoryStore store(file_);
        FAIL();
    } catch (const HistoryError& error) {
        EXPECT_EQ(error.kind, HistoryError::Kind::query);
        EXPECT_STREQ(error.what(), "database or disk is full");
    }
}

// Runs `during` while another process holds the file by the lock that this statement takes.
template <typename During>
void whileLocked(const std::filesystem::path& file, const std::string& lock, During during) {
    int locked[2], done[2];
    ASSERT_EQ(::pipe(locked) + ::pipe(done), 0);
    const pid_t other = ::fork();
    if (other == 0) {
        ::close(locked[0]);
        ::close(done[1]);
        SQLiteFile connection(file);
        connection.run(lock);
        char byte = 0;
        const bool isTold = ::write(locked[1], &byte, 1) == 1;
        ::_exit(isTold && ::read(done[0], &byte, 1) == 0 ? 0 : 1);
    }
    ::close(locked[1]);
    ::close(done[0]);
    char byte = 0;
    ASSERT_EQ(::read(locked[0], &byte, 1), 1);
    during(); // would never end if it waited for the lock
    ::close(done[1]);
    ::close(locked[0]);
    int status = 0;
    ::waitpid(other, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(HistoryFailure, WhatAnotherProcessLocksIsNotWaitedFor) {
    HistoryStore store(file_);
    live(store, 0, 2);
    whileLocked(file_, "BEGIN EXCLUSIVE", [&] { live(store, 2, 4); });
    live(store, 4, 6);
    EXPECT_EQ(rows("SELECT (ts - 1749988800) / 300 FROM minute"), (Rows{"0", "3", "4"}));
    EXPECT_EQ(rows("SELECT name, samples FROM app_hour"), (Rows{"Mail|4", "Maps|4", "Notes|4"}));
    EXPECT_EQ(SmallHistory::fault(file_, SmallHistory::steps, true), "");
}

TEST_F(HistoryFailure, AReaderThatStaysCostsTheRowsOfItsTimeAndNoMore) {
    HistoryStore store(file_);
    live(store, 0, 2);
    whileLocked(file_, "BEGIN; SELECT COUNT(*) FROM minute", [&] { live(store, 2, 4); });
    live(store, 4, 6);
    EXPECT_EQ(rows("SELECT name, samples FROM app_hour"), (Rows{"Mail|4", "Maps|4", "Notes|4"}));
    EXPECT_EQ(SmallHistory::fault(file_, SmallHistory::steps, true), "");
}

TEST_F(HistoryFailure, ALockedFileIsNotOpened) {
    { const HistoryStore store(file_); }
    whileLocked(file_, "BEGIN EXCLUSIVE", [&] {
        try {
            const HistoryStore store(file_);
            FAIL();
        } catch (const HistoryError& error) {
            EXPECT_EQ(error.kind, HistoryError::Kind::query);
            EXPECT_STREQ(error.what(), "database is locked");
        }
    });
}

TEST_F(HistoryFailure, AFolderInPlaceOfTheFileCanNotBeOpened) {
    std::filesystem::create_directory(file_);
    try {
        const HistoryStore store(file_);
        FAIL();
    } catch (const HistoryError& error) {
        EXPECT_EQ(error.kind, HistoryError::Kind::cannotOpen);
    }
}

TEST_F(HistoryFailure, AFileInPlaceOfTheFolderIsTheFileSystemsError) {
    std::ofstream(tree_.root() / "file") << "text";
    EXPECT_THROW(HistoryStore(tree_.root() / "file" / "history.sqlite"),
                 std::filesystem::filesystem_error);
}

TEST_F(HistoryFailure, AFileThatWasCutAnywhereIsUsedOrRefused) {
    {
        HistoryStore store(file_);
        live(store);
    }
    const std::string whole = content();
    int used = 0;
    for (int i = 0; i < 200; ++i) {
        setContent(whole.substr(0, random_() % whole.size()));
        used += openAndUse() ? 1 : 0;
    }
    setContent("");
    EXPECT_TRUE(openAndUse());
    setContent(whole);
    EXPECT_TRUE(openAndUse());
    EXPECT_GT(used, 0);
}

TEST_F(HistoryFailure, AFileWithGarbageInItIsUsedOrRefused) {
    {
        HistoryStore store(file_);
        live(store);
    }
    const std::string whole = content();
    int used = 0;
    for (int i = 0; i < 300; ++i) {
        std::string damaged = whole;
        const std::size_t at = random_() % whole.size();
        const std::size_t length = std::min<std::size_t>(1 + random_() % 64, whole.size() - at);
        for (std::size_t j = 0; j < length; ++j) damaged[at + j] = static_cast<char>(random_());
        setContent(damaged);
        used += openAndUse() ? 1 : 0;
    }
    EXPECT_GT(used, 0);
}

TEST_F(HistoryFailure, NothingButGarbageIsRefused) {
    std::string garbage(8192, '\0');
    for (char& byte : garbage) byte = static_cast<char>(random_());
    setContent(garbage);
    try {
        const HistoryStore store(file_);
        FAIL();
    } catch (const HistoryError& error) {
        EXPECT_EQ(error.kind, HistoryError::Kind::query);
        EXPECT_STREQ(error.what(), "file is not a database");
    }
    EXPECT_EQ(content(), garbage);
}

TEST_F(HistoryFailure, GarbageWrittenIntoAnOpenFileStopsNothing) {
    HistoryStore store(file_);
    live(store);
    for (int i = 0; i < 50; ++i) {
        std::fstream stream(file_, std::ios::binary | std::ios::in | std::ios::out);
        stream.seekp(static_cast<std::streamoff>(random_() % 20000));
        for (int j = 0; j < 500; ++j) stream.put(static_cast<char>(random_()));
        stream.close();
        use(store);
    }
}

TEST_F(HistoryFailure, AnOpenFileThatIsCutToNothingStopsNothing) {
    HistoryStore store(file_);
    live(store);
    setContent("");
    use(store);
}

TEST_F(HistoryFailure, AnOpenFileThatIsDeletedStopsNothingAndTheNextOpeningMakesAnother) {
    HistoryStore store(file_);
    live(store, 0, 4);
    std::filesystem::remove(file_);
    live(store, 4);
    EXPECT_FALSE(exists(file_));
    use(store);
    const HistoryStore next(file_);
    EXPECT_EQ(rows("SELECT COUNT(*) FROM minute"), Rows{"0"});
}

TEST_F(HistoryFailure, AnOpenFileThatIsReplacedStopsNothingAndLeavesTheOtherAlone) {
    const std::filesystem::path other = tree_.root() / "other.sqlite";
    { const HistoryStore store(other); }
    SmallHistory::addOldRows(other);
    HistoryStore store(file_);
    live(store, 0, 4);
    std::filesystem::rename(other, file_);
    use(store);
    EXPECT_EQ(rows("SELECT ts FROM minute"), (Rows{"60", "120"}));
}

TEST_F(HistoryFailure, AFolderThatIsDeletedStopsNothing) {
    HistoryStore store(file_);
    live(store, 0, 4);
    std::filesystem::remove_all(file_.parent_path());
    use(store);
}

TEST_F(HistoryFailure, TablesOfAnotherShapeStopNothing) {
    SQLiteFile(file_).run("CREATE TABLE minute (ts TEXT, cpu TEXT); CREATE TABLE app_hour (x);"
                          "CREATE TABLE bluetooth_battery (ts, device, percent);"
                          "INSERT INTO minute VALUES ('soon', 'much'), (1e300, 'x');"
                          "INSERT INTO bluetooth_battery VALUES (1749988800, NULL, 9e999),"
                          " (1749988801, NULL, -9223372036854775807), (1749988802, x'00', 'x')");
    EXPECT_TRUE(openAndUse());
}

} // namespace
} // namespace tavero
