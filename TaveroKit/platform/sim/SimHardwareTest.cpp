#include "hardware/AppGPUSampler.h"
#include "hardware/SensorReader.h"
#include "platform/sim/SimMachine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <numeric>
#include <optional>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;

class HardwareRun {
  public:
    explicit HardwareRun(Scenario scenario)
        : sim_(std::move(scenario), [clock = clock_] { return *clock; }), machine_(sim_.machine()) {
    }

    Machine& after(Date::duration time) {
        *clock_ += time;
        return machine_;
    }
    Machine& now() { return machine_; }
    SimMachine& sim() { return sim_; }

    std::optional<double> cpuTemperature() { return SensorReader(*machine_.sensors).read().cpu(); }

  private:
    std::shared_ptr<Date> clock_ = std::make_shared<Date>(Date(std::chrono::days(20'000)));
    SimMachine sim_;
    Machine machine_;
};

std::int32_t pidOf(SimMachine& sim, const std::string& program) {
    const auto& processes = sim.state().processes;
    return std::find_if(processes.begin(), processes.end(),
                        [&](const SimProcess& process) {
                            return process.path.value_or("").ends_with("/" + program);
                        })
        ->pid;
}

double shareOf(HardwareRun& run, const std::string& program, Date::duration time) {
    AppGPUSampler sampler;
    sampler.sample(*run.now().gpu);
    const auto shares = sampler.sample(*run.after(time).gpu);
    const auto share = shares.find(pidOf(run.sim(), program));
    return share == shares.end() ? 0 : share->second;
}

TEST(SimHardware, ALaptopHasABatteryFansSensorsAndAGPU) {
    const Machine machine = SimMachine().machine();
    const BatterySnapshot battery = *machine.battery->battery();
    EXPECT_EQ(battery.percent, 100);
    EXPECT_TRUE(battery.onExternalPower);
    EXPECT_FALSE(battery.isCharging);
    EXPECT_NEAR(*battery.health, 0.96, 0.005);
    EXPECT_EQ(battery.cycleCount, 187);
    EXPECT_EQ(battery.watts, 0);
    EXPECT_EQ(battery.minutesToEmpty, std::nullopt);
    EXPECT_NEAR(*battery.remainingWattHours, 52, 4);

    const SMCSnapshot controller = machine.controller->read();
    EXPECT_EQ(controller.fanRPM.size(), 2u);
    EXPECT_GT(*controller.systemWatts, 3);
    EXPECT_GT(*controller.chargerWatts, 3);
    EXPECT_EQ(controller.batteryWatts, 0);

    EXPECT_EQ(machine.sensors->sensors().size(), 20u);
    const TemperatureSnapshot temperatures = SensorReader(*machine.sensors).read();
    EXPECT_GT(*temperatures.cpu(), 35);
    EXPECT_LT(*temperatures.battery(), 35);

    EXPECT_EQ(machine.gpu->gpu()->cores, 10);
    EXPECT_GT(machine.gpu->gpu()->memoryInUse, 500'000'000u);
    EXPECT_EQ(machine.gpu->gpuTimes().size(), 1u);
}

TEST(SimHardware, TheGPUsLoadIsThatOfItsClients) {
    for (const Scenario& scenario : scenarios()) {
        HardwareRun run(scenario);
        run.after(5min);
        AppGPUSampler sampler;
        for (int step = 0; step < 100; ++step) {
            sampler.sample(*run.now().gpu);
            double shares = 0;
            for (const auto& [pid, share] : sampler.sample(*run.after(2s).gpu)) shares += share;
            ASSERT_NEAR(run.now().gpu->gpu()->device, shares, 0.006) << scenario.name;
        }
    }
}

TEST(SimHardware, ADrawnPageUsesTheGPU) {
    HardwareRun run(idleAfternoon());
    const std::string drawing = "Wayfarer Helper (GPU)";
    EXPECT_LT(shareOf(run, drawing, 20s), 0.05);
    run.after(8s);
    EXPECT_GT(shareOf(run, drawing, 4s), 0.2);
}

TEST(SimHardware, APowerHungryAppDrainsTheBatteryUntilItIsQuit) {
    HardwareRun run(onBattery());
    const BatterySnapshot before = *run.after(50s).battery->battery();
    const double coolBefore = *run.cpuTemperature();
    const double fanBefore = run.now().controller->read().fanRPM.front();
    EXPECT_FALSE(before.onExternalPower);
    EXPECT_FALSE(run.now().power->onExternalPower());
    EXPECT_EQ(before.percent, 42);
    EXPECT_FALSE(before.currentIsStale);
    EXPECT_LT(*before.watts, 7);
    EXPECT_GT(*before.minutesToEmpty, 180);

    run.after(10min);
    const BatterySnapshot working = *run.now().battery->battery();
    EXPECT_GT(*working.watts, 12);
    EXPECT_LT(*working.minutesToEmpty, 130);
    EXPECT_LT(working.percent, 39);
    EXPECT_NEAR(*working.watts, *run.now().controller->read().systemWatts, 0.1);
    EXPECT_GT(*run.cpuTemperature(), coolBefore + 10);
    EXPECT_GT(run.now().controller->read().fanRPM.front(), fanBefore + 200);
    EXPECT_GT(run.now().gpu->gpu()->device, 0.45);
    EXPECT_NEAR(shareOf(run, "FilmEncoder", 5s), 0.3, 0.01);

    run.sim().quit("/Applications/Fieldcut.app");
    const BatterySnapshot relieved = *run.after(10min).battery->battery();
    EXPECT_LT(*relieved.watts, 7);
    EXPECT_GT(*relieved.minutesToEmpty, 150);
    EXPECT_LT(*run.cpuTemperature(), coolBefore + 5);
    EXPECT_LT(run.now().gpu->gpu()->device, 0.2);
}

TEST(SimHardware, ARunawayAppHeatsItsCore) {
    HardwareRun run(runawayApp());
    run.after(50s);
    const double before = *run.cpuTemperature();
    run.after(10min);
    EXPECT_GT(*run.cpuTemperature(), before + 8);
    EXPECT_LT(*run.cpuTemperature(), 90);
}

TEST(SimHardware, ABatteryThatWasDrainedChargesWhenItIsPluggedIn) {
    HardwareRun run(idleAfternoon());
    EXPECT_EQ(run.after(19min).battery->battery()->percent, 100);
    const BatterySnapshot drained = *run.after(4h).battery->battery();
    EXPECT_LT(drained.percent, 80);
    EXPECT_GT(drained.percent, 40);
    const BatterySnapshot charging = *run.after(5min).battery->battery();
    EXPECT_TRUE(charging.isCharging);
    EXPECT_TRUE(charging.onExternalPower);
    EXPECT_LT(*charging.watts, -20);
    EXPECT_GT(*charging.minutesToFull, 5);
    EXPECT_EQ(charging.minutesToEmpty, std::nullopt);
    EXPECT_GT(*run.now().controller->read().chargerWatts, 30);
    const BatterySnapshot full = *run.after(3h).battery->battery();
    EXPECT_EQ(full.percent, 100);
    EXPECT_FALSE(full.isCharging);
}

TEST(SimHardware, ThroughAMonthEveryScenarioStaysWithinWhatAMacShows) {
    for (const Scenario& scenario : scenarios()) {
        SCOPED_TRACE(scenario.name);
        HardwareRun run(scenario);
        for (int step = 0; step < 30 * 24; ++step) {
            Machine& machine = run.after(3601s);
            const BatterySnapshot battery = *machine.battery->battery();
            ASSERT_GE(battery.percent, 1);
            ASSERT_LE(battery.percent, 100);
            const SMCSnapshot controller = machine.controller->read();
            ASSERT_GT(*controller.systemWatts, 3);
            ASSERT_LT(*controller.systemWatts, 40);
            for (const double rpm : controller.fanRPM) {
                ASSERT_GE(rpm, 1300);
                ASSERT_LE(rpm, 6000);
            }
            ASSERT_GT(*run.cpuTemperature(), 36);
            ASSERT_LT(*run.cpuTemperature(), 100);
            ASSERT_GE(machine.gpu->gpu()->device, 0);
            ASSERT_LE(machine.gpu->gpu()->device, 1);
        }
    }
}

TEST(SimHardware, TellsTheSameHoweverOftenItWasAsked) {
    HardwareRun often(onBattery());
    HardwareRun once(onBattery());
    for (int i = 0; i < 599; ++i) often.after(1s).battery->battery();
    EXPECT_EQ(often.after(1s).battery->battery(), once.after(600s).battery->battery());
    EXPECT_EQ(often.now().controller->read(), once.now().controller->read());
    EXPECT_EQ(often.now().gpu->gpuTimes(), once.now().gpu->gpuTimes());
    EXPECT_EQ(often.cpuTemperature(), once.cpuTemperature());
}

} // namespace
} // namespace tavero
