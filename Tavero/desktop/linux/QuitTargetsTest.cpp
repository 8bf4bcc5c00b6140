#include "desktop/linux/QuitTargets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t session = 50; // starts all apps, and is none

TEST(QuitTargets, AnAppWithoutProcessesHasNone) { EXPECT_THAT(quitTargets({}), IsEmpty()); }

TEST(QuitTargets, HelpersAreEndedByTheirOwnApp) {
    EXPECT_THAT(quitTargets({{102, 101, "/opt/web/helper"}, // in no order
                             {103, 102, "/opt/web/helper"},
                             {101, session, "/opt/web/browser"},
                             {201, session, "/opt/web/browser"}}),
                ElementsAre(101, 201));
}

TEST(QuitTargets, AHelperWhoseParentLeftIsAskedItself) {
    EXPECT_THAT(quitTargets({{101, session, "/usr/bin/app"}, {102, 1, "/usr/bin/app-helper"}}),
                ElementsAre(101, 102));
}

TEST(QuitTargets, ASandboxIsSeenThrough) {
    EXPECT_THAT(quitTargets({{101, session, "/usr/bin/bwrap"},
                             {102, 101, "/usr/bin/bwrap"},
                             {103, 101, "/usr/bin/xdg-dbus-proxy"},
                             {104, 102, "/app/bin/notes"},
                             {105, 104, "/app/bin/notes-helper"}}),
                ElementsAre(104));
}

TEST(QuitTargets, TheRuntimeOfAnAppImageKeepsItsFilesMounted) {
    EXPECT_THAT(quitTargets({{101, session, "/tmp/.mount_PaintX/usr/bin/paint"},
                             {102, 1, "/home/u/Paint.AppImage (deleted)"}}),
                ElementsAre(101));
}

TEST(QuitTargets, AShellIsAskedTogetherWithWhatItWaitsFor) {
    EXPECT_THAT(quitTargets({{101, session, "/usr/bin/dash"},
                             {102, 101, "/opt/ide/bin/java"},
                             {103, 102, "/usr/bin/bash"}}), // a terminal inside the app
                ElementsAre(101, 102));
}

TEST(QuitTargets, NothingButASandboxIsAskedAfterAll) {
    EXPECT_THAT(quitTargets({{101, session, "/usr/bin/bwrap"}, {102, 101, "/usr/bin/bwrap"}}),
                ElementsAre(101));
}

TEST(QuitTargets, AnUnknownProgramIsTheAppItself) {
    EXPECT_THAT(quitTargets({{101, session, ""}, {102, 101, ""}}), ElementsAre(101));
}

TEST(QuitTargets, ParentsInACircleEndTheSearch) { // read while processes came and went
    EXPECT_THAT(quitTargets({{101, 102, "/usr/bin/sh"}, {102, 101, "/usr/bin/sh"}}),
                ElementsAre(101, 102));
}

} // namespace
} // namespace tavero
