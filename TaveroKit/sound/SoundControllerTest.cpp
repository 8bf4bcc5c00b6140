#include "sound/SoundController.h"

#include "sound/AudioProperty.h"
#include "sound/test/FakeAudio.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

constexpr AudioObjectID speakers = 40;
constexpr AudioObjectID microphone = 41;

constexpr AudioAddress volumeOf(std::uint32_t element, std::uint32_t scope = AudioScope::output) {
    return {AudioSelector::volume, scope, element};
}
constexpr AudioAddress muteOf(std::uint32_t scope = AudioScope::output) {
    return {AudioSelector::mute, scope};
}

struct SoundControllerTest : testing::Test {
    SoundControllerTest() {
        audio.addDevice(speakers, "Speakers", "speakers-uid");
        audio.addDevice(microphone, "Microphone", "microphone-uid", AudioScope::input, "usb ");
        audio.put(audioSystem, {AudioSelector::defaultOutput}, speakers, true);
        audio.put(audioSystem, {AudioSelector::defaultInput}, microphone, true);
    }

    std::optional<float> volume(std::uint32_t element) {
        return audio.real(speakers, volumeOf(element));
    }

    FakeAudio audio;
};

TEST_F(SoundControllerTest, ADeviceWithOnlyInputsIsNoOutputAndTheOtherWayRound) {
    EXPECT_THAT(SoundController::outputs(audio),
                ElementsAre(AudioOutput{speakers, "Speakers", "speakers-uid",
                                        AudioOutput::Transport::builtIn}));
    EXPECT_THAT(SoundController::inputs(audio),
                ElementsAre(AudioOutput{microphone, "Microphone", "microphone-uid",
                                        AudioOutput::Transport::usb}));
}

TEST_F(SoundControllerTest, ADeviceWithBothDirectionsIsInBothLists) {
    audio.put(speakers, {AudioSelector::streams, AudioScope::input},
              std::vector<std::uint32_t>{7, 8});
    EXPECT_THAT(SoundController::inputs(audio), ElementsAre(Field(&AudioOutput::id, speakers),
                                                            Field(&AudioOutput::id, microphone)));
}

TEST_F(SoundControllerTest, AnEmptyOrUnreadableListOfStreamsIsNone) {
    for (const FakeAudio::Value& value :
         {FakeAudio::Value(std::vector<std::uint32_t>{}), FakeAudio::Value(FakeAudio::Unreadable{}),
          FakeAudio::Value(1u)}) {
        audio.put(speakers, {AudioSelector::streams, AudioScope::output}, value);
        EXPECT_THAT(SoundController::outputs(audio), IsEmpty());
    }
}

TEST_F(SoundControllerTest, WithoutAListOfDevicesThereAreNone) {
    audio.remove(audioSystem, {AudioSelector::devices});
    EXPECT_THAT(SoundController::outputs(audio), IsEmpty());
}

TEST_F(SoundControllerTest, OwnAggregatesAreNeverListedWhateverTheirTransport) {
    audio.addDevice(50, "A", "com.brimfold.tavero.1", AudioScope::output, "grup");
    audio.addDevice(51, "B", "com.brimfold.tavero.2", AudioScope::output, "usb ");
    audio.addDevice(52, "C", "com.brimfold.tavero.3", AudioScope::input);
    audio.addDevice(53, "D", "com.brimfold.taverox", AudioScope::output);
    audio.addDevice(54, "E", "x.com.brimfold.tavero.4", AudioScope::output);
    EXPECT_THAT(SoundController::outputs(audio),
                ElementsAre(Field(&AudioOutput::id, speakers), Field(&AudioOutput::id, 53u),
                            Field(&AudioOutput::id, 54u)));
    EXPECT_THAT(SoundController::inputs(audio), ElementsAre(Field(&AudioOutput::id, microphone)));
}

TEST_F(SoundControllerTest, WhatADeviceDoesNotTellHasItsOwnWord) {
    audio.put(speakers, {AudioSelector::name}, FakeAudio::Unreadable{});
    audio.remove(speakers, {AudioSelector::uid});
    audio.remove(speakers, {AudioSelector::transport});
    EXPECT_THAT(SoundController::outputs(audio),
                ElementsAre(AudioOutput{speakers, "Output", "", AudioOutput::Transport::other}));
}

