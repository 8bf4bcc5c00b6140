#include "platform/linux/hardware/LinuxController.h"

#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace tavero {
namespace {

const std::filesystem::path machines = TAVERO_HARDWARE_MACHINES;
constexpr std::chrono::minutes plenty{5};

const std::string chip = "sys/class/hwmon/hwmon0/";

SMCSnapshot read(std::initializer_list<TemporaryTree::File> files) {
    const TemporaryTree tree(files);
    return LinuxController(tree.root(), plenty).read();
}

TEST(LinuxController, ReadsTheFanOfALaptop) {
    LinuxController controller(machines / "composed-energy-laptop", plenty);
    EXPECT_EQ(controller.read(), (SMCSnapshot{.fanRPM = {2870}}));
}

TEST(LinuxController, AFanThatItsControllerDoesNotKnowIsSkipped) {
    LinuxController controller(machines / "composed-two-pack-laptop", plenty);
    EXPECT_EQ(controller.read().fanRPM, (std::vector<double>{3012}));
}

TEST(LinuxController, AFanThatStandsStillCountsAndThatOfASleepingCardDoesNot) {
    LinuxController controller(machines / "composed-k10temp-desktop", plenty);
    EXPECT_EQ(controller.read().fanRPM, (std::vector<double>{0, 1104, 822}));
}

TEST(LinuxController, WithoutAFanThereIsNone) {
    EXPECT_EQ(LinuxController(machines / "composed-charge-tablet", plenty).read(), SMCSnapshot{});
    EXPECT_EQ(read({}), SMCSnapshot{});
    EXPECT_EQ(read({{chip + "fan1_input", "fast\n"}}), SMCSnapshot{});
    EXPECT_EQ(read({{chip + "fan1_input", "9223372036854775808\n"}}), SMCSnapshot{});
}

TEST(LinuxController, OnlyAMeterOfTheWholeSystemTellsItsPower) {
    EXPECT_EQ(read({{chip + "name", "power_meter\n"}, {chip + "power1_average", "245500000\n"}})
                  .systemWatts,
              245.5);
    EXPECT_EQ(read({{chip + "name", "corsairpsu\n"},
                    {chip + "power1_label", "power total\n"},
                    {chip + "power1_input", "120000000\n"},
                    {chip + "power2_label", "power +12v\n"},
                    {chip + "power2_input", "90000000\n"}})
                  .systemWatts,
              120);
    EXPECT_EQ(read({{chip + "name", "amdgpu\n"},
                    {chip + "power1_label", "PPT\n"},
                    {chip + "power1_input", "15000000\n"}})
                  .systemWatts,
              std::nullopt);
    EXPECT_EQ(
        read({{chip + "name", "power_meter\n"}, {chip + "power1_average", "none\n"}}).systemWatts,
        std::nullopt);
}

TEST(LinuxController, AChipThatIsPluggedInLaterCounts) {
    const TemporaryTree tree;
    LinuxController controller(tree.root(), plenty);
    EXPECT_EQ(controller.read(), SMCSnapshot{});
    tree.write(chip + "fan1_input", "900\n");
    EXPECT_EQ(controller.read().fanRPM, (std::vector<double>{900}));
    tree.remove(chip);
    EXPECT_EQ(controller.read(), SMCSnapshot{});
}

TEST(LinuxController, OnThisMachine) {
    LinuxController controller("/", plenty);
    for (const double speed : controller.read().fanRPM) {
        EXPECT_GE(speed, 0);
        EXPECT_LE(speed, 40'000);
    }
}

} // namespace
} // namespace tavero
