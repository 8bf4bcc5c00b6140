#include "desktop/Instance.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QProcess>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <cstring>

// Runs on a session bus of its own. The program starts itself again as the second Tavero.
namespace tavero {
namespace {

constexpr char secondStart[] = "--second-start";
constexpr int endedQuietly = 7;

TEST(BusInstanceOnThisMachine, ASecondStartEndsAndBringsTheFirstForward) {
    ASSERT_TRUE(QDBusConnection::sessionBus().isConnected());
    const std::unique_ptr<Instance> first = claimInstance();
    ASSERT_TRUE(first);
    QSignalSpy activated(first.get(), &Instance::activated);

    QProcess second;
    QSignalSpy finished(&second, &QProcess::finished);
    second.start(QCoreApplication::applicationFilePath(), {secondStart});
    ASSERT_TRUE(finished.wait(10'000)); // an answered call, not a delay
    EXPECT_EQ(second.exitCode(), endedQuietly);
    EXPECT_EQ(activated.count(), 1);
}

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc > 1 && std::strcmp(argv[1], tavero::secondStart) == 0)
        return tavero::claimInstance() ? 0 : tavero::endedQuietly;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
