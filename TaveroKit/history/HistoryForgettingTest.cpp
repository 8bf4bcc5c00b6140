#include "history/test/HistoryStoreTest.h"

namespace tavero {
namespace {

class OldHistory : public HistoryStoreTest {
  protected:
    // A second too old, and just young enough, for a sample at the hour.
    OldHistory() {
        const std::string cutoff = std::to_string(hour - HistoryStore::keepDays * 86400);
        SQLiteFile(file_).run("INSERT INTO minute (ts) VALUES (" + cutoff + " - 1), (" + cutoff +
                              ");" + "INSERT INTO app_hour (hour) VALUES (" + cutoff + " - 1), (" +
                              cutoff + ");" + "INSERT INTO bluetooth_battery (ts) VALUES (" +
                              cutoff + " - 1), (" + cutoff + ")");
    }
    Rows counts() {
        return rows("SELECT (SELECT COUNT(*) FROM minute), (SELECT COUNT(*) FROM app_hour),"
                    " (SELECT COUNT(*) FROM bluetooth_battery)");
    }
    void ageAll() {
        SQLiteFile(file_).run("UPDATE minute SET ts = ts - 86400;"
                              "UPDATE app_hour SET hour = hour - 86400;"
                              "UPDATE bluetooth_battery SET ts = ts - 86400");
    }
};

TEST_F(OldHistory, TheFirstSampleOfALaunchForgetsWhatIsOlderThan30Days) {
    EXPECT_EQ(counts(), Rows{"2|2|2"});
    record(0, 0.5);
    EXPECT_EQ(counts(), Rows{"1|1|1"});
}

TEST_F(OldHistory, LaterItForgetsWhenMoreThanAnHourHasPassed) {
    record(0, 0.5);
    ageAll();
    record(3600, 0.5);
    EXPECT_EQ(counts(), Rows{"2|1|1"}); // the minute at the hour was written
    record(3600.5, 0.5);
    EXPECT_EQ(counts(), Rows{"1|0|0"});
}

TEST_F(OldHistory, StaysWhileNothingIsRecorded) {
    store_.recordBluetooth(earbuds(80), at(0));
    store_.flush();
    const Calendar utc([](std::int64_t) { return 0; });
    store_.report(30, at(86400), utc);
    EXPECT_EQ(counts(), Rows{"2|2|3"});
}

TEST_F(OldHistory, CanBeDeletedWithAllThatIsInMemory) {
    record(0, 0.5);
    recordApp(1, app("a"), 5);
    recordApp(2, app("a"), 5);
    store_.recordBluetooth(earbuds(80), at(2));
    store_.deleteAll();
    EXPECT_EQ(counts(), Rows{"0|0|0"});
    store_.flush();
    EXPECT_EQ(counts(), Rows{"0|0|0"});

    record(4, 0.25);
    recordApp(5, app("a"), 5);
    store_.recordBluetooth(earbuds(80), at(6)); // the first reading again
    store_.flush();
    EXPECT_EQ(minutes("cpu"), Rows{"0|0.25"});
    EXPECT_EQ(apps("samples"), Rows{"0|a|1"});
    EXPECT_EQ(levels(), Rows{"6|Earbuds|80"});
}

TEST_F(OldHistory, ADeletionMovesNeitherTheNextWriteOfAppsNorTheNextForgetting) {
    recordApp(0, app("a"), 5);
    store_.deleteAll();
    recordApp(299, app("a"), 5);
    EXPECT_EQ(apps("samples"), Rows{});
    recordApp(300, app("a"), 5);
    EXPECT_EQ(apps("samples"), Rows{"0|a|2"});
    SQLiteFile(file_).run("INSERT INTO minute (ts) VALUES (60)");
    record(3600, 0.5);
    EXPECT_EQ(rows("SELECT ts FROM minute WHERE ts = 60"), Rows{"60"});
}

} // namespace
} // namespace tavero
