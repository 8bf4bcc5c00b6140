#include "sound/CompactSoundPanel.h"

#include "presentation/SymbolNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace tavero {
namespace {

using Transport = AudioOutput::Transport;

// Of the symbols that there are.
std::string symbol(const std::string& name, Transport transport = Transport::other) {
    const std::string_view symbol =
        CompactSoundPanel::symbol(AudioOutput{.name = name, .transport = transport});
    EXPECT_THAT(symbolNames, testing::Contains(symbol)) << name;
    return std::string(symbol);
}

TEST(CompactSoundPanel, NoOutputIsALoudspeaker) {
    EXPECT_EQ(CompactSoundPanel::symbol(std::nullopt), "speaker.wave.2");
}

TEST(CompactSoundPanel, TheNameDecidesFirst) {
    EXPECT_EQ(symbol("Ada's AirPods Max"), "airpodsmax");
    EXPECT_EQ(symbol("AirPods Pro 2"), "airpodspro");
    EXPECT_EQ(symbol("AIRPODS"), "airpods");
    EXPECT_EQ(symbol("Beats Studio"), "beats.headphones");
    EXPECT_EQ(symbol("HomePod mini"), "homepod.mini");
    EXPECT_EQ(symbol("Kitchen HomePod"), "homepod");
    EXPECT_EQ(symbol("External Headphones", Transport::builtIn), "headphones");
    EXPECT_EQ(symbol("USB Headset", Transport::usb), "headphones");
    EXPECT_EQ(symbol("Pixel Buds", Transport::bluetooth), "headphones");
}

TEST(CompactSoundPanel, TheFirstHitWins) {
    EXPECT_EQ(symbol("headphones like airpods"), "airpods");
    EXPECT_EQ(symbol("AirPods Pro next to AirPods Max"), "airpodsmax");
    EXPECT_EQ(symbol("HomePod with Beats"), "beats.headphones");
    EXPECT_EQ(symbol("MacBook Headphones", Transport::builtIn), "headphones");
    EXPECT_EQ(symbol("iMac beside a MacBook", Transport::builtIn), "laptopcomputer");
}

TEST(CompactSoundPanel, OtherwiseTheTransportDecides) {
    EXPECT_EQ(symbol("MacBook Pro Speakers", Transport::builtIn), "laptopcomputer");
    EXPECT_EQ(symbol("iMac Speakers", Transport::builtIn), "desktopcomputer");
    EXPECT_EQ(symbol("Mac mini Speakers", Transport::builtIn), "macmini");
    EXPECT_EQ(symbol("Mac Studio Speakers", Transport::builtIn), "macmini");
    EXPECT_EQ(symbol("Built-in Audio", Transport::builtIn), "speaker.wave.2");
    EXPECT_EQ(symbol("LG TV", Transport::display), "tv");
    EXPECT_EQ(symbol("Studio Display", Transport::display), "display");
    EXPECT_EQ(symbol("Living Room TV", Transport::airPlay), "tv");
    EXPECT_EQ(symbol("Kitchen", Transport::airPlay), "airplayaudio");
    EXPECT_EQ(symbol("Loopback", Transport::virtualDevice), "waveform");
    EXPECT_EQ(symbol("Boombox", Transport::bluetooth), "hifispeaker");
    EXPECT_EQ(symbol("DAC", Transport::usb), "hifispeaker");
    EXPECT_EQ(symbol("", Transport::other), "hifispeaker");
}

TEST(CompactSoundPanel, TheNameOfAMacCountsOnlyWhereItIsBuiltIn) {
    EXPECT_EQ(symbol("MacBook", Transport::usb), "hifispeaker");
    EXPECT_EQ(symbol("TV", Transport::usb), "hifispeaker");
}

TEST(CompactSoundPanel, LowerCaseIsUnicodes) {
    // A Kelvin sign becomes a k.
    EXPECT_EQ(symbol("MACBOO\u212A", Transport::builtIn), "laptopcomputer");
    EXPECT_EQ(symbol("\xff\xfe airpods"), "airpods");
}

} // namespace
} // namespace tavero
