#include "platform/linux/hardware/LinuxSensors.h"

#include "platform/linux/TemporaryTree.h"
#include "records/TemperatureSnapshot.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace tavero {
namespace {

const std::filesystem::path machines = TAVERO_HARDWARE_MACHINES;
constexpr std::chrono::minutes plenty{5};

using Names = std::vector<std::string>;

TemperatureSnapshot readAll(LinuxSensors& sensors) {
    TemperatureSnapshot snapshot;
    const Names names = sensors.sensors();
    for (std::size_t i = 0; i < names.size(); ++i)
        if (const auto celsius = sensors.celsius(i)) snapshot.all.push_back({names[i], *celsius});
    return snapshot;
}

TEST(LinuxSensors, ALaptopsProcessorDiskAndBoard) {
    LinuxSensors sensors(machines / "composed-energy-laptop", plenty);
    EXPECT_EQ(sensors.sensors(),
              (Names{"NAND Composite", "nvme Sensor 1", "tdie Package id 0", "tdie Core 0",
                     "tdie Core 4", "tdie Core 8", "tdie Core 12", "dell_smm CPU", "acpitz"}));
    const TemperatureSnapshot snapshot = readAll(sensors);
    EXPECT_EQ(snapshot.cpu(), 61);
    EXPECT_EQ(snapshot.ssd(), 38.85);
    EXPECT_EQ(snapshot.battery(), std::nullopt); // it comes with the battery
}

TEST(LinuxSensors, ThermalZonesOfABoardAndNoBatteryTwice) {
    LinuxSensors sensors(machines / "composed-charge-tablet", plenty);
    EXPECT_EQ(sensors.sensors(), (Names{"tdie cpu_thermal", "gpu_thermal"}));
    EXPECT_EQ(readAll(sensors).cpu(), 47.25);
}

TEST(LinuxSensors, TheControlFigureIsNotTheDiesAndAFaultySensorIsSilent) {
    LinuxSensors sensors(machines / "composed-k10temp-desktop", plenty);
    EXPECT_EQ(sensors.sensors(),
              (Names{"NAND Composite", "amdgpu edge", "k10temp Tctl", "tdie Tdie", "tdie Tccd1",
                     "nct6798 SYSTIN", "nct6798 CPUTIN"}));
    const TemperatureSnapshot snapshot = readAll(sensors);
    EXPECT_EQ(snapshot.cpu(), 50.25);
    EXPECT_EQ(snapshot.all.size(), 5u); // without the card asleep and the faulty one
}

TEST(SensorName, TellsTheProcessorTheFlashAndTheRest) {
    EXPECT_EQ(sensorName("coretemp", "Core 3", {}), "tdie Core 3");
    EXPECT_EQ(sensorName("k10temp", "Tctl", {"Tctl"}), "tdie Tctl");
    EXPECT_EQ(sensorName("k10temp", "Tctl", {"Tctl", "Tdie"}), "k10temp Tctl");
    EXPECT_EQ(sensorName("soc0_thermal", "", {}), "tdie soc0_thermal");
    EXPECT_EQ(sensorName("nvme", "Composite", {}), "NAND Composite");
    EXPECT_EQ(sensorName("nvme", "Sensor 2", {}), "nvme Sensor 2");
    EXPECT_EQ(sensorName("acpitz", "", {}), "acpitz");
    EXPECT_EQ(sensorName("cros_ec", "Battery", {}), "cros_ec Battery");
}

TEST(LinuxSensors, WithoutAProcessorsChipTheOneLabelledCPUStandsIn) {
    const TemporaryTree tree{{"sys/class/hwmon/hwmon0/name", "thinkpad\n"},
                             {"sys/class/hwmon/hwmon0/temp1_input", "55000\n"},
                             {"sys/class/hwmon/hwmon0/temp1_label", "CPU\n"},
                             {"sys/class/hwmon/hwmon0/temp2_input", "45000\n"},
                             {"sys/class/hwmon/hwmon0/temp2_label", "GPU\n"}};
    LinuxSensors sensors(tree.root(), plenty);
    EXPECT_EQ(sensors.sensors(), (Names{"tdie thinkpad CPU", "thinkpad GPU"}));
    EXPECT_EQ(readAll(sensors).cpu(), 55);
}

TEST(LinuxSensors, AMachineWithoutSensorsHasNone) {
    LinuxSensors sensors(machines / "no-such-machine", plenty);
    EXPECT_TRUE(sensors.sensors().empty());
    EXPECT_EQ(sensors.celsius(0), std::nullopt);
}

TEST(LinuxSensors, ASensorThatLeavesSaysNothingAndKeepsItsPlace) {
    const std::string chip = "sys/class/hwmon/hwmon0/";
    const TemporaryTree tree{{chip + "name", "coretemp\n"},
                             {chip + "temp1_input", "50000\n"},
                             {chip + "temp2_input", "51000\n"}};
    LinuxSensors sensors(tree.root(), plenty);
    ASSERT_EQ(sensors.sensors().size(), 2u);
    tree.remove(chip + "temp1_input");
    EXPECT_EQ(sensors.celsius(0), std::nullopt);
    EXPECT_EQ(sensors.celsius(1), 51);
    EXPECT_EQ(sensors.sensors().size(), 2u);
}

TEST(LinuxSensors, GarbageSaysNothing) {
    for (const char* text : {"", "hot", "9223372036854775808", "-9223372036854775808", "1e3"}) {
        const TemporaryTree tree{{"sys/class/hwmon/hwmon0/name", "coretemp\n"},
                                 {"sys/class/hwmon/hwmon0/temp1_input", text}};
        EXPECT_EQ(LinuxSensors(tree.root(), plenty).celsius(0), std::nullopt) << text;
    }
}

TEST(LinuxSensors, OnThisMachine) {
    LinuxSensors sensors("/", plenty);
    for (const TemperatureReading& reading : readAll(sensors).all) {
        EXPECT_FALSE(reading.name.empty());
        EXPECT_GT(reading.celsius, -100);
        EXPECT_LT(reading.celsius, 200);
    }
}

} // namespace
} // namespace tavero
