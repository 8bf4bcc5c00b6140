#include "platform/linux/sound/PipeWireValues.h"

#include <gtest/gtest.h>
#include <spa/utils/dict.h>

#include <array>
#include <vector>

namespace tavero::PipeWireValues {

namespace {

spa_dict dictOf(const std::vector<spa_dict_item>& items) {
    return {.flags = 0, .n_items = static_cast<std::uint32_t>(items.size()), .items = items.data()};
}

} // namespace

TEST(PipeWireValues, ANumberIsAllOfTheTextAndFits) {
    EXPECT_EQ(number<std::uint32_t>("42"), 42U);
    EXPECT_EQ(number<std::int32_t>("-1"), -1);
    EXPECT_EQ(number<std::uint64_t>("18446744073709551615"), UINT64_MAX);
    for (const char* bad : {"", " 42", "42 ", "-1", "0x2a", "4294967296", "4.2", "fourty"})
        EXPECT_FALSE(number<std::uint32_t>(bad)) << bad;
}

TEST(PipeWireValues, TheNameIsFoundInAnyJSONObject) {
    EXPECT_EQ(nameIn(R"({"name":"test.speakers"})"), "test.speakers");
    EXPECT_EQ(nameIn(R"({ "other": [1, {"name": "no"}], "name": "yes" })"), "yes");
    EXPECT_EQ(nameIn(R"({ name = alsa_output.pci })"), ""); // a bare word is no text
    EXPECT_EQ(nameIn(R"({"name":"a\"b\\c"})"), "a\"b\\c");
    EXPECT_EQ(nameIn(withName("a\"b\\c")), "a\"b\\c");
    EXPECT_EQ(nameIn(withName(std::string(4000, 'x'))), std::string(4000, 'x'));
}

TEST(PipeWireValues, BadJSONHasNoName) {
    for (const char* bad : {"", "{", "}", "null", "[]", "{\"name\"", "{\"name\":", "{\"name\":7}",
                            "{\"name\":null}", "{\"name\":{}}", "{\"name\":[\"a\"]}", "\"name\"",
                            "{\"name", "{\"na\\", "{{{{{{{{", "{\"a\":{\"name\":\"x\"}}"})
        EXPECT_EQ(nameIn(bad), "") << bad;
}

TEST(PipeWireValues, ClassesAreKinds) {
    using enum SoundNode::Kind;
    EXPECT_EQ(kindOf("Audio/Sink"), sink);
    EXPECT_EQ(kindOf("Audio/Duplex"), duplex);
    EXPECT_EQ(kindOf("Audio/Source"), source);
    EXPECT_EQ(kindOf("Audio/Source/Virtual"), source);
    EXPECT_EQ(kindOf("Stream/Output/Audio"), playback);
    EXPECT_EQ(kindOf("Stream/Input/Audio"), capture);
    for (const char* none : {"", "Audio", "Video/Source", "Stream/Output/Audio/Internal",
                             "Stream/Input/Audio/Internal", "Audio/Device", "audio/sink"})
        EXPECT_EQ(kindOf(none), SoundNode::Kind::other) << none;
}

TEST(PipeWireValues, ANodeIsDescribedAndWhatIsLeftOutStays) {
    SoundNode node;
    const std::vector<spa_dict_item> first{
        {"media.class", "Audio/Sink"}, {"object.serial", "77"}, {"node.name", "speakers"},
        {"node.virtual", "true"},      {"client.id", "none"},   {"card.profile.device", "6"}};
    spa_dict dict = dictOf(first);
    describe(node, &dict);
    EXPECT_EQ(node.kind, SoundNode::Kind::sink);
    EXPECT_EQ(node.serial, 77U);
    EXPECT_EQ(node.name, "speakers");
    EXPECT_TRUE(node.isVirtual);
    EXPECT_FALSE(node.client);
    EXPECT_EQ(node.profileDevice, 6);
    const std::vector<spa_dict_item> second{{"node.description", "Speakers"}};
    dict = dictOf(second);
    describe(node, &dict);
    describe(node, nullptr);
    EXPECT_EQ(node.description, "Speakers");
    EXPECT_EQ(node.name, "speakers");
    EXPECT_EQ(node.serial, 77U);
}

} // namespace tavero::PipeWireValues
