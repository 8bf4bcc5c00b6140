#include "alerts/AlertSettings.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>

namespace tavero {
namespace {

class AlertSettingsTest : public testing::Test {
  protected:
    QTemporaryDir folder;
    Settings settings{folder.filePath("settings.ini")};
    AlertSettings pane{settings};

    const AlertGroup& group(std::string_view id) {
        for (const AlertGroup& group : AlertGroup::all())
            if (group.id == id) return group;
        throw std::runtime_error("no such group");
    }
};

TEST_F(AlertSettingsTest, ANewUserHearsOnlyOfWhatIsImportant) {
    EXPECT_EQ(pane.preset(), AlertPreset::important);
    for (const AlertKindEntry& kind : allAlertKinds)
        EXPECT_EQ(settings.find(keys::alert(kind.kind)), std::nullopt) << kind.rawValue;
}

TEST_F(AlertSettingsTest, EveryKindStandsInExactlyOneGroup) {
    std::map<AlertKind, int> seen;
    for (const AlertGroup& group : AlertGroup::all())
        for (const AlertItem& item : group.items) ++seen[item.kind];
    EXPECT_EQ(seen.size(), allAlertKinds.size());
    for (const auto& [kind, times] : seen) EXPECT_EQ(times, 1) << rawValue(kind);
}

TEST_F(AlertSettingsTest, TheImportantOnesAreThoseOnByDefault) {
    std::uint32_t mask = 0;
    for (const AlertKindEntry& kind : allAlertKinds)
        if (kind.onByDefault) mask |= 1u << static_cast<unsigned>(kind.kind);
    EXPECT_EQ(mask, 0xA478u);
}

TEST_F(AlertSettingsTest, APresetWritesEveryKey) {
    for (const AlertPreset preset :
         {AlertPreset::everything, AlertPreset::important, AlertPreset::never}) {
        pane.choose(preset);
        EXPECT_EQ(pane.preset(), preset);
        for (const AlertKindEntry& kind : allAlertKinds)
            EXPECT_EQ(settings.find(keys::alert(kind.kind)),
                      std::optional(preset == AlertPreset::everything ||
                                    (preset == AlertPreset::important && kind.onByDefault)));
    }
}

TEST_F(AlertSettingsTest, SixteenTurnedOnByHandAreEverything) {
    for (const AlertKindEntry& kind : allAlertKinds) pane.set(kind.kind, true);
    EXPECT_EQ(pane.preset(), AlertPreset::everything);
    EXPECT_EQ(note(pane.preset()), "Every alert below is on.");
}

TEST_F(AlertSettingsTest, OneMoreThanTheImportantOnesIsAMixOfOnesOwn) {
    pane.set(AlertKind::charged, true);
    EXPECT_EQ(pane.preset(), AlertPreset::custom);
    EXPECT_EQ(note(pane.preset()), "Your own mix. Open a group to see each alert.");
    pane.set(AlertKind::charged, false);
    EXPECT_EQ(pane.preset(), AlertPreset::important);
}

TEST_F(AlertSettingsTest, TurningTheLastOneOffIsNever) {
    pane.choose(AlertPreset::never);
    pane.set(AlertKind::diskFull, true);
    EXPECT_EQ(pane.preset(), AlertPreset::custom);
    pane.set(AlertKind::diskFull, false);
    EXPECT_EQ(pane.preset(), AlertPreset::never);
}

TEST_F(AlertSettingsTest, AGroupWithOneOfFiveIsOnAndTurnsThemAllOffAndOn) {
    const AlertGroup& apps = group("apps");
    EXPECT_TRUE(pane.isOn(apps)); // crashes are on by default
    pane.set(apps, false);
    EXPECT_FALSE(pane.isOn(apps));
    for (const AlertItem& item : apps.items) EXPECT_FALSE(settings.get(keys::alert(item.kind)));
    pane.set(apps, true);
    for (const AlertItem& item : apps.items) EXPECT_TRUE(settings.get(keys::alert(item.kind)));
    EXPECT_EQ(apps.items.size(), 5u);
}

TEST_F(AlertSettingsTest, TheLimitOfHeatReadsInTheUsersUnit) {
    const AlertItem& hot = group("mac").items[2];
    EXPECT_EQ(hot.kind, AlertKind::hotMac);
    EXPECT_EQ(detail(hot, {}), "CPU above 95°C");
    EXPECT_EQ(detail(hot, {.fahrenheit = true}), "CPU above 203°F");
    EXPECT_EQ(detail(group("mac").items[0], {}), "When it turns high");
}

TEST_F(AlertSettingsTest, AMixOfOnesOwnIsNoChoice) {
    EXPECT_EQ(label(AlertPreset::custom), "");
    pane.choose(AlertPreset::custom);
    EXPECT_EQ(pane.preset(), AlertPreset::important);
    EXPECT_EQ(label(AlertPreset::important), "Only important");
}

TEST_F(AlertSettingsTest, AValueThatIsNoBooleanCountsAsTheDefault) {
    settings.set(Key<std::string>{"alert.diskFull", ""}, std::string("maybe"));
    EXPECT_TRUE(AlertSettings(settings).isOn(AlertKind::diskFull));
}

} // namespace
} // namespace tavero
