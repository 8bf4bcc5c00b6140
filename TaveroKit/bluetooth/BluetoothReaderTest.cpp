#include "bluetooth/BluetoothReader.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tavero {
namespace {

// A report with one connected device that has these properties.
std::string reportOf(const std::string& properties, const std::string& name = "Earbuds") {
    return R"({"SPBluetoothDataType":[{"device_connected":[{")" + name + R"(":{)" + properties +
           "}}]}]}";
}

std::optional<BluetoothDevice> deviceOf(const std::string& properties,
                                        const std::string& name = "Earbuds") {
    const auto snapshot = parseBluetoothReport(reportOf(properties, name));
    if (!snapshot || snapshot->connected.size() != 1) return std::nullopt;
    return snapshot->connected.front();
}

std::optional<BluetoothSnapshot> controllerOf(const std::string& properties) {
    return parseBluetoothReport(R"({"SPBluetoothDataType":[{"controller_properties":)" +
                                properties + "}]}");
}

std::vector<std::int64_t> percents(const BluetoothDevice& device) {
    std::vector<std::int64_t> percents;
    for (const BluetoothDevice::Battery& battery : device.batteries)
        percents.push_back(battery.percent);
    return percents;
}

TEST(BluetoothReport, AWholeReportIsRead) {
    const auto snapshot = parseBluetoothReport(R"({"SPBluetoothDataType": [{
        "controller_properties": {"controller_address": "10:22:33:44:55:66",
            "controller_state": "attrib_on", "controller_discoverable": "attrib_on"},
        "device_connected": [
            {"Anna’s Earbuds": {"device_address": "0C:11:22:33:44:55",
                "device_batteryLevelCase": "5%", "device_batteryLevelLeft": "50%",
                "device_batteryLevelRight": "40%", "device_minorType": "Headphones",
                "device_rssi": "-48"}},
            {"Keyboard": {"device_batteryLevelMain": "82%"}}],
        "device_not_connected": [{"Kitchen": {"device_minorType": "Speaker"}}]}]})");
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(*snapshot, (BluetoothSnapshot{
                             .isOn = true,
                             .connected = {{.name = "Anna’s Earbuds",
                                            .kind = "Headphones",
                                            .batteries = {{"Left", 50}, {"Right", 40}, {"Case", 5}},
                                            .address = "0C:11:22:33:44:55",
                                            .rssi = -48},
                                           {.name = "Keyboard", .batteries = {{"Battery", 82}}}},
                             .paired = {{.name = "Kitchen", .kind = "Speaker"}},
                             .isDiscoverable = true}));
    EXPECT_EQ(snapshot->connected[0].lowestBattery(), (BluetoothDevice::Battery{"Right", 40}));
}

TEST(BluetoothReport, OnlyTheDigitsOfABatteryCount) {
    for (const char* level : {"85%", "85", " 85 % ", "about 85 percent", "8 5", "８85%", "-85"}) {
        const auto device = deviceOf(R"("device_batteryLevelMain":")" + std::string(level) + '"');
        ASSERT_TRUE(device) << level;
        EXPECT_EQ(percents(*device), std::vector<std::int64_t>{85}) << level;
    }
}

TEST(BluetoothReport, ABatteryWithoutDigitsIsLeftOut) {
    for (const char* level : {R"("")", R"("%")", R"("٨٥")", "85", "null", "true", "[]", "{}",
                              R"("99999999999999999999")"}) {
        const auto device = deviceOf(R"("device_batteryLevelLeft":)" + std::string(level) +
                                     R"(,"device_batteryLevelRight":"7")");
        ASSERT_TRUE(device) << level;
        EXPECT_EQ(device->batteries, (std::vector<BluetoothDevice::Battery>{{"Right", 7}}));
    }
}

TEST(BluetoothReport, ADeviceWithBothKindsOfMainBatteryShowsTwo) {
    const auto device = deviceOf(R"("device_batteryLevel":"20%","device_batteryLevelMain":"30%")");
    ASSERT_TRUE(device);
    EXPECT_EQ(device->batteries,
              (std::vector<BluetoothDevice::Battery>{{"Battery", 30}, {"Battery", 20}}));
}

