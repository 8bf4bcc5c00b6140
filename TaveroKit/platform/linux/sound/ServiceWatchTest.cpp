#include "platform/linux/sound/ServiceWatch.h"

#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>
#include <pipewire/loop.h>
#include <pipewire/pipewire.h>

namespace tavero {

namespace {

class ServiceWatchTest : public testing::Test {
  protected:
    ServiceWatchTest() {
        pw_init(nullptr, nullptr);
        loop = pw_loop_new(nullptr);
        pw_loop_enter(loop);
    }
    ~ServiceWatchTest() override {
        pw_loop_leave(loop);
        pw_loop_destroy(loop);
        pw_deinit();
    }
    // Lets the loop do one thing, if one comes within the time.
    void turn(int milliseconds) { pw_loop_iterate(loop, milliseconds); }

    TemporaryTree tree;
    pw_loop* loop = nullptr;
    int tries = 0;
};

constexpr int never = 60'000; // as long as a test may take

} // namespace

TEST_F(ServiceWatchTest, ASocketThatAppearsIsTriedAtOnce) {
    ServiceWatch watch(loop, tree.root() / "pipewire-0", [&] { ++tries; });
    watch.begin();
    watch.begin();
    tree.write("pipewire-0.lock", "");
    turn(never);
    EXPECT_EQ(tries, 0);
    tree.write("pipewire-0", "");
    turn(never);
    EXPECT_EQ(tries, 1);
}

TEST_F(ServiceWatchTest, WithoutASocketNothingWakes) {
    ServiceWatch watch(loop, tree.root() / "pipewire-0", [&] { ++tries; });
    watch.begin();
    watch.failed();
    turn(120);
    EXPECT_EQ(tries, 0);
}

TEST_F(ServiceWatchTest, ASocketThatNobodyAnswersIsTriedAgain) {
    tree.write("pipewire-0", "");
    ServiceWatch watch(loop, tree.root() / "pipewire-0", [&] { ++tries; });
    watch.failed();
    turn(never);
    EXPECT_EQ(tries, 1);
    watch.failed();
    turn(never);
    EXPECT_EQ(tries, 2);
}

TEST_F(ServiceWatchTest, OneThatAnswersIsNotWatched) {
    tree.write("pipewire-0", "");
    ServiceWatch watch(loop, tree.root() / "pipewire-0", [&] { ++tries; });
    watch.begin();
    watch.failed();
    watch.succeeded();
    std::filesystem::remove(tree.root() / "pipewire-0");
    tree.write("pipewire-0", "");
    turn(120);
    EXPECT_EQ(tries, 0);
}

TEST_F(ServiceWatchTest, AFolderThatIsNotThereIsNoFailure) {
    ServiceWatch watch(loop, tree.root() / "none" / "pipewire-0", [&] { ++tries; });
    watch.begin();
    ServiceWatch nowhere(loop, "", [&] { ++tries; });
    nowhere.begin();
    turn(0);
    EXPECT_EQ(tries, 0);
}

TEST_F(ServiceWatchTest, TheSocketIsWhereTheEnvironmentSays) {
    EXPECT_EQ(ServiceWatch::socketPath("/a", "/b", ""), "/a/pipewire-0");
    EXPECT_EQ(ServiceWatch::socketPath("", "/b", "other"), "/b/other");
    EXPECT_EQ(ServiceWatch::socketPath("", "/b", "/c/other"), "/c/other");
    EXPECT_EQ(ServiceWatch::socketPath("", "", ""), "");
}

} // namespace tavero
