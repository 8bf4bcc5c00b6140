#include "settings/Settings.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QVariant>

#include <gtest/gtest.h>

namespace tavero {
namespace {

class SettingsTest : public testing::Test {
  protected:
    void write(const QByteArray& text) {
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(text);
    }

    QTemporaryDir directory;
    QString path = directory.filePath("Tavero.conf");
};

TEST_F(SettingsTest, AnEmptyStoreGivesEveryKeyItsDefault) {
    const Settings settings(path);
    EXPECT_FALSE(settings.get(keys::onboardingDone));
    EXPECT_TRUE(settings.get(keys::openWindowAtLaunch));
    EXPECT_TRUE(settings.get(keys::globalShortcut));
    EXPECT_FALSE(settings.get(keys::showInDock));
    EXPECT_EQ(settings.get(keys::theme), "system");
    EXPECT_EQ(settings.get(keys::settingsTab), "general");
    EXPECT_EQ(settings.get(keys::lastSection), "overview");
    EXPECT_FALSE(settings.find(keys::lastSection));
    EXPECT_EQ(settings.get(keys::refreshSeconds), 1);
    EXPECT_TRUE(settings.get(keys::slowOnBattery));
    EXPECT_EQ(settings.get(keys::navigation), "sidebar");
    EXPECT_EQ(settings.get(keys::overviewLayout), "cards");
    EXPECT_TRUE(settings.get(keys::cardDetails));
    EXPECT_EQ(settings.get(keys::overviewCardOrder), "");
    EXPECT_TRUE(settings.get(keys::overviewCard(Section::disk)));
    EXPECT_EQ(settings.get(keys::temperatureUnit), "celsius");
    EXPECT_FALSE(settings.get(keys::networkBits));
    EXPECT_EQ(settings.get(keys::menuBarStyle), "detailed");
    EXPECT_TRUE(settings.get(keys::menuBarLabels));
    EXPECT_TRUE(settings.get(keys::menuBarSound));
    EXPECT_FALSE(settings.get(keys::menuBarBluetooth));
    EXPECT_TRUE(settings.get(keys::warnUnderStrain));
    EXPECT_EQ(settings.get(keys::dropdownStyle), "cards");
    EXPECT_EQ(settings.get(keys::dropdownMaterial), "glass");
    EXPECT_EQ(settings.get(keys::dropdownTab), "overview");
    for (const auto& key : {keys::notchEnabled, keys::notchValues, keys::notchPeek,
                            keys::notchAlerts, keys::notchLabels})
        EXPECT_TRUE(settings.get(key)) << key.name;
    EXPECT_EQ(settings.get(keys::notchLeft), "cpu");
    EXPECT_EQ(settings.get(keys::notchRight), "memory");
    EXPECT_EQ(settings.get(keys::notchStyle), "gauges");
    EXPECT_EQ(settings.get(keys::notchHomeStats), "cpu,memory,battery");
    EXPECT_EQ(settings.get(keys::insightsDays), 30);
    EXPECT_TRUE(settings.get(keys::keepHistory));
    EXPECT_FALSE(settings.get(keys::quietHours));
    EXPECT_FALSE(settings.find(keys::alertMemory));
    EXPECT_FALSE(settings.find(keys::appAudioSettings));
    EXPECT_FALSE(settings.find(keys::whatsNewSeenVersion));
    EXPECT_FALSE(settings.find(keys::updateFirstSeen("1.2")));
}

TEST_F(SettingsTest, MenuBarItemsAndTheirModesHaveDefaultsPerMetric) {
    const Settings settings(path);
    for (const Metric metric : allMetrics) {
        const bool shown =
            metric != Metric::gpu && metric != Metric::power && metric != Metric::disk;
        EXPECT_EQ(settings.get(keys::menuBarItem(metric)), shown) << rawValue(metric);
        EXPECT_EQ(settings.get(keys::menuBarMode(metric)),
                  metric == Metric::cpu ? "both" : "value");
    }
}

TEST_F(SettingsTest, TheImportantAlertsAreOnByDefault) {
    const Settings settings(path);
    unsigned mask = 0;
    for (std::size_t i = 0; i < allAlertKinds.size(); ++i) {
        EXPECT_EQ(static_cast<std::size_t>(allAlertKinds[i].kind), i);
        if (settings.get(keys::alert(allAlertKinds[i].kind))) mask |= 1u << i;
    }
    EXPECT_EQ(mask, 0xA478u);
    EXPECT_EQ(alertKind("offline"), AlertKind::offline);
    EXPECT_FALSE(alertKind("Offline"));
}

TEST_F(SettingsTest, WhatIsSetIsReadBackByTheNextRun) {
    const Date seen(std::chrono::milliseconds(1'790'000'000'123));
    {
        Settings settings(path);
        settings.set(keys::slowOnBattery, false);
        settings.set(keys::refreshSeconds, std::int64_t{5});
        settings.set(keys::theme, std::string("dark"));
        settings.set(keys::notchHomeStats, std::string("gpu,disk"));
        settings.set(keys::alertMemory, Bytes{0x7b, 0x00, 0xff, 0x7d});
        settings.set(keys::updateFirstSeen("1.2"), seen);
        settings.set(keys::menuBarItem(Metric::gpu), true);
    }
    const Settings settings(path);
    EXPECT_FALSE(settings.get(keys::slowOnBattery));
    EXPECT_EQ(settings.get(keys::refreshSeconds), 5);
    EXPECT_EQ(settings.get(keys::theme), "dark");
    EXPECT_EQ(settings.get(keys::notchHomeStats), "gpu,disk");
    EXPECT_EQ(settings.get(keys::alertMemory), (Bytes{0x7b, 0x00, 0xff, 0x7d}));
    EXPECT_EQ(settings.get(keys::updateFirstSeen("1.2")), seen);
    EXPECT_TRUE(settings.get(keys::menuBarItem(Metric::gpu)));
}

TEST_F(SettingsTest, ValuesOfAnotherTypeReadAsTheDefault) {
    write("[General]\n"
          "slowOnBattery=1\nkeepHistory=no\nglobalShortcut=\nrefreshSeconds=true\n"
          "insightsDays=7.5\nalertMemory=text\n");
    const Settings settings(path);
    EXPECT_FALSE(settings.find(keys::slowOnBattery));
    EXPECT_TRUE(settings.get(keys::slowOnBattery));
    EXPECT_TRUE(settings.get(keys::keepHistory));
    EXPECT_TRUE(settings.get(keys::globalShortcut));
    EXPECT_EQ(settings.get(keys::refreshSeconds), 1);
    EXPECT_EQ(settings.get(keys::insightsDays), 30);
    EXPECT_FALSE(settings.find(keys::alertMemory));
}

TEST_F(SettingsTest, ANumberTooLargeForItsTypeReadsAsTheDefault) {
    write("[General]\nrefreshSeconds=99999999999999999999\n");
    EXPECT_EQ(Settings(path).get(keys::refreshSeconds), 1);
}

TEST_F(SettingsTest, HandWrittenCommasStayOneText) {
    write("[General]\nnotchHomeStats=cpu,disk\n");
    EXPECT_EQ(Settings(path).get(keys::notchHomeStats), "cpu,disk");
}

TEST_F(SettingsTest, AVariablePartIsALevelInTheFile) {
    write("[menuBar]\nbluetooth=true\n");
    EXPECT_TRUE(Settings(path).get(keys::menuBarBluetooth));
}

TEST_F(SettingsTest, AFileOfGarbageGivesDefaultsAndCanBeWrittenAgain) {
    QByteArray garbage("\x7f\x00\xff[[[=\n]=]\\x\n@Variant(\\0\\0)\n", 26);
    for (int i = 0; i < 4096; ++i) garbage.append(static_cast<char>(i * 131 >> 3));
    write(garbage);
    {
        Settings settings(path);
        EXPECT_EQ(settings.get(keys::refreshSeconds), 1);
        EXPECT_TRUE(settings.get(keys::slowOnBattery));
        settings.set(keys::refreshSeconds, std::int64_t{3});
    }
    EXPECT_EQ(Settings(path).get(keys::refreshSeconds), 3);
}

TEST_F(SettingsTest, AnEqualValueNotifiesNobody) {
    Settings settings(path);
    QStringList heard;
    QObject::connect(&settings, &Settings::changed, [&](const QString& name) { heard << name; });
    settings.set(keys::theme, std::string("dark"));
    settings.set(keys::theme, std::string("dark"));
    settings.set(keys::menuBarSound, false);
    EXPECT_EQ(heard, QStringList({"theme", "menuBar.sound"}));
}

} // namespace
} // namespace tavero
