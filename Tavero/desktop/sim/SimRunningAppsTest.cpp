#include "desktop/sim/SimRunningApps.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

const std::string notes = "/Applications/Notes.app";

TEST(SimRunningApps, AnAppThatDoesNotRunIsNotAsked) {
    SimRunningApps apps;
    EXPECT_FALSE(apps.askToQuit(notes));
    EXPECT_TRUE(apps.asked.empty());
}

TEST(SimRunningApps, AnAppThatObeysEndsAndCannotBeAskedAgain) {
    SimRunningApps apps;
    apps.running = {notes};
    const auto haveEnded = apps.askToQuit(notes);
    ASSERT_TRUE(haveEnded);
    EXPECT_TRUE((*haveEnded)());
    EXPECT_FALSE(apps.askToQuit(notes));
    EXPECT_EQ(apps.asked, std::vector{notes});
}

TEST(SimRunningApps, AnAppThatStaysEndsWhenItIsSaidTo) {
    SimRunningApps apps;
    apps.running = {notes};
    apps.obeys = false;
    const auto haveEnded = apps.askToQuit(notes);
    ASSERT_TRUE(haveEnded);
    EXPECT_FALSE((*haveEnded)());
    apps.running.clear();
    EXPECT_TRUE((*haveEnded)());
}

} // namespace
} // namespace tavero
