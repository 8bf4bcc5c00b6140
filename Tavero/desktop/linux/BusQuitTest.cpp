#include "desktop/linux/LinuxRunningApps.h"
#include "desktop/linux/test/ActionGroup.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QProcess>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

// Runs on a session bus of its own. The program starts itself again as an app on that bus.
namespace tavero {
namespace {

const QString appName = "org.example.tavero.Notes";
const std::string entry = "/usr/share/applications/org.example.tavero.Notes.desktop";

constexpr char withAction[] = "--app-with-quit-action";
constexpr char withoutAction[] = "--app-without-actions";
constexpr int quitByAction = 7;

int runAsApp(bool hasAction) {
    ActionGroup actions;
    QObject::connect(&actions, &ActionGroup::activation,
                     [] { QCoreApplication::exit(quitByAction); });
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (hasAction)
        bus.registerObject("/org/example/tavero/Notes", &actions, QDBusConnection::ExportAllSlots);
    if (!bus.registerService(appName)) return 1;
    std::puts("running");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

struct BusQuit : testing::Test {
    QProcess app;
    QSignalSpy finished{&app, &QProcess::finished};

    bool start(const char* kind) {
        app.setReadChannel(QProcess::StandardOutput);
        app.start(QCoreApplication::applicationFilePath(), {kind});
        return app.waitForReadyRead(10'000);
    }
    bool isOver() { return app.state() == QProcess::NotRunning || finished.wait(10'000); }

    LinuxRunningApps apps{[this](const std::string&) {
                              return std::vector{static_cast<std::int32_t>(app.processId())};
                          },
                          QDBusConnection::sessionBus()};
};

TEST_F(BusQuit, AnAppWithAQuitActionEndsByItselfOnThisMachine) {
    ASSERT_TRUE(start(withAction));
    const auto haveEnded = apps.askToQuit(entry);
    ASSERT_TRUE(haveEnded);
    EXPECT_FALSE((*haveEnded)());
    ASSERT_TRUE(isOver());
    EXPECT_EQ(app.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(app.exitCode(), quitByAction);
    EXPECT_TRUE((*haveEnded)());
}

TEST_F(BusQuit, AnAppOnTheBusWithoutOneGetsTheSignalOnThisMachine) {
    ASSERT_TRUE(start(withoutAction));
    const auto haveEnded = apps.askToQuit(entry);
    ASSERT_TRUE(haveEnded);
    ASSERT_TRUE(isOver());
    EXPECT_EQ(app.exitStatus(), QProcess::CrashExit); // by a signal
    EXPECT_TRUE((*haveEnded)());
}

TEST_F(BusQuit, AnAppThatIsNotOnTheBusGetsTheSignalOnThisMachine) {
    ASSERT_TRUE(start(withAction));
    ASSERT_TRUE(apps.askToQuit("/usr/share/applications/org.example.tavero.Other.desktop"));
    ASSERT_TRUE(isOver());
    EXPECT_EQ(app.exitStatus(), QProcess::CrashExit);
}

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    for (const char* kind : {tavero::withAction, tavero::withoutAction})
        if (argc > 1 && std::strcmp(argv[1], kind) == 0)
            return tavero::runAsApp(kind == tavero::withAction);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
