#include "platform/mac/network/MacWiFi.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <utility>

namespace tavero {
namespace {

class FakeInterface : public WiFiInterface {
  public:
    explicit FakeInterface(std::optional<WiFiState> state) : state_(state) {}
    std::optional<WiFiState> state() override { return state_; }

  private:
    std::optional<WiFiState> state_;
};

constexpr WiFiState associated{
    .isPowerOn = true, .rssi = -52, .transmitRate = 1200.5, .phyMode = 6, .channelBand = 2};

std::optional<WiFiLink> link(const std::optional<WiFiState>& state) {
    return MacWiFi(std::make_unique<FakeInterface>(state)).link();
}

TEST(MacWiFi, ALinkHasItsSignalSpeedAndStandard) {
    EXPECT_EQ(link(associated),
              (WiFiLink{.rssi = -52, .linkSpeed = 1200.5, .standard = "Wi-Fi 6"}));
}

TEST(MacWiFi, WithoutAnInterfaceThereIsNoLink) { EXPECT_EQ(link(std::nullopt), std::nullopt); }

TEST(MacWiFi, WithTheRadioOffThereIsNoLink) {
    WiFiState off = associated;
    off.isPowerOn = false;
    EXPECT_EQ(link(off), std::nullopt);
}

TEST(MacWiFi, ASignalOfZeroIsNotAssociatedThoughTheRadioIsOn) {
    WiFiState alone = associated;
    alone.rssi = 0;
    EXPECT_EQ(link(alone), std::nullopt);
}

TEST(MacWiFi, ALinkWithoutAStandardIsALink) {
    WiFiState unnamed = associated;
    unnamed.phyMode = 0;
    EXPECT_EQ(link(unnamed), (WiFiLink{.rssi = -52, .linkSpeed = 1200.5, .standard = {}}));
}

TEST(MacWiFi, ASpeedThatIsNoNumberIsNone) {
    WiFiState broken = associated;
    broken.transmitRate = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(link(broken)->linkSpeed, 0);
    broken.transmitRate = std::numeric_limits<double>::infinity();
    EXPECT_EQ(link(broken)->linkSpeed, 0);
}

TEST(WiFiStandard, Mode6IsWiFi6AndOn6GHzWiFi6E) {
    EXPECT_EQ(wifiStandard(6, 1), "Wi-Fi 6");
    EXPECT_EQ(wifiStandard(6, 2), "Wi-Fi 6");
    EXPECT_EQ(wifiStandard(6, 3), "Wi-Fi 6E");
    EXPECT_EQ(wifiStandard(6, std::nullopt), "Wi-Fi 6");
}

TEST(WiFiStandard, TheBandMattersToNoOtherMode) {
    for (const auto band : {std::optional<std::int64_t>(), std::optional<std::int64_t>(3)}) {
        EXPECT_EQ(wifiStandard(0, band), std::nullopt);
        EXPECT_EQ(wifiStandard(1, band), "Wi-Fi");
        EXPECT_EQ(wifiStandard(2, band), "Wi-Fi");
        EXPECT_EQ(wifiStandard(3, band), "Wi-Fi");
        EXPECT_EQ(wifiStandard(4, band), "Wi-Fi 4");
        EXPECT_EQ(wifiStandard(5, band), "Wi-Fi 5");
        EXPECT_EQ(wifiStandard(7, band), "Wi-Fi 7");
    }
}

TEST(WiFiStandard, LaterModesAreTheLatestThatHasAName) {
    EXPECT_EQ(wifiStandard(8, 3), "Wi-Fi 7");
    EXPECT_EQ(wifiStandard(std::numeric_limits<std::int64_t>::max(), 0), "Wi-Fi 7");
}

TEST(WiFiStandard, AModeBelowZeroHasNone) {
    EXPECT_EQ(wifiStandard(-1, 3), std::nullopt);
    EXPECT_EQ(wifiStandard(std::numeric_limits<std::int64_t>::min(), 3), std::nullopt);
}

} // namespace
} // namespace tavero
