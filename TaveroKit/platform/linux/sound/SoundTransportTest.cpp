#include "platform/linux/sound/SoundTransport.h"

#include "records/SoundSnapshot.h"

#include <gtest/gtest.h>

namespace tavero {

namespace {

using enum AudioOutput::Transport;

AudioOutput::Transport of(const SoundNode& node) { return audioTransport(transportCode(node)); }

} // namespace

TEST(SoundTransport, IsWhatTheMakerSays) {
    EXPECT_EQ(of({.deviceAPI = "bluez5"}), bluetooth);
    EXPECT_EQ(of({.bus = "bluetooth"}), bluetooth);
    EXPECT_EQ(of({.bus = "usb", .deviceAPI = "alsa"}), usb);
    EXPECT_EQ(of({.bus = "pci", .deviceAPI = "alsa"}), builtIn);
    EXPECT_EQ(of({.formFactor = "internal"}), builtIn);
    EXPECT_EQ(of({.deviceAPI = "alsa"}), builtIn); // a board's own, on no bus that has a name
    EXPECT_EQ(of({.name = "raop_sink.living-room"}), airPlay);
    EXPECT_EQ(of({.name = "effect", .isVirtual = true}), virtualDevice);
    EXPECT_EQ(of({.factory = "support.null-audio-sink"}), virtualDevice);
    EXPECT_EQ(of({.mediaClass = "Audio/Source/Virtual"}), virtualDevice);
    EXPECT_EQ(of({}), AudioOutput::Transport::other);
}

TEST(SoundTransport, ADisplayIsOneWhateverTheCardIsOn) {
    EXPECT_EQ(of({.name = "alsa_output.pci-0000_01_00.1.hdmi-stereo", .bus = "pci"}), display);
    EXPECT_EQ(of({.bus = "pci", .profile = "hdmi-stereo-extra1"}), display);
    EXPECT_EQ(of({.name = "alsa_output.pci.HiFi__HDMI1__sink", .bus = "pci"}), display);
    EXPECT_EQ(of({.bus = "usb", .formFactor = "tv"}), display);
}

TEST(SoundTransport, AHeadsetByRadioStaysOne) {
    EXPECT_EQ(of({.name = "hdmi", .deviceAPI = "bluez5"}), bluetooth);
}

} // namespace tavero