TEST(BluetoothReport, ACaseAloneIsTheLowestBattery) {
    const auto device = deviceOf(R"("device_batteryLevelCase":"5%")");
    ASSERT_TRUE(device);
    EXPECT_EQ(device->lowestBattery(), (BluetoothDevice::Battery{"Case", 5}));
}

TEST(BluetoothReport, TheFirstOfEquallyLowBatteriesIsTheLowest) {
    const auto device =
        deviceOf(R"("device_batteryLevelRight":"40%","device_batteryLevelLeft":"40%")");
    ASSERT_TRUE(device);
    EXPECT_EQ(device->lowestBattery(), (BluetoothDevice::Battery{"Left", 40}));
}

TEST(BluetoothReport, OnlyTheWordForOffIsOff) {
    EXPECT_FALSE(controllerOf(R"({"controller_state":"attrib_off"})")->isOn);
    for (const char* properties :
         {R"({"controller_state":"attrib_on"})", R"({"controller_state":"Attrib_Off"})",
          R"({"controller_state":""})", R"({"controller_state":false})", "{}", "null", "[]",
          R"("attrib_off")", "0"})
        EXPECT_TRUE(controllerOf(properties)->isOn) << properties;
}

TEST(BluetoothReport, OnlyTheWordForOnIsDiscoverable) {
    EXPECT_TRUE(controllerOf(R"({"controller_discoverable":"attrib_on"})")->isDiscoverable);
    for (const char* properties :
         {R"({"controller_discoverable":"attrib_off"})", R"({"controller_discoverable":"on"})",
          R"({"controller_discoverable":true})", "{}", "7"})
        EXPECT_FALSE(controllerOf(properties)->isDiscoverable) << properties;
}

TEST(BluetoothReport, AnEmptyListOfReportsIsNoReport) {
    EXPECT_EQ(parseBluetoothReport(R"({"SPBluetoothDataType":[]})"), std::nullopt);
}

TEST(BluetoothReport, WhatIsNoReportIsAbsent) {
    for (const char* text :
         {"", " ", "{", "}", "null", "7", R"("SPBluetoothDataType")", "[]", "{}", "[{}]",
          R"({"SPBluetoothDataType":{}})", R"({"SPBluetoothDataType":null})",
          R"({"SPBluetoothDataType":"x"})", R"({"SPBluetoothDataType":[null]})",
          R"({"SPBluetoothDataType":[[]]})", R"({"SPBluetoothDataType":[{}]} x)",
          R"({"SPBluetoothDataType":[{"device_connected":[{"\ud800":{}}]}]})",
          "{\"SPBluetoothDataType\":[{\"\xFF\":1}]}", "system_profiler: usage"})
        EXPECT_EQ(parseBluetoothReport(text), std::nullopt) << text;
}

TEST(BluetoothReport, AReportThatIsCutAnywhereIsAbsent) {
    const std::string whole =
        reportOf(R"("device_batteryLevelMain":"8%","device_address":"0C:11")", "Büro 🎧");
    ASSERT_TRUE(parseBluetoothReport(whole));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(parseBluetoothReport(whole.substr(0, length)), std::nullopt) << length;
}

TEST(BluetoothReport, AReportWithoutDevicesIsAMachineWithoutDevices) {
    EXPECT_EQ(parseBluetoothReport(R"({"SPBluetoothDataType":[{}]})"),
              (BluetoothSnapshot{.isOn = true}));
}

TEST(BluetoothReport, AListOfDevicesOfAnotherFormIsEmpty) {
    for (const char* list : {"null", "{}", R"({"Mouse":{}})", R"("Mouse")", R"([{"Mouse":{}},7])",
                             R"([[],{"Mouse":{}}])", "[]", "[{}]"}) {
        const auto snapshot = parseBluetoothReport(
            R"({"SPBluetoothDataType":[{"device_not_connected":[{"Keys":{}}],"device_connected":)" +
            std::string(list) + "}]}");
        ASSERT_TRUE(snapshot) << list;
        EXPECT_TRUE(snapshot->connected.empty()) << list;
        EXPECT_EQ(snapshot->paired.size(), 1u) << list;
    }
}

