#include "apps/AppIdentities.h"

#include <gtest/gtest.h>

#include <map>

namespace tavero::AppGrouping {
namespace {

AppIdentity app(std::string id) { return {AppIdentity::Kind::app, std::move(id)}; }
AppIdentity tool(std::string id) { return {AppIdentity::Kind::tool, std::move(id)}; }

TEST(AppIdentities, EverythingInsideABundleBelongsToTheOutermostOne) {
    EXPECT_EQ(
        identity("/Applications/Web.app/Contents/Frameworks/Helper.app/Contents/MacOS/Helper"),
        app("/Applications/Web.app"));
    EXPECT_EQ(identity("/Applications/Mail.app/Contents/MacOS/Mail"),
              app("/Applications/Mail.app"));
}

TEST(AppIdentities, APathThatEndsWithTheSuffixIsABundle) {
    EXPECT_EQ(identity("/Applications/Notes.app"), app("/Applications/Notes.app"));
    EXPECT_EQ(identity(".app"), app("/.app"));
}

TEST(AppIdentities, TheIdOfAnAppHasOneSlashInFrontAndNoneBehind) {
    EXPECT_EQ(identity("//Applications/Mail.app/x"), app("/Applications/Mail.app"));
    EXPECT_EQ(identity("Mail.app/x"), app("/Mail.app"));
    EXPECT_EQ(identity("/.app/x"), app("/.app"));
}

TEST(AppIdentities, ASystemPathNeedsABundleInTheRightFolderToBeAnApp) {
    EXPECT_EQ(identity("/System/Applications/Clock.app/Contents/MacOS/Clock"),
              app("/System/Applications/Clock.app"));
    EXPECT_EQ(identity("/System/Volumes/Preboot/Cryptexes/App/System/Applications/Web.app/x"),
              app("/System/Volumes/Preboot/Cryptexes/App/System/Applications/Web.app"));
    EXPECT_EQ(identity("/System/Library/CoreServices/Finder.app/Contents/MacOS/Finder"),
              app("/System/Library/CoreServices/Finder.app"));
    EXPECT_EQ(identity("/System/Library/PrivateFrameworks/A.framework/B.app/Contents/MacOS/B"),
              AppIdentity::system);
}

TEST(AppIdentities, CoreServicesWithoutABundleIsTheSystem) {
    EXPECT_EQ(identity("/System/Library/CoreServices/launchservicesd"), AppIdentity::system);
}

TEST(AppIdentities, SystemFoldersBelongToTheSystem) {
    for (const char* path :
         {"/System/Library/x", "/usr/libexec/trustd", "/bin/zsh", "/sbin/launchd",
          "/Library/Apple/usr/x", "/private/var/db/x", "/usr/local/bin/thing"})
        EXPECT_EQ(identity(path), AppIdentity::system) << path;
}

TEST(AppIdentities, LibraryAppleIsTheSystemAndApplicationSupportIsATool) {
    EXPECT_EQ(identity("/Library/Apple/System/x"), AppIdentity::system);
    EXPECT_EQ(identity("/Library/Application Support/Maker/agent"), tool("agent"));
}

TEST(AppIdentities, PrivateVarIsTheSystemButABundleInItIsAnApp) {
    EXPECT_EQ(identity("/private/var/folders/x/agent"), AppIdentity::system);
    EXPECT_EQ(identity("/private/var/folders/x/Installer.app/Contents/MacOS/Installer"),
              app("/private/var/folders/x/Installer.app"));
}

TEST(AppIdentities, TheDeveloperFolderIsOneToolUnlessThereIsABundle) {
    EXPECT_EQ(identity("/Library/Developer/CommandLineTools/usr/bin/git"), developerTools);
    EXPECT_EQ(identity("/Library/Developer/Sim.app/x"), app("/Library/Developer/Sim.app"));
}

TEST(AppIdentities, UpperCaseSuffixesAndFoldersAreNotRecognised) {
    EXPECT_EQ(identity("/Applications/Mail.APP/Contents/MacOS/Mail"), tool("Mail"));
    EXPECT_EQ(identity("/USR/lib/x"), tool("x"));
}

TEST(AppIdentities, AToolIsNamedAfterItsExecutable) {
    EXPECT_EQ(identity("/opt/homebrew/bin/node"), tool("node"));
    EXPECT_EQ(identity("node"), tool("node"));
    EXPECT_EQ(identity("/opt/Thing//"), tool("Thing"));
}

TEST(AppIdentities, VersionsAndPlumbingFoldersDoNotNameATool) {
    EXPECT_EQ(identity("/opt/agent/versions/1.2.3"), tool("agent"));
    EXPECT_EQ(identity("/opt/agent/Versions/2024-01-31/bin/latest"), tool("agent"));
    EXPECT_EQ(identity("/opt/Agent/Current/LIBEXEC/7"), tool("Agent"));
    EXPECT_EQ(identity("/opt/agent/1.2.3/agent-1.2.3"), tool("agent-1.2.3"));
    EXPECT_EQ(identity("/opt/agent/v1.2"), tool("v1.2"));
    EXPECT_EQ(identity("/opt/agent/.1"), tool(".1"));
}

TEST(AppIdentities, AnExecutableNamedWithAVersionInBinTakesTheNameOfTheFolderAbove) {
    EXPECT_EQ(identity("/opt/claw/bin/2.0.1"), tool("claw"));
}

TEST(AppIdentities, IfEveryPieceIsSkippedTheLastOneNamesTheTool) {
    EXPECT_EQ(identity("/1/bin/2.0"), tool("2.0"));
    EXPECT_EQ(identity("/latest"), tool("latest"));
}

TEST(AppIdentities, APathWithoutPiecesIsItsOwnName) {
    EXPECT_EQ(identity(""), tool(""));
    EXPECT_EQ(identity("///"), tool("///"));
}

// What bundles say, by path.
struct FakeBundles final : BundleSource {
    std::map<std::string, BundleNames> all;
    std::optional<BundleNames> names(const std::string& path) override {
        const auto found = all.find(path);
        return found == all.end() ? std::nullopt : std::optional(found->second);
    }
};

TEST(DisplayName, SystemAndToolsAreCalledByTheirId) {
    FakeBundles bundles;
    bundles.all["git"] = {.displayName = "Wrong"};
    EXPECT_EQ(displayName(AppIdentity::system, &bundles), "macOS System");
    EXPECT_EQ(displayName(tool("git"), &bundles), "git");
    EXPECT_EQ(displayName(tool("a\u200Eb"), &bundles), "a\u200Eb");
}

TEST(DisplayName, ABundleIsCalledByItsDisplayNameOrElseByItsName) {
    FakeBundles bundles;
    bundles.all["/A.app"] = {.displayName = "Alpha", .name = "A1"};
    bundles.all["/B.app"] = {.name = "Beta"};
    bundles.all["/C.app"] = {.displayName = "", .name = "Gamma"};
    EXPECT_EQ(displayName(app("/A.app"), &bundles), "Alpha");
    EXPECT_EQ(displayName(app("/B.app"), &bundles), "Beta");
    EXPECT_EQ(displayName(app("/C.app"), &bundles), "Gamma");
}

TEST(DisplayName, ABundleThatSaysNothingIsCalledByItsFile) {
    FakeBundles bundles;
    bundles.all["/D/Delta.app"] = {};
    bundles.all["/D/Echo.app"] = {.displayName = "\u200E", .name = ""};
    EXPECT_EQ(displayName(app("/D/Delta.app"), &bundles), "Delta");
    EXPECT_EQ(displayName(app("/D/Echo.app"), &bundles), "Echo");
    EXPECT_EQ(displayName(app("/D/Gone 2.1.app"), &bundles), "Gone 2.1");
    EXPECT_EQ(displayName(app("/D/Gone.app"), nullptr), "Gone");
    EXPECT_EQ(displayName(app("/.app"), nullptr), ".app");
}

TEST(DisplayName, FormatCharactersAreLeftOut) {
    FakeBundles bundles;
    bundles.all["/A.app"] = {.displayName = "\u200EChat"};
    EXPECT_EQ(displayName(app("/A.app"), &bundles), "Chat");
    EXPECT_EQ(displayName(app("/Chat\u200E.app"), nullptr), "Chat");
}

} // namespace
} // namespace tavero::AppGrouping
