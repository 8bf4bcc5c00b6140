#include "text/DeviceLines.h"

#include "text/TextDrawing.h"

#include <gtest/gtest.h>

#include <clocale>

namespace tavero {
namespace {

using Lines = std::vector<std::string>;

class DeviceLinesTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }

    BluetoothSnapshot bluetooth{
        .isOn = true,
        .connected = {{.name = "Earbuds",
                       .kind = "Headphones",
                       .batteries = {{"Left", 80}, {"Right", 75}, {"Case", 5}}},
                      {.name = "Mouse", .kind = "Mouse", .batteries = {{"Battery", 40}}},
                      {.name = "Speaker"}}};
};

TEST_F(DeviceLinesTest, DevicesStandWithTheirKindAndTheirBatteries) {
    EXPECT_EQ(deviceLines(bluetooth, {}, 80),
              (Lines{"", "Bluetooth",
                     "Earbuds                        Headphones      Left 80%  Right 75%  Case 5%",
                     "Mouse                          Mouse           40%",
                     "Speaker                                        "}));
}

TEST_F(DeviceLinesTest, WithNothingToTellThereIsNoLine) {
    EXPECT_EQ(deviceLines(std::nullopt, {}, 80), Lines{});
    bluetooth.isOn = false;
    EXPECT_EQ(deviceLines(bluetooth, {}, 80), Lines{});
    EXPECT_EQ(deviceLines(BluetoothSnapshot{.isOn = true}, {}, 80), Lines{});
}

TEST_F(DeviceLinesTest, NoLineIsWiderThanTheTerminal) {
    bluetooth.connected[0].name = std::string(200, 'n');
    for (const int columns : {1, 24, 47, 80})
        for (const std::string& line : deviceLines(bluetooth, {}, columns))
            EXPECT_LE(textWidth(line), columns) << line;
}

} // namespace
} // namespace tavero
