#include "sound/AudioSettings.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

AudioSettings decoded(std::string_view text) {
    const auto settings = decodedAudioSettings(text);
    EXPECT_TRUE(settings) << text;
    return settings.value_or(AudioSettings{});
}

TEST(AudioSettings, ASettingOfNothingIsDefault) {
    EXPECT_TRUE(AudioSetting{}.isDefault());
    EXPECT_TRUE(AudioSetting{.volume = 0.999}.isDefault());
    EXPECT_FALSE(AudioSetting{.volume = 0.9989}.isDefault());
    EXPECT_TRUE((AudioSetting{.volumes = {{"a", 0.9995}}}.isDefault()));
    EXPECT_FALSE((AudioSetting{.volumes = {{"a", 1}, {"b", 0.5}}}.isDefault()));
    EXPECT_FALSE(AudioSetting{.muted = true}.isDefault());
    EXPECT_FALSE(AudioSetting{.outputUID = ""}.isDefault());
}

TEST(AudioSettings, OnlyTheOutputInQuestionCountsForBeingUntouched) {
    const AudioSetting setting{.volumes = {{"headphones", 0.3}}};
    EXPECT_TRUE(setting.isUntouched("speakers"));
    EXPECT_TRUE(setting.isUntouched(std::nullopt));
    EXPECT_FALSE(setting.isUntouched("headphones"));
    const AudioSetting full{.volume = 0.3, .volumes = {{"headphones", 0.999}}};
    EXPECT_TRUE(full.isUntouched("headphones"));
    EXPECT_FALSE(full.isUntouched("speakers"));
    EXPECT_FALSE(full.isUntouched(std::nullopt));
}

TEST(AudioSettings, MuteAndOutputAreTouchesWhateverTheVolume) {
    EXPECT_FALSE(AudioSetting{.muted = true}.isUntouched("speakers"));
    EXPECT_FALSE(AudioSetting{.outputUID = "speakers"}.isUntouched("speakers"));
}

TEST(AudioSettings, ComeBackAsTheyWereWritten) {
    const AudioSettings settings{
        {"/Applications/Music.app",
         {.volume = 0.25, .volumes = {{"a", 0.1}, {"b", 1}}, .muted = true, .outputUID = "b"}},
        {"", {.outputUID = ""}},
        {"\u00fc \"quoted\" \n", {.volume = 1.0 / 3}}};
    EXPECT_EQ(decoded(encoded(settings)), settings);
    EXPECT_EQ(decoded(encoded({})), AudioSettings{});
}

TEST(AudioSettings, AnAbsentOutputIsLeftOut) {
    EXPECT_EQ(encoded({{"a", {}}}), R"({"a":{"muted":false,"volume":1.0,"volumes":{}}})");
}

TEST(AudioSettings, MissingMembersAreDefaultsAndOthersArePassedOver) {
    EXPECT_EQ(decoded(R"({"a":{}})"), (AudioSettings{{"a", {}}}));
    EXPECT_EQ(decoded(R"({"a":{"volume":1,"gain":[true],"muted":null,"outputUID":null}})"),
              (AudioSettings{{"a", {}}}));
    EXPECT_EQ(decoded(R"({"a":{"volumes":{"x":0}}})"),
              (AudioSettings{{"a", {.volumes = {{"x", 0}}}}}));
}

TEST(AudioSettings, AVolumeOutOfRangeIsCut) {
    EXPECT_EQ(decoded(R"({"a":{"volume":-1e300,"volumes":{"x":1e300,"y":-0.5}}})"),
              (AudioSettings{{"a", {.volume = 0, .volumes = {{"x", 1}, {"y", 0}}}}}));
}

TEST(AudioSettings, DamagedDataIsNone) {
    for (const char* text : {
             "",
             "{",
             "[]",
             "null",
             "1",
             R"({"a":1})",
             R"({"a":[]})",
             R"({"a":null})",
             R"({"a":{"volume":true}})",
             R"({"a":{"volume":"1"}})",
             R"({"a":{"volume":1e999}})",
             R"({"a":{"volume":NaN}})",
             R"({"a":{"volumes":[]}})",
             R"({"a":{"volumes":{"x":false}}})",
             R"({"a":{"volumes":{"x":null}}})",
             R"({"a":{"muted":0}})",
             R"({"a":{"muted":"true"}})",
             R"({"a":{"outputUID":1}})",
             R"({"a":{}} trailing)",
             R"({"good":{"volume":0.5},"bad":{"volume":[]}})",
             "{\"\xff\":{}}",
             "\xff\xfe{",
         })
        EXPECT_EQ(decodedAudioSettings(text), std::nullopt) << text;
}

TEST(AudioSettings, DeepNestingIsNoHarm) {
    const std::string deep = R"({"a":)" + std::string(100'000, '[');
    EXPECT_EQ(decodedAudioSettings(deep), std::nullopt);
    const std::string passedOver =
        R"({"a":{"x":)" + std::string(100'000, '[') + std::string(100'000, ']') + "}}";
    EXPECT_EQ(decoded(passedOver), (AudioSettings{{"a", {}}}));
}

TEST(AudioSettings, BytesThatAreNotUTF8AreReplaced) {
    const std::string text =
        encoded({{"/Applications/\xff.app", {.volumes = {{"\xc3", 0.5}}, .outputUID = "u\x80"}}});
    EXPECT_EQ(decoded(text),
              (AudioSettings{{"/Applications/\uFFFD.app",
                              {.volumes = {{"\uFFFD", 0.5}}, .outputUID = "u\uFFFD"}}}));
}

} // namespace
} // namespace tavero
