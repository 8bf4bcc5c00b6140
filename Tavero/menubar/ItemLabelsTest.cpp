#include "menubar/ItemLabels.h"

#include "menubar/ExtraMenuBarItem.h"
#include "menubar/test/Samples.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

namespace tavero {
namespace {

const Strain memoryStrain{"Memory 93%", Metric::memory, "93%"};

ItemContent label(Metric metric, const std::optional<Strain>& strain,
                  const std::optional<LiveSnapshot>& snapshot) {
    return metricItemLabel(metric, MenuBarItemMode::value, strain, snapshot, {}, {});
}

TEST(MetricItemLabel, BeforeTheFirstSampleItReadsTheMetricsTitle) {
    const ItemContent content = label(Metric::memory, {}, {});
    EXPECT_EQ(content, ItemContent(TitleContent{Metric::memory}));
    EXPECT_EQ(spokenText(content), "Memory");
}

TEST(MetricItemLabel, TheMetricUnderStrainWarnsWithItsBareFigureAndTheOthersDoNot) {
    const ItemContent content = label(Metric::memory, memoryStrain, laptopSnapshot());
    EXPECT_EQ(content, ItemContent(Strain{"93%", Metric::memory, "93%"}));
    EXPECT_EQ(spokenText(content), "Under strain: 93%");
    EXPECT_EQ(spokenText(label(Metric::cpu, memoryStrain, laptopSnapshot())), "CPU 47%");
}

TEST(MenuBarLabel, ItIsTheMarkWithADotWhileAnUpdateIsReady) {
    EXPECT_EQ(menuBarLabel({}, true, false), ItemContent(MarkContent{}));
    EXPECT_EQ(spokenText(menuBarLabel({}, true, false)), "Tavero");
    EXPECT_EQ(spokenText(menuBarLabel({}, true, true)), "Tavero, update ready");
}

TEST(MenuBarLabel, WhereStrainShowsItReadsWithTheNameOfTheMetric) {
    EXPECT_EQ(menuBarLabel(memoryStrain, true, true), ItemContent(memoryStrain));
    EXPECT_EQ(spokenText(menuBarLabel(memoryStrain, true, true)), "Under strain: Memory 93%");
    EXPECT_EQ(menuBarLabel(memoryStrain, false, true), ItemContent(MarkContent{true}));
}

TEST(MenuBarLabel, StrainShowsOnTheMainItemInCompactStyleUnlessTheUserDoesNotWantIt) {
    const QTemporaryDir directory;
    Settings settings(directory.filePath("Tavero.conf"));
    EXPECT_FALSE(strainShowsOnTaveroItem(settings)) << "the style is detailed by default";
    settings.set<std::string>(keys::menuBarStyle, "compact");
    EXPECT_TRUE(strainShowsOnTaveroItem(settings)) << "a key that was never written counts";
    settings.set(keys::warnUnderStrain, false);
    EXPECT_FALSE(strainShowsOnTaveroItem(settings));
}

TEST(SoundItem, ItsPictureFollowsTheVolume) {
    const auto symbol = [](SoundSnapshot sound) {
        return ExtraMenuBarItem::soundSymbol(std::optional(std::move(sound)));
    };
    EXPECT_EQ(ExtraMenuBarItem::soundSymbol(std::nullopt), "speaker.wave.2.fill");
    EXPECT_EQ(symbol({.volume = 0.9, .isMuted = true}), "speaker.slash.fill");
    EXPECT_EQ(symbol({}), "speaker.wave.3.fill");
    EXPECT_EQ(symbol({.isMuted = true}), "speaker.slash.fill");
    EXPECT_EQ(symbol({.volume = 0}), "speaker.slash.fill");
    EXPECT_EQ(symbol({.volume = 0.01}), "speaker.wave.1.fill");
    EXPECT_EQ(symbol({.volume = 0.339}), "speaker.wave.1.fill");
    EXPECT_EQ(symbol({.volume = 0.34}), "speaker.wave.2.fill");
    EXPECT_EQ(symbol({.volume = 0.669}), "speaker.wave.2.fill");
    EXPECT_EQ(symbol({.volume = 0.67}), "speaker.wave.3.fill");
    EXPECT_EQ(symbol({.volume = 1}), "speaker.wave.3.fill");
    EXPECT_EQ(symbol({.volume = std::nan("")}), "speaker.wave.3.fill");
    EXPECT_EQ(spokenText(SoundContent{}), "Sound");
}

TEST(BluetoothItem, TheDeviceThatWillBeEmptyFirstShowsAndTheFirstOnATie) {
    const BluetoothBattery mouse{"Mouse", "computermouse", 80};
    const BluetoothBattery earbuds{"Earbuds", "airpods", 40};
    const BluetoothBattery keyboard{"Keyboard", "keyboard", 40};
    EXPECT_EQ(ExtraMenuBarItem::lowest({mouse, earbuds, keyboard}), earbuds);
    EXPECT_FALSE(ExtraMenuBarItem::lowest({}));
    EXPECT_EQ(spokenText(BluetoothContent{earbuds}), "Earbuds battery 40 percent");
    EXPECT_EQ(spokenText(BluetoothContent{}), "Bluetooth, nothing connected");
}

} // namespace
} // namespace tavero
