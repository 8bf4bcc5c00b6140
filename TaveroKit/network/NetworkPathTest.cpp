#include "network/NetworkPath.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace tavero {
namespace {

using Changed = std::function<void(const PathState&)>;

// One that a test makes speak. What it was given to call outlives it.
class FakeMonitor : public PathMonitor {
  public:
    explicit FakeMonitor(std::shared_ptr<Changed> changed) : changed_(std::move(changed)) {}

    void start(std::function<void(const PathState&)> changed) override {
        *changed_ = std::move(changed);
    }

  private:
    std::shared_ptr<Changed> changed_;
};

class NetworkPathTest : public testing::Test {
  protected:
    std::shared_ptr<Changed> changed = std::make_shared<Changed>();
    std::optional<NetworkPath> path{std::in_place, std::make_unique<FakeMonitor>(changed)};
};

TEST_F(NetworkPathTest, IsOtherBeforeTheFirstNotice) {
    EXPECT_EQ(path->current(), ConnectionKind::other);
    EXPECT_EQ(path->current(), ConnectionKind::other);
}

TEST_F(NetworkPathTest, TheFirstReadStartsTheMonitor) {
    EXPECT_FALSE(*changed);
    path->current();
    EXPECT_TRUE(*changed);
}

TEST_F(NetworkPathTest, FollowsTheNotices) {
    path->current();
    (*changed)({.isSatisfied = true, .usesWiFi = true});
    EXPECT_EQ(path->current(), ConnectionKind::wifi);
    (*changed)({});
    EXPECT_EQ(path->current(), ConnectionKind::offline);
    (*changed)({.isSatisfied = true, .usesWiredEthernet = true});
    EXPECT_EQ(path->current(), ConnectionKind::wired);
}

TEST_F(NetworkPathTest, ANoticeFromAnotherThreadIsSeen) {
    path->current();
    std::thread notice([&] { (*changed)({.isSatisfied = true, .usesCellular = true}); });
    while (path->current() == ConnectionKind::other) std::this_thread::yield();
    notice.join();
    EXPECT_EQ(path->current(), ConnectionKind::cellular);
}

TEST_F(NetworkPathTest, ANoticeAfterItsEndDoesNothing) {
    path->current();
    path.reset();
    (*changed)({.isSatisfied = true, .usesWiFi = true});
}

TEST(ConnectionKind, AnyStatusButSatisfiedIsOffline) {
    EXPECT_EQ(connectionKind({}), ConnectionKind::offline);
    EXPECT_EQ(connectionKind({.isSatisfied = false, .usesWiFi = true}), ConnectionKind::offline);
}

TEST(ConnectionKind, WiFiGoesBeforeAWireAndAWireBeforeCellular) {
    PathState path{
        .isSatisfied = true, .usesWiFi = true, .usesWiredEthernet = true, .usesCellular = true};
    EXPECT_EQ(connectionKind(path), ConnectionKind::wifi);
    path.usesWiFi = false;
    EXPECT_EQ(connectionKind(path), ConnectionKind::wired);
    path.usesWiredEthernet = false;
    EXPECT_EQ(connectionKind(path), ConnectionKind::cellular);
    path.usesCellular = false;
    EXPECT_EQ(connectionKind(path), ConnectionKind::other);
}

} // namespace
} // namespace tavero
