#include "monitor/SavingEnergy.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tavero {
namespace {

struct FakePower final : PowerSource {
    bool low = false;
    bool external = true;

    bool lowPowerMode() override { return low; }
    bool onExternalPower() override { return external; }
};

class SavingEnergy : public testing::Test {
  protected:
    QTemporaryDir directory;
    Settings settings{directory.filePath("Tavero.conf")};
    FakePower power;
};

TEST_F(SavingEnergy, OnBatteryOrInLowPowerModeItIsOn) {
    EXPECT_FALSE(savingEnergy(&power, settings));
    power.external = false;
    EXPECT_TRUE(savingEnergy(&power, settings));
    power = {};
    power.low = true;
    EXPECT_TRUE(savingEnergy(&power, settings));
}

TEST_F(SavingEnergy, TheUserCanTurnItOff) {
    power.external = false;
    power.low = true;
    settings.set(keys::slowOnBattery, false);
    EXPECT_FALSE(savingEnergy(&power, settings));
}

TEST_F(SavingEnergy, AMachineThatCannotTellNeverSaves) {
    EXPECT_FALSE(savingEnergy(nullptr, settings));
}

} // namespace
} // namespace tavero
