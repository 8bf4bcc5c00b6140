#include "menubar/MenuBarItemMode.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tavero {
namespace {

TEST(MenuBarItemMode, TheCPUShowsBothAndTheOthersTheirValueUnlessTheUserChose) {
    const QTemporaryDir directory;
    Settings settings(directory.filePath("Tavero.conf"));
    for (const Metric metric : allMetrics)
        EXPECT_EQ(menuBarMode(metric, settings),
                  metric == Metric::cpu ? MenuBarItemMode::both : MenuBarItemMode::value);
    settings.set<std::string>(keys::menuBarMode(Metric::disk), "graph");
    EXPECT_EQ(menuBarMode(Metric::disk, settings), MenuBarItemMode::graph);
}

TEST(MenuBarItemMode, AnUnknownTextCountsAsTheDefault) {
    const QTemporaryDir directory;
    Settings settings(directory.filePath("Tavero.conf"));
    for (const char* text : {"", "Value", "pie"}) {
        settings.set<std::string>(keys::menuBarMode(Metric::cpu), text);
        settings.set<std::string>(keys::menuBarMode(Metric::gpu), text);
        EXPECT_EQ(menuBarMode(Metric::cpu, settings), MenuBarItemMode::both);
        EXPECT_EQ(menuBarMode(Metric::gpu, settings), MenuBarItemMode::value);
    }
}

TEST(MenuBarItemMode, EveryModeIsFoundByItsName) {
    for (const auto mode : {MenuBarItemMode::value, MenuBarItemMode::graph, MenuBarItemMode::both})
        EXPECT_EQ(menuBarItemModeNamed(rawValue(mode)), mode);
    EXPECT_FALSE(menuBarItemModeNamed("none"));
}

} // namespace
} // namespace tavero