TEST_F(SoundControllerTest, ADeviceThatIsGoneIsNotListed) {
    audio.removeObject(speakers); // between the list and the question
    EXPECT_THAT(SoundController::outputs(audio), IsEmpty());
}

TEST_F(SoundControllerTest, TheMainVolumeComesBeforeThoseOfTheChannels) {
    audio.put(speakers, volumeOf(0), 0.25f);
    audio.put(speakers, volumeOf(1), 0.75f);
    EXPECT_EQ(SoundController::read(audio).volume, 0.25);
}

TEST_F(SoundControllerTest, WithoutAMainVolumeItIsTheMeanOfTheChannels) {
    audio.put(speakers, volumeOf(1), 0.25f);
    audio.put(speakers, volumeOf(2), 0.75f);
    audio.put(speakers, volumeOf(3), 1.0f); // no channel that counts
    EXPECT_EQ(SoundController::read(audio).volume, 0.5);
    audio.remove(speakers, volumeOf(1));
    EXPECT_EQ(SoundController::read(audio).volume, 0.75);
}

TEST_F(SoundControllerTest, AVolumeThatIsUnreadableOrNoNumberIsPassedOver) {
    audio.put(speakers, volumeOf(1), 0.5f);
    for (const FakeAudio::Value& value :
         {FakeAudio::Value(FakeAudio::Unreadable{}), FakeAudio::Value(1u),
          FakeAudio::Value(std::numeric_limits<float>::quiet_NaN()),
          FakeAudio::Value(std::numeric_limits<float>::infinity())}) {
        audio.put(speakers, volumeOf(0), value);
        EXPECT_EQ(SoundController::read(audio).volume, 0.5);
    }
}

TEST_F(SoundControllerTest, ADeviceWithoutVolumeHasNoneAndSettingItDoesNothing) {
    SoundController::setVolume(audio, 0.5);
    EXPECT_EQ(SoundController::read(audio).volume, std::nullopt);
    for (const std::uint32_t element : {0u, 1u, 2u}) EXPECT_EQ(volume(element), std::nullopt);
}

TEST_F(SoundControllerTest, TheSnapshotHasTheDefaultOutputAndAllOutputs) {
    audio.addDevice(60, "Television", "tv-uid", AudioScope::output, "hdmi");
    audio.put(speakers, volumeOf(0), 0.5f);
    audio.put(speakers, muteOf(), 1u);
    const SoundSnapshot sound = SoundController::read(audio);
    EXPECT_EQ(sound.output,
              (AudioOutput{speakers, "Speakers", "speakers-uid", AudioOutput::Transport::builtIn}));
    EXPECT_EQ(sound.volume, 0.5);
    EXPECT_TRUE(sound.isMuted);
    EXPECT_THAT(sound.outputs,
                ElementsAre(*sound.output, AudioOutput{60, "Television", "tv-uid",
                                                       AudioOutput::Transport::display}));
}

TEST_F(SoundControllerTest, WithoutADefaultTheOutputsAreStillListed) {
    audio.put(speakers, muteOf(), 1u);
    for (const FakeAudio::Value& none :
         {FakeAudio::Value(0u), FakeAudio::Value(FakeAudio::Unreadable{})}) {
        audio.put(audioSystem, {AudioSelector::defaultOutput}, none, true);
        const SoundSnapshot sound = SoundController::read(audio);
        EXPECT_EQ(sound.output, std::nullopt);
        EXPECT_EQ(sound.volume, std::nullopt);
        EXPECT_FALSE(sound.isMuted);
        EXPECT_THAT(sound.outputs, ElementsAre(Field(&AudioOutput::id, speakers)));
        EXPECT_EQ(SoundController::defaultOutputUID(audio), std::nullopt);
        SoundController::setVolume(audio, 0.5); // of nothing
        SoundController::setMuted(audio, false);
    }
    EXPECT_EQ(audio.word(speakers, muteOf()), 1u);
}

