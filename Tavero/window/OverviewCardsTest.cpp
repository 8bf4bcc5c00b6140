#include "window/OverviewCards.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

namespace tavero {
namespace {

std::string names(const std::vector<Section>& sections) {
    std::string names;
    for (const Section section : sections) names += std::string(rawValue(section)) + ' ';
    return names;
}

TEST(OverviewCards, WithoutAnOrderTheDefaultOneIsInForce) {
    EXPECT_EQ(names(orderedCards("")), "cpu memory gpu power disk network ");
}

TEST(OverviewCards, WhatTheOrderDoesNotNameComesAfterInTheDefaultOrder) {
    EXPECT_EQ(names(orderedCards("network,gpu")), "network gpu cpu memory power disk ");
}

TEST(OverviewCards, NamesWithoutACardAreIgnored) {
    EXPECT_EQ(names(orderedCards("sound,network,,overview,temperature,Gpu, gpu,nonsense,")),
              "network cpu memory gpu power disk ");
}

TEST(OverviewCards, ANameThatComesTwiceCountsOnce) {
    EXPECT_EQ(names(orderedCards("disk,disk,cpu,disk")), "disk cpu memory gpu power network ");
}

TEST(OverviewCards, HiddenCardsAreLeftOut) {
    QTemporaryDir directory;
    Settings settings(directory.filePath("Tavero.conf"));
    settings.set<std::string>(keys::overviewCardOrder, "disk,cpu");
    settings.set(keys::overviewCard(Section::memory), false);
    settings.set(keys::overviewCard(Section::gpu), true);
    EXPECT_EQ(names(visibleCards(settings)), "disk cpu gpu power network ");
}

TEST(OverviewCards, EveryMachineHasACPUAndMemory) {
    EXPECT_TRUE(hasSource(Section::cpu, {}));
    EXPECT_TRUE(hasSource(Section::memory, {}));
    for (const Section section : {Section::gpu, Section::power, Section::disk, Section::network,
                                  Section::sound, Section::overview})
        EXPECT_FALSE(hasSource(section, {})) << rawValue(section);
}

TEST(OverviewCards, AnyFigureOfASourceTellsThatItIsThere) {
    EXPECT_TRUE(hasSource(Section::gpu, {.gpu = GPUSnapshot{}}));
    EXPECT_TRUE(hasSource(Section::power, {.battery = BatterySnapshot{}}));
    EXPECT_TRUE(hasSource(Section::power, {.systemWatts = 0.0}));
    EXPECT_TRUE(hasSource(Section::disk, {.diskCapacity = 0}));
    EXPECT_TRUE(hasSource(Section::disk, {.diskReadTotal = 1}));
    EXPECT_TRUE(hasSource(Section::disk, {.diskWrittenTotal = 1}));
    EXPECT_TRUE(hasSource(Section::network, {.networkInTotal = 1}));
    EXPECT_TRUE(hasSource(Section::network, {.networkOutTotal = 1}));
}

} // namespace
} // namespace tavero
