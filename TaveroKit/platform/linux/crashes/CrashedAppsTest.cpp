#include "platform/linux/crashes/CrashedApps.h"

#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

class CrashedAppsTest : public testing::Test {
  protected:
    TemporaryTree tree{
        {"apps/org.example.Editor.desktop",
         "[Desktop Entry]\nType=Application\nName=Text Editor\nExec=/usr/bin/editor %U\n"},
        {"apps/org.example.Mail.desktop",
         "[Desktop Entry]\nType=Application\nName=Mail\nExec=/opt/mail/start\n"}};
    CrashedApps apps{{(tree.root() / "apps").string()}};
    using Report = std::optional<CrashReport>;
};

TEST_F(CrashedAppsTest, AnAppIsCalledAsItIsListed) {
    EXPECT_EQ(apps.report({.program = "/usr/bin/editor"}),
              Report({"Text Editor", "org.example.Editor"}));
    EXPECT_EQ(apps.report({.program = "editor"}), Report({"Text Editor", "org.example.Editor"}));
}

TEST_F(CrashedAppsTest, AHelperBelongsToTheAppOfItsUnit) {
    EXPECT_EQ(apps.report({.program = "/usr/libexec/web-process",
                           .cgroup = "/user.slice/user-1000.slice/user@1000.service/app.slice/"
                                     "app-gnome-org.example.Mail-4711.scope"}),
              Report({"Mail", "org.example.Mail"}));
}

TEST_F(CrashedAppsTest, AToolIsCalledByItsProgramAndHasNoId) {
    EXPECT_EQ(apps.report({.program = "/home/ada/bin/simulate"}),
              Report({"simulate", std::nullopt}));
    EXPECT_EQ(apps.report({.program = "simulate"}), Report({"simulate", std::nullopt}));
}

TEST_F(CrashedAppsTest, APartOfTheSystemMeansNothingToTheUser) {
    EXPECT_EQ(apps.report({.program = "/usr/lib/systemd/systemd-oomd",
                           .cgroup = "/system.slice/systemd-oomd.service"}),
              std::nullopt);
}

TEST_F(CrashedAppsTest, AnAppThatWasInstalledSinceIsKnown) {
    EXPECT_EQ(apps.report({.program = "/usr/bin/paint"})->appName, "paint");
    tree.write("apps/org.example.Paint.desktop",
               "[Desktop Entry]\nType=Application\nName=Paint Box\nExec=/usr/bin/paint\n");
    EXPECT_EQ(apps.report({.program = "/usr/bin/paint"})->appName, "Paint Box");
}

TEST_F(CrashedAppsTest, AnyBytesGiveAReadableNameOrNone) {
    EXPECT_EQ(apps.report({.program = "bad\xff"})->appName, "bad\xEF\xBF\xBD");
    EXPECT_EQ(apps.report({}), std::nullopt);
}

} // namespace
} // namespace tavero