TEST_F(SoundControllerTest, OnlyAReadMuteThatIsNotZeroIsMute) {
    EXPECT_FALSE(SoundController::read(audio).isMuted); // has none
    audio.put(speakers, muteOf(), FakeAudio::Unreadable{});
    EXPECT_FALSE(SoundController::read(audio).isMuted);
    audio.put(speakers, muteOf(), 0u);
    EXPECT_FALSE(SoundController::read(audio).isMuted);
    audio.put(speakers, muteOf(), 2u);
    EXPECT_TRUE(SoundController::read(audio).isMuted);
}

TEST_F(SoundControllerTest, TheVolumeIsCutToItsRange) {
    audio.put(speakers, volumeOf(0), 0.5f, true);
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<double, float>> cases{
        {1.4, 1.0f}, {-1, 0.0f}, {0.25, 0.25f}, {infinity, 1.0f}, {-infinity, 0.0f}};
    for (const auto& [asked, expected] : cases) {
        SoundController::setVolume(audio, asked);
        EXPECT_EQ(volume(0), expected) << asked;
    }
}

TEST_F(SoundControllerTest, AVolumeThatIsNoNumberSetsNothing) {
    audio.put(speakers, volumeOf(0), 0.5f, true);
    SoundController::setVolume(audio, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(volume(0), 0.5f);
}

TEST_F(SoundControllerTest, AMainControlThatTakesTheVolumeLeavesTheChannelsAlone) {
    for (const std::uint32_t element : {0u, 1u, 2u})
        audio.put(speakers, volumeOf(element), 0.5f, true);
    SoundController::setVolume(audio, 0.25);
    EXPECT_EQ(volume(0), 0.25f);
    EXPECT_EQ(volume(1), 0.5f);
    EXPECT_EQ(volume(2), 0.5f);
}

TEST_F(SoundControllerTest, WithoutAMainControlBothChannelsAreSet) {
    audio.put(speakers, volumeOf(1), 0.5f, true);
    audio.put(speakers, volumeOf(2), 0.75f, true);
    SoundController::setVolume(audio, 0.25);
    EXPECT_EQ(volume(0), std::nullopt);
    EXPECT_EQ(volume(1), 0.25f);
    EXPECT_EQ(volume(2), 0.25f);
}

TEST_F(SoundControllerTest, AMainControlThatRefusesLeavesItToTheChannels) {
    audio.put(speakers, volumeOf(1), 0.5f, true);
    audio.put(speakers, volumeOf(0), {.value = 0.5f, .settable = true, .refusesWrites = true});
    SoundController::setVolume(audio, 0.25);
    EXPECT_EQ(volume(0), 0.5f);
    EXPECT_EQ(volume(1), 0.25f);
    audio.put(speakers, volumeOf(0), 0.5f, false);
    SoundController::setVolume(audio, 0.75);
    EXPECT_EQ(volume(0), 0.5f);
    EXPECT_EQ(volume(1), 0.75f);
}

TEST_F(SoundControllerTest, AChannelThatRefusesDoesNotStopTheOther) {
    audio.put(speakers, volumeOf(1), {.value = 0.5f, .settable = true, .refusesWrites = true});
    audio.put(speakers, volumeOf(2), 0.5f, true);
    SoundController::setVolume(audio, 0.25);
    EXPECT_EQ(volume(1), 0.5f);
    EXPECT_EQ(volume(2), 0.25f);
}

TEST_F(SoundControllerTest, MuteIsSetWhereItCanBe) {
    SoundController::setMuted(audio, true);
    EXPECT_FALSE(audio.has(speakers, muteOf()));
    audio.put(speakers, muteOf(), 0u, false);
    SoundController::setMuted(audio, true);
    EXPECT_EQ(audio.word(speakers, muteOf()), 0u);
    audio.put(speakers, muteOf(), 0u, true);
    SoundController::setMuted(audio, true);
    EXPECT_EQ(audio.word(speakers, muteOf()), 1u);
    SoundController::setMuted(audio, false);
    EXPECT_EQ(audio.word(speakers, muteOf()), 0u);
}

TEST_F(SoundControllerTest, ADeviceCanBeMadeTheDefault) {
    audio.addDevice(60, "Television", "tv-uid");
    SoundController::setOutput(audio, 60);
    EXPECT_EQ(SoundController::defaultOutputUID(audio), "tv-uid");
    SoundController::setInput(audio, 61);
    EXPECT_EQ(SoundController::defaultInputID(audio), 61u);
    audio.put(audioSystem, {AudioSelector::defaultInput}, 0u);
    EXPECT_EQ(SoundController::defaultInputID(audio), std::nullopt);
}

TEST_F(SoundControllerTest, ADefaultWithoutAUIDHasNone) {
    for (const FakeAudio::Value& none :
         {FakeAudio::Value(std::string()), FakeAudio::Value(FakeAudio::Unreadable{})}) {
        audio.put(speakers, {AudioSelector::uid}, none);
        EXPECT_EQ(SoundController::defaultOutputUID(audio), std::nullopt);
    }
}

TEST_F(SoundControllerTest, AnInputHasTheSameRules) {
    const AudioAddress left = volumeOf(1, AudioScope::input);
    const AudioAddress right = volumeOf(2, AudioScope::input);
    EXPECT_EQ(SoundController::inputVolume(audio, microphone), std::nullopt);
    audio.put(microphone, left, 0.25f, true);
    audio.put(microphone, right, 0.75f, true);
    EXPECT_EQ(SoundController::inputVolume(audio, microphone), 0.5);
    SoundController::setInputVolume(audio, 1.4, microphone);
    EXPECT_EQ(audio.real(microphone, left), 1.0f);
    EXPECT_EQ(audio.real(microphone, right), 1.0f);
    const AudioAddress main = volumeOf(0, AudioScope::input);
    audio.put(microphone, main, 0.5f, true);
    SoundController::setInputVolume(audio, -1, microphone);
    EXPECT_EQ(SoundController::inputVolume(audio, microphone), 0);
    EXPECT_EQ(audio.real(microphone, left), 1.0f);
}

TEST_F(SoundControllerTest, AnInputThatCannotTellItsMuteHasNone) {
    const AudioAddress mute = muteOf(AudioScope::input);
    EXPECT_EQ(SoundController::isInputMuted(audio, microphone), std::nullopt);
    audio.put(microphone, mute, FakeAudio::Unreadable{}, true);
    EXPECT_EQ(SoundController::isInputMuted(audio, microphone), std::nullopt);
    audio.put(microphone, mute, 0u, true);
    EXPECT_EQ(SoundController::isInputMuted(audio, microphone), false);
    SoundController::setInputMuted(audio, true, microphone);
    EXPECT_EQ(SoundController::isInputMuted(audio, microphone), true);
}

TEST(AudioProperty, AListThatIsEmptyUnreadableOrOfAnotherFormIsEmpty) {
    FakeAudio audio;
    EXPECT_THAT(AudioProperty::array(audio, 7, AudioSelector::devices), IsEmpty());
    audio.put(7, {AudioSelector::devices}, FakeAudio::Unreadable{});
    EXPECT_THAT(AudioProperty::array(audio, 7, AudioSelector::devices), IsEmpty());
    audio.put(7, {AudioSelector::devices}, std::string("text"));
    EXPECT_THAT(AudioProperty::array(audio, 7, AudioSelector::devices), IsEmpty());
    audio.put(7, {AudioSelector::devices}, std::vector<std::uint32_t>{3, 1});
    EXPECT_THAT(AudioProperty::array(audio, 7, AudioSelector::devices), ElementsAre(3, 1));
    EXPECT_THAT(AudioProperty::array(audio, 7, AudioSelector::devices, AudioScope::input),
                IsEmpty());
}

TEST(AudioProperty, ATextThatCannotBeReadIsAbsent) {
    FakeAudio audio;
    EXPECT_EQ(AudioProperty::string(audio, 7, AudioSelector::name), std::nullopt);
    audio.put(7, {AudioSelector::name}, 1u);
    EXPECT_EQ(AudioProperty::string(audio, 7, AudioSelector::name), std::nullopt);
    audio.put(7, {AudioSelector::name}, std::string());
    EXPECT_EQ(AudioProperty::string(audio, 7, AudioSelector::name), "");
}

} // namespace
} // namespace tavero
