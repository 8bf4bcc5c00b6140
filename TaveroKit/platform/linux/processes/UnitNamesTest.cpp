#include "platform/linux/processes/UnitNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavero {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(UnitNames, EscapesBecomeTheirBytes) {
    EXPECT_EQ(unescapeUnitName("google\\x2dchrome"), "google-chrome");
    EXPECT_EQ(unescapeUnitName("a\\x5cb"), "a\\b");
    EXPECT_EQ(unescapeUnitName("\\xc3\\xA9"), "é");
    EXPECT_EQ(unescapeUnitName("plain"), "plain");
    EXPECT_EQ(unescapeUnitName(""), "");
}

TEST(UnitNames, WhatIsNoEscapeStays) {
    for (const char* text : {"a\\xzzb", "a\\x2", "a\\x", "a\\", "\\\\", "\\x2g", "\\y20", "\\X2d"})
        EXPECT_EQ(unescapeUnitName(text), text);
}

TEST(UnitNames, WhatAnEscapeGaveIsNotReadAgain) {
    EXPECT_EQ(unescapeUnitName("\\x5cx2d"), "\\x2d");
}

TEST(UnitNames, ScopesHaveARandomPartAndMayHaveALauncher) {
    EXPECT_THAT(appIdCandidates("app-org.kde.kate-8f2a.scope"), ElementsAre("org.kde.kate"));
    EXPECT_THAT(appIdCandidates("app-gnome-org.gnome.Maps-2211.scope"),
                ElementsAre("gnome-org.gnome.Maps", "org.gnome.Maps"));
    EXPECT_THAT(appIdCandidates("app-gnome-google\\x2dchrome-71.scope"),
                ElementsAre("gnome-google-chrome", "google-chrome"));
    EXPECT_THAT(appIdCandidates("app-gnome-google-chrome-71.scope"), Contains("google-chrome"));
    EXPECT_THAT(appIdCandidates("app-foo.scope"), ElementsAre("foo"));
}

TEST(UnitNames, ServicesMayHaveAnInstance) {
    EXPECT_THAT(appIdCandidates("app-org.kde.discover@autostart.service"),
                ElementsAre("org.kde.discover"));
    EXPECT_THAT(appIdCandidates("app-org.kde.kate@1f.service"), ElementsAre("org.kde.kate"));
    EXPECT_THAT(appIdCandidates("app-firefox.service"), ElementsAre("firefox"));
    EXPECT_THAT(appIdCandidates("app-firefox-99.service"), Contains("firefox"));
}

TEST(UnitNames, SlicesAndOlderFormsAreKnownToo) {
    EXPECT_THAT(appIdCandidates("app-org.gnome.Terminal.slice"), ElementsAre("org.gnome.Terminal"));
    EXPECT_THAT(appIdCandidates("gnome-launched-org.gnome.Maps.desktop-77.scope"),
                ElementsAre("org.gnome.Maps"));
    EXPECT_THAT(appIdCandidates("apps-org.kde.kate-1.scope"), ElementsAre("org.kde.kate"));
    EXPECT_THAT(appIdCandidates("flatpak-org.x.Y-1.scope"), ElementsAre("org.x.Y"));
}

TEST(UnitNames, ABusNameFollowsTheAddressOfWhoAsked) {
    EXPECT_THAT(appIdCandidates("dbus-:1.2-org.gnome.Nautilus@0.service"),
                ElementsAre("org.gnome.Nautilus"));
    EXPECT_THAT(appIdCandidates("dbus-org.freedesktop.hostname1.service"),
                ElementsAre("org.freedesktop.hostname1"));
}

TEST(UnitNames, OtherUnitsAreNoApps) {
    for (const char* unit :
         {"", "-", "app", "app-", "app-.scope", "app-x", "session-2.scope", "cron.service",
          "user@1000.service", "dbus-:1.2.service", "dbus-:.scope", "app.slice", "dbus-.service"})
        EXPECT_THAT(appIdCandidates(unit), testing::Not(Contains(""))) << unit;
    EXPECT_THAT(appIdCandidates("session-2.scope"), IsEmpty());
    EXPECT_THAT(appIdCandidates("app.slice"), IsEmpty());
    EXPECT_THAT(appIdCandidates("app-.scope"), IsEmpty());
}

TEST(UnitNames, ThousandsOfDashesGiveAFewCandidates) {
    EXPECT_LE(appIdCandidates("app-" + std::string(5000, '-') + "x.scope").size(), 8u);
    std::string words;
    for (int i = 0; i < 1000; ++i) words += "-w" + std::to_string(i);
    EXPECT_EQ(appIdCandidates("app" + words + ".scope").size(), 8u);
}

TEST(UnitNames, ASnapsUuidIsMatchedExactly) {
    const SnapUnit scope =
        snapUnit("snap.my-notes.notes-cli-3b241101-e2bb-4255-8caf-4136c566a962.scope");
    EXPECT_EQ(scope.name, "my-notes");
    EXPECT_EQ(scope.app, "notes-cli");
    EXPECT_EQ(snapUnit("snap.lxd.daemon.service").app, "daemon");
    EXPECT_EQ(snapUnit("snap.a.b-3b241101-e2bb-4255-8caf-4136c566a96.scope").app,
              "b-3b241101-e2bb-4255-8caf-4136c566a96");
    EXPECT_EQ(snapUnit("snapd.service").name, "");
    EXPECT_EQ(snapUnit("snap.x.service").name, "");
    EXPECT_EQ(snapUnit("snap.x.y.mount").name, "");
}

TEST(UnitNames, AFlatpaksUnitIsFoundAnywhereInAPath) {
    EXPECT_EQ(flatpakOfControlGroup("/user.slice/app.slice/app-flatpak-org.x.Y-81.scope"),
              "org.x.Y");
    EXPECT_EQ(flatpakOfControlGroup("/app-flatpak-org.a\\x2db.C-81.scope/inner"), "org.a-b.C");
    for (const char* path :
         {"", "/", "/app-flatpak-.scope", "/app-flatpak--81.scope", "/app-flatpak-81.scope",
          "/app-flatpak-org.x.Y-81.service", "/app-org.x.Y-81.scope"})
        EXPECT_EQ(flatpakOfControlGroup(path), "") << path;
}

TEST(UnitNames, ContainersAreToldByEngineOrFolder) {
    const std::string id = "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef";
    EXPECT_EQ(containerName("docker-" + id + ".scope", "system.slice"), "0123456789ab");
    EXPECT_EQ(containerName("libpod-" + id + ".scope", "user.slice"), "0123456789ab");
    EXPECT_EQ(containerName(id, "docker"), "0123456789ab");
    EXPECT_EQ(containerName("web", "lxc"), "web");
    EXPECT_EQ(containerName("lxc.payload.web", ""), "web");
    EXPECT_EQ(containerName("machine-qemu\\x2d1\\x2dwin.scope", "machine.slice"), "qemu-1-win");
    EXPECT_EQ(containerName("docker-abc.scope", "system.slice"), "");
    EXPECT_EQ(containerName("docker.service", "system.slice"), "");
    EXPECT_EQ(containerName("libpod-conmon-" + id + ".scope", ""), "");
    EXPECT_EQ(containerName("", ""), "");
}

} // namespace
} // namespace tavero
