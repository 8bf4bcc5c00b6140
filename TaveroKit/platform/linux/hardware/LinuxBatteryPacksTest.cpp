#include "platform/linux/hardware/LinuxBatteryPacks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <vector>

namespace tavero {
namespace {

const PowerSupply unplugged{.kind = SupplyKind::charger, .online = 0};
const PowerSupply pluggedIn{.kind = SupplyKind::charger, .online = 1};

// 30 of 50 Wh, 57 when new, giving 10 W.
PowerSupply discharging() {
    return {.status = ChargeStatus::discharging,
            .present = 1,
            .capacity = 60,
            .power = 10'000'000,
            .energyNow = 30'000'000,
            .energyFull = 50'000'000,
            .energyDesign = 57'000'000};
}

PowerSupply charging() {
    PowerSupply pack = discharging();
    pack.status = ChargeStatus::charging;
    return pack;
}

std::optional<BatterySnapshot> combine(std::initializer_list<PowerSupply> supplies) {
    return combinePacks(std::vector<PowerSupply>(supplies));
}

TEST(CombinePacks, OnePackOnBattery) {
    const auto battery = combine({unplugged, discharging()});
    ASSERT_TRUE(battery);
    EXPECT_EQ(battery->percent, 60);
    EXPECT_FALSE(battery->isCharging);
    EXPECT_FALSE(battery->onExternalPower);
    EXPECT_DOUBLE_EQ(*battery->watts, 10);
    EXPECT_DOUBLE_EQ(*battery->remainingWattHours, 30);
    EXPECT_EQ(battery->minutesToEmpty, 180);
    EXPECT_EQ(battery->minutesToFull, std::nullopt);
    EXPECT_NEAR(*battery->health, 50.0 / 57, 1e-12);
    EXPECT_EQ(battery->cycleCount, std::nullopt);
    EXPECT_EQ(battery->temperatureCelsius, std::nullopt);
    EXPECT_FALSE(battery->currentIsStale);
}

TEST(CombinePacks, PowerThatGoesInIsNegative) {
    const auto battery = combine({pluggedIn, charging()});
    EXPECT_TRUE(battery->isCharging);
    EXPECT_DOUBLE_EQ(*battery->watts, -10);
    EXPECT_EQ(battery->minutesToFull, 120);
    EXPECT_EQ(battery->minutesToEmpty, std::nullopt);
}

TEST(CombinePacks, TheStatusTellsTheDirectionWhateverTheSign) {
    PowerSupply pack = discharging();
    pack.power = -10'000'000;
    EXPECT_DOUBLE_EQ(*combine({unplugged, pack})->watts, 10);
    pack.status = ChargeStatus::charging;
    EXPECT_DOUBLE_EQ(*combine({pluggedIn, pack})->watts, -10);
}

TEST(CombinePacks, WithoutAStatusTheSignOrTheChargerTells) {
    PowerSupply pack = discharging();
    pack.status = ChargeStatus::unknown;
    EXPECT_DOUBLE_EQ(*combine({unplugged, pack})->watts, 10);
    EXPECT_DOUBLE_EQ(*combine({pluggedIn, pack})->watts, -10);
    pack.power = -10'000'000;
    EXPECT_DOUBLE_EQ(*combine({pluggedIn, pack})->watts, 10);
}

TEST(CombinePacks, AWeakChargerLeavesTheBatteryGivingPower) {
    const auto battery = combine({pluggedIn, discharging()});
    EXPECT_TRUE(battery->onExternalPower);
    EXPECT_DOUBLE_EQ(*battery->watts, 10);
    EXPECT_EQ(battery->minutesToEmpty, std::nullopt);
}

TEST(CombinePacks, ChargeAndCurrentBecomeEnergyAndPowerByTheVoltage) {
    const PowerSupply pack{.status = ChargeStatus::discharging,
                           .voltage = 12'000'000,
                           .designVoltage = 11'100'000,
                           .current = 1'500'000,
                           .chargeNow = 3'000'000,
                           .chargeFull = 4'000'000,
                           .chargeDesign = 5'000'000};
    const auto battery = combine({unplugged, pack});
    EXPECT_EQ(battery->percent, 75);
    EXPECT_DOUBLE_EQ(*battery->watts, 18);
    EXPECT_DOUBLE_EQ(*battery->remainingWattHours, 36);
    EXPECT_EQ(battery->minutesToEmpty, 120);
    EXPECT_DOUBLE_EQ(*battery->health, 0.8);
}

TEST(CombinePacks, ChargeWithoutAVoltageStillTellsPercentAndHealth) {
    const PowerSupply pack{.status = ChargeStatus::discharging,
                           .current = 1'500'000,
                           .chargeNow = 3'000'000,
                           .chargeFull = 4'000'000,
                           .chargeDesign = 5'000'000};
    const auto battery = combine({unplugged, pack});
    EXPECT_EQ(battery->percent, 75);
    EXPECT_DOUBLE_EQ(*battery->health, 0.8);
    EXPECT_EQ(battery->watts, std::nullopt);
    EXPECT_EQ(battery->remainingWattHours, std::nullopt);
    EXPECT_EQ(battery->minutesToEmpty, std::nullopt);
}

TEST(CombinePacks, ASmallDrawGivesNoEstimateUntilTheSystemsPowerIsKnown) {
    PowerSupply pack = discharging();
    pack.power = 342'000; // 30 mA at 11.4 V
    auto battery = combine({unplugged, pack});
    EXPECT_EQ(battery->minutesToEmpty, std::nullopt);
    EXPECT_FALSE(battery->currentIsStale);
    battery->estimateTimeLeft(12.0);
    EXPECT_EQ(battery->minutesToEmpty, 150);
    EXPECT_DOUBLE_EQ(*battery->watts, 0.342);
}

TEST(CombinePacks, OnBatteryAPowerOfZeroIsAnOldReading) {
    PowerSupply pack = discharging();
    pack.power = 0;
    auto battery = combine({unplugged, pack});
    EXPECT_TRUE(battery->currentIsStale);
    EXPECT_EQ(battery->watts, 0);
    EXPECT_FALSE(std::signbit(*battery->watts));
    battery->estimateTimeLeft(12.0);
    EXPECT_EQ(battery->minutesToEmpty, 150);
    EXPECT_EQ(battery->watts, 12.0);

    auto known = combine({unplugged, pack});
    known->minutesToEmpty = 99;
    known->estimateTimeLeft(12.0);
    EXPECT_EQ(known->watts, 0);
}

TEST(CombinePacks, OnBatteryAPowerThatIsMissingOrGoesInIsAnOldReading) {
    PowerSupply pack = discharging();
    pack.power.reset();
    EXPECT_TRUE(combine({unplugged, pack})->currentIsStale);
    EXPECT_EQ(combine({unplugged, pack})->watts, std::nullopt);
    EXPECT_TRUE(combine({unplugged, charging()})->currentIsStale);
    EXPECT_FALSE(combine({pluggedIn, charging()})->currentIsStale);
}

TEST(CombinePacks, HealthIsOneAtMostAndNeedsADesign) {
    PowerSupply pack = discharging();
    pack.energyDesign = 40'000'000;
    EXPECT_EQ(combine({pack})->health, 1.0);
    pack.energyDesign = 0;
    EXPECT_EQ(combine({pack})->health, std::nullopt);
    pack = discharging();
    pack.energyFull = 0;
    EXPECT_EQ(combine({pack})->health, std::nullopt);
}

TEST(CombinePacks, APackThatWaitsAtItsLimitIsPluggedInAndDoesNotCharge) {
    PowerSupply pack = discharging();
    pack.status = ChargeStatus::notCharging;
    pack.power.reset(); // many drivers refuse while idle
    pack.chargeLimit = 60;
    const auto battery = combine({pluggedIn, pack});
    EXPECT_TRUE(battery->onExternalPower);
    EXPECT_FALSE(battery->isCharging);
    EXPECT_EQ(battery->percent, 60);
    EXPECT_EQ(battery->minutesToFull, std::nullopt);
    EXPECT_EQ(battery->watts, 0);
}

TEST(CombinePacks, FullMeansTheChargeLimit) {
    PowerSupply pack = charging();
    pack.chargeLimit = 80; // 40 of 50 Wh
    EXPECT_EQ(combine({pluggedIn, pack})->minutesToFull, 60);
    pack.chargeLimit = 60; // it is there
    EXPECT_EQ(combine({pluggedIn, pack})->minutesToFull, std::nullopt);
    for (const std::int64_t broken : {0, 100, 250, -3}) {
        pack.chargeLimit = broken;
        EXPECT_EQ(combine({pluggedIn, pack})->minutesToFull, 120) << broken;
    }
}

TEST(CombinePacks, SeveralPacksAreOneBattery) {
    PowerSupply second = discharging();
    second.capacity = 100;
    second.energyNow = second.energyFull = 20'000'000;
    second.energyDesign = 24'000'000;
    second.power = 5'000'000;
    second.cycleCount = 300;
    second.temperature = 301;
    PowerSupply first = discharging();
    first.cycleCount = 120;
    first.temperature = 355;
    const auto battery = combine({first, unplugged, second});
    EXPECT_EQ(battery->percent, 71); // 50 of 70 Wh
    EXPECT_DOUBLE_EQ(*battery->remainingWattHours, 50);
    EXPECT_DOUBLE_EQ(*battery->watts, 15);
    EXPECT_EQ(battery->minutesToEmpty, 200);
    EXPECT_NEAR(*battery->health, 70.0 / 81, 1e-12);
    EXPECT_EQ(battery->cycleCount, 300);
    EXPECT_EQ(battery->temperatureCelsius, 35.5);
}

TEST(CombinePacks, ASumThatLacksAPackIsAbsent) {
    PowerSupply silent{.status = ChargeStatus::discharging, .capacity = 80};
    const auto battery = combine({unplugged, discharging(), silent});
    EXPECT_EQ(battery->percent, 70);
    EXPECT_EQ(battery->watts, std::nullopt);
    EXPECT_EQ(battery->remainingWattHours, std::nullopt);
    EXPECT_EQ(battery->minutesToEmpty, std::nullopt);
}

TEST(CombinePacks, AnEmptyBayIsNoPack) {
    const PowerSupply bay{.present = 0, .capacity = 0};
    EXPECT_EQ(combine({unplugged, discharging(), bay}), combine({unplugged, discharging()}));
    EXPECT_EQ(combine({unplugged, bay}), std::nullopt);
}

TEST(CombinePacks, WithoutAChargeThereIsNoBattery) {
    EXPECT_EQ(combine({}), std::nullopt);
    EXPECT_EQ(combine({pluggedIn}), std::nullopt);
    EXPECT_EQ(combine({PowerSupply{.status = ChargeStatus::full}}), std::nullopt); // gone mid-read
}

TEST(CombinePacks, ABrokenPercentageIsWorkedOutInstead) {
    PowerSupply pack = discharging();
    for (const std::int64_t broken : {-1, 101, 255}) {
        pack.capacity = broken;
        EXPECT_EQ(combine({pack})->percent, 60) << broken;
    }
    pack.energyNow = 60'000'000;
    EXPECT_EQ(combine({pack})->percent, 100);
    pack.energyNow.reset();
    EXPECT_EQ(combine({pack}), std::nullopt);
}

TEST(CombinePacks, FiguresOfABrokenControllerAreAbsent) {
    PowerSupply pack = discharging();
    pack.power = 4'294'967'295'000;
    pack.energyNow = 1'000'000'000'000;
    pack.cycleCount = 4'294'967'295;
    pack.temperature = -2732;
    const auto battery = combine({unplugged, pack});
    EXPECT_EQ(battery->percent, 60);
    EXPECT_EQ(battery->watts, std::nullopt);
    EXPECT_EQ(battery->remainingWattHours, std::nullopt);
    EXPECT_EQ(battery->minutesToEmpty, std::nullopt);
    EXPECT_EQ(battery->cycleCount, std::nullopt);
    EXPECT_EQ(battery->temperatureCelsius, std::nullopt);
}

TEST(CombinePacks, ACountOfZeroCyclesIsUnknown) {
    PowerSupply pack = discharging();
    pack.cycleCount = 0;
    EXPECT_EQ(combine({pack})->cycleCount, std::nullopt);
}

TEST(IsOnExternalPower, FollowsTheChargersAndElseThePacks) {
    const auto ask = [](std::initializer_list<PowerSupply> supplies) {
        return isOnExternalPower(std::vector<PowerSupply>(supplies));
    };
    EXPECT_TRUE(ask({}));
    EXPECT_TRUE(ask({unplugged}));
    EXPECT_FALSE(ask({unplugged, charging()}));
    EXPECT_TRUE(ask({unplugged, pluggedIn, discharging()}));
    EXPECT_FALSE(ask({discharging()}));
    EXPECT_TRUE(ask({PowerSupply{.status = ChargeStatus::unknown}}));
    EXPECT_TRUE(ask({PowerSupply{.status = ChargeStatus::discharging, .present = 0}}));
}

} // namespace
} // namespace tavero
