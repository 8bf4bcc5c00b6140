#include "history/linux/HistoryFile.h"

#include "history/HistoryStore.h"
#include "history/test/SQLiteFile.h"
#include "history/test/SmallHistory.h"
#include "platform/linux/TemporaryTree.h"
#include "platform/linux/processes/AsNobody.h"

#include <gtest/gtest.h>

#include <optional>

namespace tavero {
namespace {

using std::filesystem::perms;

TEST(HistoryFile, StandsInTheFolderForData) {
    EXPECT_EQ(historyFile("/data", "/home/ada"), "/data/Tavero/history.sqlite");
}

TEST(HistoryFile, StandsInTheHomeFolderIfNoFolderForDataIsSet) {
    EXPECT_EQ(historyFile("", "/home/ada"), "/home/ada/.local/share/Tavero/history.sqlite");
}

TEST(HistoryFile, AFolderForDataThatIsNotAbsoluteDoesNotCount) {
    EXPECT_EQ(historyFile("data", "/home/ada"), "/home/ada/.local/share/Tavero/history.sqlite");
}

TEST(HistoryFile, WithoutAnyFolderThereIsNone) {
    EXPECT_EQ(historyFile("", ""), std::nullopt);
    EXPECT_EQ(historyFile("", "ada"), std::nullopt);
}

class ReadOnlyHistory : public testing::Test {
  protected:
    ReadOnlyHistory() {
        {
            HistoryStore store(file_);
            for (int step = 0; step < 4; ++step) SmallHistory::live(store, step);
        }
        std::filesystem::permissions(file_, perms(0444));
        std::filesystem::permissions(tree_.root(), perms(0555));
    }
    ~ReadOnlyHistory() override { std::filesystem::permissions(tree_.root(), perms(0755)); }

    TemporaryTree tree_;
    std::filesystem::path file_ = tree_.root() / "history.sqlite";
};

TEST_F(ReadOnlyHistory, StillGivesItsReportAndLosesWhatComes) {
    const AsNobody nobody;
    HistoryStore store(file_);
    for (int step = 4; step < 8; ++step) SmallHistory::live(store, step);
    const Calendar utc([](std::int64_t) { return 0; });
    const Date now(std::chrono::seconds(1'749'999'999));
    EXPECT_EQ(store.report(7, now, utc).hoursAwake, 3 / 60.0);
    store.prune(now);
    store.deleteAll();
    EXPECT_EQ(SQLiteFile(file_).rows("SELECT (ts - 1749988800) / 300 FROM minute"),
              (std::vector<std::string>{"0", "1", "2"}));
    EXPECT_EQ(SmallHistory::fault(file_, 4, false), "");
}

TEST_F(ReadOnlyHistory, IsNotBegunInAFolderThatCanNotBeWritten) {
    const AsNobody nobody;
    try {
        const HistoryStore store(tree_.root() / "other.sqlite");
        FAIL();
    } catch (const HistoryError& error) {
        EXPECT_EQ(error.kind, HistoryError::Kind::cannotOpen);
    }
}

} // namespace
} // namespace tavero
