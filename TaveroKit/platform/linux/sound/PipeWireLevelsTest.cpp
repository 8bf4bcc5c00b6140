#include "platform/linux/sound/PipeWireLevels.h"

#include <gtest/gtest.h>
#include <spa/param/props.h>
#include <spa/pod/builder.h>
#include <spa/pod/iter.h>

namespace tavero::PipeWireLevels {

namespace {

const std::vector<float> channels{0.125F, 0.5F};

} // namespace

TEST(PipeWireLevels, WhatIsWrittenIsRead) {
    Memory memory;
    SoundLevel level;
    EXPECT_TRUE(read(props({channels, true}, memory), level));
    EXPECT_EQ(level, (SoundLevel{channels, true}));
}

TEST(PipeWireLevels, WhatIsLeftOutStays) {
    Memory memory;
    SoundLevel level{channels, false};
    EXPECT_FALSE(read(props({std::nullopt, true}, memory), level));
    EXPECT_EQ(level, (SoundLevel{channels, true}));
    EXPECT_TRUE(read(props({std::vector<float>{1}, std::nullopt}, memory), level));
    EXPECT_EQ(level, (SoundLevel{{1}, true}));
}

TEST(PipeWireLevels, ARouteCarriesItsNumbers) {
    Memory memory;
    const auto told = readRoute(route({channels, true}, 3, 6, memory));
    ASSERT_TRUE(told);
    EXPECT_EQ(told->route.index, 3);
    EXPECT_EQ(told->profileDevice, 6);
    EXPECT_EQ(told->route.level, (SoundLevel{channels, true}));
}

TEST(PipeWireLevels, AnotherParameterIsNeither) {
    Memory memory;
    SoundLevel level{channels, true};
    EXPECT_FALSE(readRoute(props({channels, true}, memory)));
    EXPECT_FALSE(readRoute(nullptr));
    EXPECT_FALSE(read(route({channels, true}, 3, 6, memory), level));
    EXPECT_FALSE(read(nullptr, level));
    spa_pod none{};
    EXPECT_FALSE(read(&none, level));
    EXPECT_FALSE(readRoute(&none));
    EXPECT_EQ(level, (SoundLevel{channels, true}));
}

TEST(PipeWireLevels, AVolumeOfAnotherTypeIsIgnored) {
    std::array<std::uint8_t, 256> memory;
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    spa_pod_frame frame{};
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_Props, 0);
    spa_pod_builder_prop(&builder, SPA_PROP_channelVolumes, 0);
    spa_pod_builder_string(&builder, "loud");
    spa_pod_builder_prop(&builder, SPA_PROP_mute, 0);
    spa_pod_builder_int(&builder, 1);
    spa_pod_builder_pop(&builder, &frame);
    SoundLevel level;
    EXPECT_FALSE(read(reinterpret_cast<const spa_pod*>(memory.data()), level));
    EXPECT_EQ(level, SoundLevel{});
}

TEST(PipeWireLevels, TooManyChannelsForTheMemoryGiveNothing) {
    Memory memory;
    EXPECT_FALSE(props({std::vector<float>(1000, 1), std::nullopt}, memory));
}

TEST(PipeWireLevels, OnlyWhatDiffersIsChanged) {
    const SoundLevel before{channels, false};
    EXPECT_FALSE(between(before, {channels, true}).channels);
    EXPECT_EQ(between(before, {channels, true}).isMuted, true);
    EXPECT_FALSE(between(before, {{1, 1}, false}).isMuted);
    EXPECT_TRUE(between(std::nullopt, before).channels);
    EXPECT_EQ(between(std::nullopt, before).isMuted, false);
}

TEST(PipeWireLevels, TheStepsOfASoundCardAreNoDifference) {
    EXPECT_TRUE(isNear({{0.5F}, false}, {{0.503F}, false}));
    EXPECT_FALSE(isNear({{0.5F}, false}, {{0.51F}, false}));
    EXPECT_FALSE(isNear({{0.5F}, false}, {{0.5F}, true}));
    EXPECT_FALSE(isNear({{0.5F}, false}, {{0.5F, 0.5F}, false}));
}

} // namespace tavero::PipeWireLevels