TEST(BluetoothReport, AllEntriesOfAnObjectAreTakenInTheOrderOfTheFileButThoseThatAreNoDevice) {
    const auto snapshot = parseBluetoothReport(
        R"({"SPBluetoothDataType":[{"device_connected":[{"z":{},"y":3,"a":{}},{"m":{},"n":[]}]}]})");
    ASSERT_TRUE(snapshot);
    std::string names;
    for (const BluetoothDevice& device : snapshot->connected) names += device.name;
    EXPECT_EQ(names, "zam");
}

TEST(BluetoothReport, DevicesOfOneNameAreDevicesAllTheSame) {
    const auto snapshot = parseBluetoothReport(
        R"({"SPBluetoothDataType":[{"device_connected":[{"Mouse":{}},{"Mouse":{}}]}]})");
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->connected.size(), 2u);
}

TEST(BluetoothReport, FieldsOfAnotherTypeAreAbsentAndTheDeviceStays) {
    for (const char* value : {"null", "7", "true", "[]", "{}", "-1e3"}) {
        const std::string text = value;
        const auto device = deviceOf(R"("device_minorType":)" + text + R"(,"device_address":)" +
                                     text + R"(,"device_rssi":)" + text);
        ASSERT_TRUE(device) << value;
        EXPECT_EQ(*device, BluetoothDevice{.name = "Earbuds"}) << value;
    }
}

TEST(BluetoothReport, ASignalThatIsNoIntegerIsAbsent) {
    const auto rssi = [](const std::string& text) {
        return deviceOf(R"("device_rssi":")" + text + '"')->rssi;
    };
    EXPECT_EQ(rssi("-55"), -55);
    EXPECT_EQ(rssi("+5"), 5);
    EXPECT_EQ(rssi("0"), 0);
    for (const char* text : {"", "-", "+-5", "-55 dBm", " -55", "-5.5", "99999999999999999999"})
        EXPECT_EQ(rssi(text), std::nullopt) << text;
}

TEST(BluetoothReport, ANameIsTrimmedAndMayBeAnything) {
    EXPECT_EQ(deviceOf("", "Mouse  ")->name, "Mouse");
    EXPECT_EQ(deviceOf("", R"(\t Anna’s 耳机 🎧\n)")->name, "Anna’s 耳机 🎧");
    EXPECT_EQ(deviceOf("", R"(a\u0000b)")->name, std::string("a\0b", 3));
    EXPECT_EQ(deviceOf("", "  ")->name, "");
}

TEST(BluetoothReport, ManyDevicesAreReadAndAReportWithoutEndIsNot) {
    std::string devices;
    for (int index = 0; index < 500; ++index)
        devices += R"({"Device )" + std::to_string(index) +
                   R"(":{"device_address":"0C:11:22:33:44:55","device_batteryLevelMain":"50%"}},)";
    const auto snapshot = parseBluetoothReport(R"({"SPBluetoothDataType":[{"device_connected":[)" +
                                               devices + "{}]}]}");
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->connected.size(), 500u);

    EXPECT_EQ(parseBluetoothReport(reportOf("", std::string(1 << 20, 'x'))), std::nullopt);
    EXPECT_EQ(parseBluetoothReport(std::string(200'000, '[')), std::nullopt);
}

struct FakeReport final : BluetoothReportSource {
    std::optional<std::string> text;
    std::optional<std::string> report() override { return text; }
};

TEST(BluetoothReader, ReadsWhatTheSourceReports) {
    auto source = std::make_unique<FakeReport>();
    FakeReport& report = *source;
    BluetoothReader reader(std::move(source));
    EXPECT_EQ(reader.read(), std::nullopt); // no tool
    report.text = reportOf("", "Mouse");
    EXPECT_EQ(reader.read()->connected.at(0).name, "Mouse");
    report.text = "";
    EXPECT_EQ(reader.read(), std::nullopt);
}

} // namespace
} // namespace tavero
