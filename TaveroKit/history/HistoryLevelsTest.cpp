#include "history/test/HistoryStoreTest.h"

namespace tavero {
namespace {

TEST_F(HistoryStoreTest, ALevelIsWrittenWhenItChangesAndAtLeastHourly) {
    store_.recordBluetooth(earbuds(80), at(0.9));
    store_.recordBluetooth(earbuds(80), at(60));
    store_.recordBluetooth(earbuds(79), at(120));
    store_.recordBluetooth(earbuds(80), at(180));
    store_.recordBluetooth(earbuds(80), at(180 + 3599));
    store_.recordBluetooth(earbuds(80), at(180 + 3600));
    EXPECT_EQ(levels(),
              (Rows{"0|Earbuds|80", "120|Earbuds|79", "180|Earbuds|80", "3780|Earbuds|80"}));
}

TEST_F(HistoryStoreTest, TheLevelIsThatOfTheLowestBatteryAndNotOfTheCase) {
    store_.recordBluetooth(
        {.connected = {{.name = "Earbuds", .batteries = {{"Left", 50}, {"Right", 40}, {"Case", 5}}},
                       {.name = "Keyboard"},
                       {.name = "Box", .batteries = {{"Case", 5}}}},
         .paired = {{.name = "Mouse", .batteries = {{"Battery", 10}}}}},
        at(0));
    EXPECT_EQ(levels(), (Rows{"0|Box|5", "0|Earbuds|40"}));
}

TEST_F(HistoryStoreTest, TheFirstLevelAfterALaunchIsAlwaysWritten) {
    store_.recordBluetooth(earbuds(80), at(0));
    HistoryStore(file_).recordBluetooth(earbuds(80), at(60));
    EXPECT_EQ(levels(), (Rows{"0|Earbuds|80", "60|Earbuds|80"}));
}

TEST_F(HistoryStoreTest, TheSameNameAtTheSameSecondReplacesTheRow) {
    store_.recordBluetooth(earbuds(80), at(0.2));
    store_.recordBluetooth(earbuds(79), at(0.8));
    EXPECT_EQ(levels(), Rows{"0|Earbuds|79"});
}

TEST_F(HistoryStoreTest, TwoDevicesOfOneNameShareOneSeries) {
    const BluetoothSnapshot two{.connected = {{.name = "Mouse", .batteries = {{"Battery", 80}}},
                                              {.name = "Mouse", .batteries = {{"Battery", 80}}}}};
    store_.recordBluetooth(two, at(0));
    store_.recordBluetooth(two, at(60));
    EXPECT_EQ(levels(), Rows{"0|Mouse|80"});
    BluetoothSnapshot differing = two;
    differing.connected[1].batteries[0].percent = 30;
    store_.recordBluetooth(differing, at(120));
    EXPECT_EQ(levels(), (Rows{"0|Mouse|80", "120|Mouse|30"}));
}

TEST_F(HistoryStoreTest, NamesAreKeptAsTheyAre) {
    const std::string name = "Zoë’s “pods”; DROP TABLE minute --";
    store_.recordBluetooth({.connected = {{.name = name, .batteries = {{"Battery", 1}}}}}, at(0));
    recordApp(0, app("日本\xFF"), 5);
    EXPECT_EQ(levels(), Rows{"0|" + name + "|1"});
    EXPECT_EQ(apps("name"), Rows{"0|日本\xFF|日本\xFF"});
}

} // namespace
} // namespace tavero
