#include "platform/mac/MacBundles.h"

#include "apps/AppIdentities.h"
#include "platform/sim/SimMachine.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

std::optional<BundleNames> names(PropertyMap info) {
    SimMachine sim;
    sim.state().bundleInfo["/A.app"] = std::move(info);
    return MacBundles(sim.bundleInfo()).names("/A.app");
}

TEST(MacBundles, NamesAreThoseOfTheInformation) {
    EXPECT_EQ(names({{"CFBundleDisplayName", {std::string("Alpha")}},
                     {"CFBundleName", {std::string("A")}},
                     {"CFBundleIdentifier", {std::string("org.example.a")}}}),
              (BundleNames{.displayName = "Alpha", .name = "A"}));
}

TEST(MacBundles, ANameThatIsNoTextIsAbsent) {
    EXPECT_EQ(names({{"CFBundleDisplayName", {std::int64_t{7}}},
                     {"CFBundleName", {PropertyList{{std::string("A")}}}}}),
              BundleNames{});
    EXPECT_EQ(names({{"CFBundleDisplayName", {true}}, {"CFBundleName", {std::string("A")}}}),
              (BundleNames{.displayName = std::nullopt, .name = "A"}));
}

TEST(MacBundles, ABundleThatSaysNothingIsThereAndOneThatIsGoneIsNot) {
    EXPECT_EQ(names({}), BundleNames{});
    EXPECT_EQ(MacBundles(SimMachine().bundleInfo()).names("/Gone.app"), std::nullopt);
    EXPECT_EQ(MacBundles(SimMachine().bundleInfo()).names(""), std::nullopt);
}

TEST(MacBundles, AnAppWithoutABundleIsCalledByItsFile) {
    MacBundles bundles(SimMachine().bundleInfo());
    EXPECT_EQ(
        AppGrouping::displayName({AppIdentity::Kind::app, "/Applications/Gone.app"}, &bundles),
        "Gone");
}

} // namespace
} // namespace tavero
