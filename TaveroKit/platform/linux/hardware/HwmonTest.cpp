#include "platform/linux/hardware/Hwmon.h"

#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavero {
namespace {

const std::string hwmon = "sys/class/hwmon/";

// A chip as the kernel lays it out: the folder below its device, and a link in the class.
void addChip(const TemporaryTree& tree, const std::string& device, const std::string& number,
             const std::string& name, const std::string& temperature) {
    const std::string folder = "sys/devices/" + device + "/hwmon/" + number;
    tree.write(folder + "/name", name + "\n");
    tree.write(folder + "/temp1_input", temperature + "\n");
    tree.link(hwmon + number, "../../devices/" + device + "/hwmon/" + number);
}

void removeChip(const TemporaryTree& tree, const std::string& device, const std::string& number) {
    tree.remove("sys/devices/" + device + "/hwmon/" + number);
    tree.remove(hwmon + number);
}

TEST(HwmonChips, AreToldByDeviceAndNameWhateverTheirNumber) {
    const TemporaryTree tree;
    addChip(tree, "pci/nvme0", "hwmon2", "nvme", "40000");
    addChip(tree, "pci/nvme1", "hwmon0", "nvme", "41000");
    addChip(tree, "core", "hwmon10", "coretemp", "50000");
    const std::vector<HwmonChip> chips = hwmonChips(tree.root() / hwmon);
    ASSERT_EQ(chips.size(), 3u);
    EXPECT_EQ(chips[0].name, "coretemp");
    EXPECT_EQ(chips[1].device.filename(), "nvme0");
    EXPECT_EQ(chips[2].device.filename(), "nvme1");
    EXPECT_FALSE(chips[1].isSameAs(chips[2]));
}

TEST(HwmonChips, AFolderThatIsMissingOrALinkToNowhereGivesNone) {
    const TemporaryTree tree;
    EXPECT_TRUE(hwmonChips(tree.root() / hwmon).empty());
    tree.link(hwmon + "hwmon0", "../../devices/nowhere");
    EXPECT_TRUE(hwmonChips(tree.root() / hwmon).empty());
}

TEST(HwmonInputs, AreInTheOrderOfTheirNumbers) {
    const TemporaryTree tree{{"temp10_input", "1"}, {"temp2_input", "1"}, {"temp2_label", "A\n"},
                             {"temp1_max", "1"},    {"tempx_input", "1"}, {"fan1_input", "1"},
                             {"temp_input", "1"},   {"temp3_input2", "1"}};
    const HwmonChip chip{.folder = tree.root()};
    EXPECT_EQ(hwmonInputs(chip, "temp"), (std::vector<std::string>{"temp2", "temp10"}));
    EXPECT_EQ(hwmonLabel(chip, "temp2"), "A");
    EXPECT_EQ(hwmonLabel(chip, "temp10"), "");
}

class Figure : public testing::Test {
  protected:
    HwmonFigure figure(std::size_t chip = 0) {
        return {tree_.root() / hwmon, hwmonChips(tree_.root() / hwmon).at(chip), "temp1_input"};
    }

    TemporaryTree tree_;
};

TEST_F(Figure, IsReadAnewEachTime) {
    addChip(tree_, "a", "hwmon0", "chip", "40000");
    HwmonFigure temperature = figure();
    EXPECT_EQ(temperature.read(), 40000);
    tree_.write("sys/devices/a/hwmon/hwmon0/temp1_input", "41000\n");
    EXPECT_EQ(temperature.read(), 41000);
    tree_.write("sys/devices/a/hwmon/hwmon0/temp1_input", "hot\n");
    EXPECT_EQ(temperature.read(), std::nullopt);
}

TEST_F(Figure, OfAChipThatReturnsUnderAnotherNumberGoesOn) {
    addChip(tree_, "a", "hwmon0", "chip", "40000");
    HwmonFigure temperature = figure();
    removeChip(tree_, "a", "hwmon0");
    EXPECT_EQ(temperature.read(), std::nullopt);
    EXPECT_EQ(temperature.read(), std::nullopt);
    addChip(tree_, "a", "hwmon7", "chip", "42000");
    EXPECT_EQ(temperature.read(), 42000);
}

TEST_F(Figure, OfAChipThatWentAwayIsNeverAnothersUnderItsNumber) {
    addChip(tree_, "a", "hwmon0", "chip", "40000");
    HwmonFigure temperature = figure();
    removeChip(tree_, "a", "hwmon0");
    EXPECT_EQ(temperature.read(), std::nullopt);
    addChip(tree_, "b", "hwmon0", "chip", "99000");
    EXPECT_EQ(temperature.read(), std::nullopt);
}

TEST_F(Figure, OfAnInputThatIsFaultyIsAbsent) {
    addChip(tree_, "a", "hwmon0", "chip", "127000");
    tree_.write("sys/devices/a/hwmon/hwmon0/temp1_fault", "1\n");
    HwmonFigure temperature = figure();
    EXPECT_EQ(temperature.read(), std::nullopt);
    tree_.write("sys/devices/a/hwmon/hwmon0/temp1_fault", "0\n");
    EXPECT_EQ(temperature.read(), 127000);
}

TEST_F(Figure, OfADeviceThatSleepsIsAbsentUntilItWakes) {
    addChip(tree_, "a", "hwmon0", "chip", "40000");
    tree_.write("sys/devices/a/power/runtime_status", "suspended\n");
    HwmonFigure temperature = figure();
    EXPECT_EQ(temperature.read(), std::nullopt);
    tree_.write("sys/devices/a/power/runtime_status", "active\n");
    EXPECT_EQ(temperature.read(), 40000);
}

TEST(HwmonFigures, AreAbsentBeyondWhatAThingCanShow) {
    EXPECT_EQ(hwmonCelsius(61250), 61.25);
    EXPECT_EQ(hwmonCelsius(-5000), -5.0);
    EXPECT_EQ(hwmonCelsius(200'001), std::nullopt);
    EXPECT_EQ(hwmonCelsius(-128'000), std::nullopt);
    EXPECT_EQ(hwmonCelsius(std::nullopt), std::nullopt);
    EXPECT_EQ(hwmonRPM(2950), 2950.0);
    EXPECT_EQ(hwmonRPM(0), 0.0);
    EXPECT_EQ(hwmonRPM(65535), std::nullopt);
    EXPECT_EQ(hwmonRPM(-1), std::nullopt);
    EXPECT_EQ(hwmonWatts(245'500'000), 245.5);
    EXPECT_EQ(hwmonWatts(-1), std::nullopt);
    EXPECT_EQ(hwmonWatts(1'000'000'000'000), std::nullopt);
}

} // namespace
} // namespace tavero
