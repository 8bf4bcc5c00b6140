#include "platform/linux/processes/DesktopFolders.h"

#include "platform/linux/TemporaryTree.h"
#include "platform/linux/processes/LinuxBundles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace tavero {
namespace {

using testing::ElementsAre;

std::string text(const std::string& name, const std::string& rest = "") {
    return "[Desktop Entry]\nType=Application\nName=" + name + "\n" + rest;
}

class DesktopFoldersTest : public testing::Test {
  protected:
    std::string path(const std::string& name) const { return (tree.root() / name).string(); }
    DesktopFolders folders() const {
        return DesktopFolders({path("own"), path("all"), path("none")}, "", {path("bin")});
    }
    // Makes the folder's change visible whatever the resolution of the file system's times.
    void age(const std::string& name) const {
        std::filesystem::last_write_time(tree.root() / name, std::filesystem::file_time_type());
    }

    TemporaryTree tree{{"all/org.x.Maps.desktop", text("Maps", "Icon=maps\nExec=maps\n")},
                       {"all/org.x.Mail.desktop", text("Mail")},
                       {"own/org.x.Mail.desktop", text("My Mail")},
                       {"all/kde/notes.desktop", text("Notes")},
                       {"all/readme.txt", "no entry"},
                       {"all/broken.desktop", "no entry"},
                       {"real/maps", ""}};
};

TEST_F(DesktopFoldersTest, TheFirstFolderWithAnIdCounts) {
    const DesktopFolders desktop = folders();
    EXPECT_EQ(desktop.apps().withId("org.x.Mail")->name, "My Mail");
    EXPECT_EQ(desktop.apps().withId("org.x.Maps")->file, path("all/org.x.Maps.desktop"));
    EXPECT_FALSE(desktop.apps().withId("broken"));
    EXPECT_FALSE(desktop.apps().withId("readme"));
}

TEST_F(DesktopFoldersTest, AFolderInsideBecomesPartOfTheId) {
    EXPECT_EQ(folders().apps().withId("kde-notes")->name, "Notes");
}

TEST_F(DesktopFoldersTest, ProgramsAreSearchedForAndLinksFollowed) {
    tree.folder("bin");
    tree.link("bin/maps", "../real/maps");
    const DesktopFolders desktop = folders();
    const DesktopEntry* maps = desktop.apps().withId("org.x.Maps");
    EXPECT_EQ(maps->program, path("bin/maps"));
    EXPECT_EQ(desktop.apps().withProgram(maps->resolvedProgram), maps);
    EXPECT_EQ(desktop.apps().withProgram(path("bin/maps")), maps);
}

TEST_F(DesktopFoldersTest, NamesAndIconsAreThoseOfTheEntry) {
    const auto desktop = std::make_shared<DesktopFolders>(folders());
    LinuxBundles bundles(desktop);
    EXPECT_EQ(bundles.names(path("all/org.x.Maps.desktop")), (BundleNames{.name = "Maps"}));
    EXPECT_FALSE(bundles.names("/home/u/App.AppImage"));
    EXPECT_EQ(desktop->icon(path("all/org.x.Maps.desktop")), "maps");
    EXPECT_FALSE(desktop->icon(path("own/org.x.Mail.desktop")));
    EXPECT_FALSE(desktop->icon(path("none")));
}

TEST_F(DesktopFoldersTest, NamesAreInTheLanguageAskedFor) {
    tree.write("all/org.x.Maps.desktop", text("Maps", "Name[de]=Karten\n"));
    const DesktopFolders desktop({path("all")}, "de_DE.UTF-8");
    EXPECT_EQ(desktop.apps().withId("org.x.Maps")->name, "Karten");
    EXPECT_EQ(desktop.apps().withId("org.x.Mail")->name, "Mail");
    EXPECT_EQ(folders().apps().withId("org.x.Maps")->name, "Maps");
}

TEST_F(DesktopFoldersTest, AChangedFolderIsReadAgain) {
    for (const char* folder : {"all", "all/kde", "own"}) age(folder);
    DesktopFolders desktop = folders();
    tree.write("all/new.desktop", text("New"));
    EXPECT_FALSE(desktop.apps().withId("new"));
    desktop.refresh();
    EXPECT_TRUE(desktop.apps().withId("new"));

    age("all/kde");
    desktop.refresh();
    tree.remove("all/kde/notes.desktop");
    desktop.refresh();
    EXPECT_FALSE(desktop.apps().withId("kde-notes"));
}

TEST_F(DesktopFoldersTest, AFolderThatAppearsLaterIsRead) {
    DesktopFolders desktop = folders();
    tree.write("none/late.desktop", text("Late"));
    desktop.refresh();
    EXPECT_TRUE(desktop.apps().withId("late"));
}

TEST_F(DesktopFoldersTest, FoldersThatContainThemselvesEnd) {
    tree.link("all/loop", "../all");
    EXPECT_TRUE(folders().apps().withId("org.x.Maps"));
}

TEST(ApplicationFolders, FollowTheVariablesOrElseTheConvention) {
    EXPECT_THAT(applicationFolders("/home/u", "", ""),
                ElementsAre("/home/u/.local/share/applications",
                            "/home/u/.local/share/flatpak/exports/share/applications",
                            "/usr/local/share/applications", "/usr/share/applications",
                            "/var/lib/flatpak/exports/share/applications",
                            "/var/lib/snapd/desktop/applications"));
    EXPECT_THAT(applicationFolders("/home/u", "/data", "/a/:relative::/var/lib/snapd/desktop"),
                ElementsAre("/data/applications", "/data/flatpak/exports/share/applications",
                            "/a/applications", "/var/lib/snapd/desktop/applications",
                            "/var/lib/flatpak/exports/share/applications"));
    EXPECT_THAT(applicationFolders("", "", "x"),
                ElementsAre("/var/lib/flatpak/exports/share/applications",
                            "/var/lib/snapd/desktop/applications"));
}

TEST(LocaleOfMessages, IsThatOfTheStrongestVariable) {
    EXPECT_EQ(localeOfMessages("a", "b", "c"), "a");
    EXPECT_EQ(localeOfMessages("", "b", "c"), "b");
    EXPECT_EQ(localeOfMessages("", "", "c"), "c");
    EXPECT_EQ(localeOfMessages("", "", ""), "");
}

} // namespace
} // namespace tavero
