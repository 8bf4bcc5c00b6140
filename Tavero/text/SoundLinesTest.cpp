#include "text/SoundLines.h"

#include "text/TextDrawing.h"

#include <gtest/gtest.h>

#include <clocale>

namespace tavero {
namespace {

using Lines = std::vector<std::string>;

class SoundLinesTest : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }

    Lines lines(int columns = 90) { return soundLines(snapshot, apps, {}, {}, columns); }

    const AudioOutput speakers{.id = 5, .name = "MacBook Speakers"};
    const AudioOutput earbuds{.id = 6, .name = "Earbuds"};
    std::optional<LiveSnapshot> snapshot = LiveSnapshot{
        .sound = SoundSnapshot{.output = speakers, .volume = 0.47, .outputs = {speakers, earbuds}}};
    std::vector<AppSound> apps{
        {.name = "Music", .isPlaying = true, .volume = 0.7, .level = 0.5, .output = "Earbuds"},
        {.name = "Browser", .isMuted = true},
        {.name = "Films", .isPlaying = true, .isProtected = true}};
};

TEST_F(SoundLinesTest, TheVolumeStandsAboveTheOutputsAndTheApps) {
    EXPECT_EQ(lines(),
              (Lines{"", "Sound         47%           MacBook Speakers",
                     "Outputs       MacBook Speakers, Earbuds",
                     "Music                          Playing      70%  ██████████████  Earbuds",
                     "Browser                        Silent     Muted  ··············",
                     "Films                          Protected   100%  ··············"}));
}

TEST_F(SoundLinesTest, ALevelIsAsLongAsItIsLoud) {
    apps = {{.name = "Quiet", .isPlaying = true, .level = 0.0316F}}; // -30 dB of full scale
    EXPECT_EQ(lines().at(3), "Quiet                          Playing     100%  ██████▍·······");
}

TEST_F(SoundLinesTest, MutedIsSaidInPlaceOfTheVolume) {
    snapshot->sound->isMuted = true;
    EXPECT_EQ(lines().at(1), "Sound         Muted         MacBook Speakers");
}

TEST_F(SoundLinesTest, WithoutSoundThereIsNoLine) {
    snapshot->sound.reset();
    EXPECT_EQ(lines(), Lines{});
    snapshot.reset();
    EXPECT_EQ(lines(), Lines{});
}

TEST_F(SoundLinesTest, AMachineWithoutOutputsAndAppsHasNoSound) {
    snapshot->sound.emplace();
    apps.clear();
    EXPECT_EQ(lines(), Lines{});
}

TEST_F(SoundLinesTest, WithoutADefaultTheOutputsStand) {
    snapshot->sound->output.reset();
    snapshot->sound->volume.reset();
    apps.clear();
    EXPECT_EQ(lines(), (Lines{"", "Sound         –%            ",
                              "Outputs       MacBook Speakers, Earbuds"}));
}

TEST_F(SoundLinesTest, NoLineIsWiderThanTheTerminal) {
    apps[0].name = std::string(200, 'n');
    apps[0].output = std::string(200, 'o');
    snapshot->sound->outputs.assign(40, earbuds);
    for (const int columns : {1, 24, 47, 80})
        for (const std::string& line : lines(columns)) EXPECT_LE(textWidth(line), columns) << line;
}

} // namespace
} // namespace tavero
