#include "monitor/Strain.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

const Format plain;

LiveSnapshot underAll() {
    LiveSnapshot snapshot;
    snapshot.memory = {.total = 1000, .app = 925, .pressure = MemoryPressure::critical};
    snapshot.cpuTemperature = 101;
    snapshot.cpu = {.user = 0.75, .system = 0.25};
    return snapshot;
}

std::optional<Strain> ofCPU(double user, double system = 0) {
    LiveSnapshot snapshot;
    snapshot.cpu = {.user = user, .system = system};
    return detectStrain(snapshot, ThermalState::nominal, plain);
}

TEST(Strain, ACPUIsUnderStrainFromNinetyPercent) {
    EXPECT_FALSE(ofCPU(0.899));
    EXPECT_EQ(ofCPU(0.9), (Strain{"CPU 90%", Metric::cpu, "90%"}));
    EXPECT_EQ(ofCPU(0.5, 0.5), (Strain{"CPU 100%", Metric::cpu, "100%"}));
}

TEST(Strain, PressureIsWhatCountsNotTheShareInUse) {
    LiveSnapshot snapshot;
    snapshot.memory = {.total = 1000, .app = 400, .pressure = MemoryPressure::warning};
    EXPECT_EQ(detectStrain(snapshot, ThermalState::nominal, plain),
              (Strain{"Memory 40%", Metric::memory, "40%"}));
    for (const MemoryPressure calm : {MemoryPressure::normal, MemoryPressure::unknown}) {
        snapshot.memory->pressure = calm;
        EXPECT_FALSE(detectStrain(snapshot, ThermalState::nominal, plain));
    }
}

TEST(Strain, TheShareOfMemoryIsRoundedHalfAwayFromZero) {
    LiveSnapshot snapshot;
    snapshot.memory = {.total = 1000, .app = 925, .pressure = MemoryPressure::warning};
    EXPECT_EQ(detectStrain(snapshot, ThermalState::nominal, plain)->value, "93%");
    snapshot.memory->app = 625; // 62.5 lies between two even neighbours
    EXPECT_EQ(detectStrain(snapshot, ThermalState::nominal, plain)->value, "63%");
}

TEST(Strain, AnUnknownTotalOfMemoryDividesNothing) {
    LiveSnapshot snapshot;
    snapshot.memory = {.total = 0, .app = 2, .pressure = MemoryPressure::warning};
    EXPECT_EQ(detectStrain(snapshot, ThermalState::nominal, plain)->value, "200%");
}

TEST(Strain, OnlyASeriousThermalStateIsHot) {
    LiveSnapshot snapshot;
    snapshot.cpuTemperature = 108.4;
    EXPECT_FALSE(detectStrain(snapshot, ThermalState::nominal, plain));
    EXPECT_FALSE(detectStrain(snapshot, ThermalState::fair, plain));
    const Strain hot{"Hot", Metric::temperature, "108°C"};
    EXPECT_EQ(detectStrain(snapshot, ThermalState::serious, plain), hot);
    EXPECT_EQ(detectStrain(snapshot, ThermalState::critical, plain), hot);
    EXPECT_EQ(detectStrain(snapshot, ThermalState::critical, {.fahrenheit = true})->value, "227°F");
}

TEST(Strain, HeatWithoutATemperatureIsStillHot) {
    LiveSnapshot snapshot;
    const Strain hot{"Hot", Metric::temperature, "Hot"};
    EXPECT_EQ(detectStrain(snapshot, ThermalState::serious, plain), hot);
    snapshot.cpuTemperature = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(detectStrain(snapshot, ThermalState::serious, plain), hot);
}

TEST(Strain, MemoryComesBeforeHeatAndHeatBeforeTheCPU) {
    LiveSnapshot snapshot = underAll();
    const auto metric = [&] {
        return detectStrain(snapshot, ThermalState::critical, plain)->metric;
    };
    EXPECT_EQ(metric(), Metric::memory);
    snapshot.memory.reset();
    EXPECT_EQ(metric(), Metric::temperature);
    EXPECT_EQ(detectStrain(snapshot, ThermalState::fair, plain)->metric, Metric::cpu);
}

TEST(Strain, ACPUThatIsNoNumberIsNoStrain) {
    EXPECT_FALSE(ofCPU(std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(ofCPU(std::numeric_limits<double>::quiet_NaN()));
}

TEST(Strain, TheMainItemWarnsOnlyInTheCompactStyle) {
    EXPECT_TRUE(strainShowsOnTaveroItem("compact", true));
    EXPECT_FALSE(strainShowsOnTaveroItem("compact", false));
    EXPECT_FALSE(strainShowsOnTaveroItem("detailed", true));
    EXPECT_FALSE(strainShowsOnTaveroItem("", true));
}

} // namespace
} // namespace tavero
