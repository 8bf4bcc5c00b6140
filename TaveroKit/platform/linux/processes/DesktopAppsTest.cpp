#include "platform/linux/processes/DesktopApps.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

DesktopEntry entry(const std::string& id, const std::string& program) {
    return {.id = id, .file = "/apps/" + id + ".desktop", .name = id, .program = program};
}

std::string idOf(const DesktopEntry* entry) { return entry ? entry->id : "none"; }

TEST(DesktopApps, AreFoundByIdFileAndSnap) {
    DesktopEntry notes = entry("notes_notes", "/snap/bin/notes");
    notes.snap = "notes";
    const DesktopApps apps({entry("maps", "/usr/bin/maps"), notes});
    EXPECT_EQ(idOf(apps.withId("maps")), "maps");
    EXPECT_EQ(idOf(apps.withId("Maps")), "none");
    EXPECT_EQ(idOf(apps.withFile("/apps/maps.desktop")), "maps");
    EXPECT_EQ(idOf(apps.fromSnap("notes")), "notes_notes");
    EXPECT_EQ(idOf(apps.fromSnap("")), "none");
}

TEST(DesktopApps, OfTwoWithOneIdTheFirstCounts) {
    DesktopEntry own = entry("maps", "/home/u/maps");
    const DesktopApps apps({own, entry("maps", "/usr/bin/maps")});
    EXPECT_EQ(apps.withId("maps")->program, "/home/u/maps");
    EXPECT_EQ(idOf(apps.withProgram("/usr/bin/x")), "none");
}

TEST(DesktopApps, AProgramIsFoundByPathThenFolderThenName) {
    const DesktopApps apps({entry("web", "/opt/web/web"), entry("other", "/usr/bin/other")});
    EXPECT_EQ(idOf(apps.withProgram("/opt/web/web")), "web");
    EXPECT_EQ(idOf(apps.withProgram("/opt/web/lib/helper")), "web");
    EXPECT_EQ(idOf(apps.withProgram("/opt/web/lib/other")), "web");
    EXPECT_EQ(idOf(apps.withProgram("/usr/lib/other/other")), "other");
    EXPECT_EQ(idOf(apps.withProgram("/opt/webby/x")), "none");
    EXPECT_EQ(idOf(apps.withProgram("/usr/bin/x")), "none");
    EXPECT_EQ(idOf(apps.withProgram("")), "none");
}

TEST(DesktopApps, AFolderOfManyProgramsIsNobodys) {
    for (const std::string folder :
         {"/usr/bin", "/usr/local/bin", "/usr/lib", "/usr/lib/x86_64-linux-gnu", "/usr/libexec",
          "/home/u", "/home/u/.local/bin", "/opt", "/usr/lib/jvm/java-17/bin", "/snap/bin", "",
          "/home/u/Downloads", "/tmp"}) {
        const DesktopApps apps({entry("app", folder + "/app")});
        EXPECT_EQ(idOf(apps.withProgram(folder + "/other")), "none") << folder;
        EXPECT_EQ(idOf(apps.withProgram(folder + "/app")), "app") << folder;
    }
}

TEST(DesktopApps, ABinFolderInsideAnAppsFolderIsTheApps) {
    const DesktopApps apps({entry("ide", "/opt/ide/bin/ide.sh")});
    EXPECT_EQ(idOf(apps.withProgram("/opt/ide/jbr/bin/java")), "ide");
}

TEST(DesktopApps, ThePlainestEntryOfAProgramIsTheApp) {
    DesktopEntry hidden = entry("a", "/opt/x/x"), writer = entry("b", "/opt/x/x"),
                 plain = entry("plain", "/opt/x/x");
    hidden.isShown = false;
    writer.arguments = 1;
    const DesktopApps apps({hidden, writer, plain});
    EXPECT_EQ(idOf(apps.withProgram("/opt/x/x")), "plain");
}

TEST(DesktopApps, AnAppThatRunsInATerminalIsNotFoundByItsProgram) {
    DesktopEntry top = entry("top", "/usr/bin/top");
    top.inTerminal = true;
    const DesktopApps apps({top});
    EXPECT_EQ(idOf(apps.withProgram("/usr/bin/top")), "none");
    EXPECT_EQ(idOf(apps.withId("top")), "top");
}

TEST(DesktopApps, AnInterpreterIsNotFoundByItsName) {
    const DesktopApps apps({entry("shell", "/opt/y/bash")});
    EXPECT_EQ(idOf(apps.withProgram("/usr/bin/bash")), "none");
}

TEST(DesktopApps, ACopyOrMoveKeepsFindingItsEntries) {
    DesktopApps apps({entry("maps", "/usr/bin/maps")});
    const DesktopApps copy = apps;
    apps = DesktopApps();
    EXPECT_EQ(idOf(copy.withProgram("/usr/bin/maps")), "maps");
    EXPECT_EQ(idOf(apps.withProgram("/usr/bin/maps")), "none");
}

} // namespace
} // namespace tavero
