#include "desktop/linux/QuitAction.h"

#include "desktop/linux/test/ActionGroup.h"

#include <QCoreApplication>
#include <QDBusServer>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace tavero {
namespace {

TEST(BusName, IsThatOfTheDesktopEntry) {
    EXPECT_EQ(busName("/usr/share/applications/org.example.Notes.desktop"), "org.example.Notes");
    EXPECT_EQ(busName("org.example.Web-Browser_2.desktop"), "org.example.Web-Browser_2");
}

TEST(BusName, OnlyADesktopEntryWithANameThatABusKnowsHasOne) {
    for (const char* path : {"", "/", ".desktop", "/usr/share/applications/notes.desktop",
                             "/home/u/org.example.AppImage", "/a/org.7zip.desktop",
                             "/a/org..Notes.desktop", "/a/org.example.Ünicode.desktop",
                             "/a/org.example.Notes\n.desktop", "/a/org.example.\xff.desktop"})
        EXPECT_FALSE(busName(path)) << path;
    EXPECT_FALSE(busName("/a/org." + std::string(300, 'a') + ".desktop"));
}

// Serves the event loop until `done`, or for so long that the test may say it never happens.
bool waitFor(const std::function<bool()>& done) {
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(std::chrono::seconds(10));
    while (!done() && limit.isActive()) loop.processEvents(QEventLoop::WaitForMoreEvents);
    return done();
}

// An app at one end of a socket; there is no bus between.
class QuitActionTest : public testing::Test {
  protected:
    QuitActionTest() {
        QObject::connect(&server, &QDBusServer::newConnection, &server,
                         [this](const QDBusConnection& connection) {
                             appEnd = connection;
                             appEnd->registerObject("/org/example/Note_pad", &app,
                                                    QDBusConnection::ExportAllSlots);
                         });
        bus.emplace(QDBusConnection::connectToPeer(server.address(), "app"));
    }
    ~QuitActionTest() override { QDBusConnection::disconnectFromPeer("app"); }

    void activate() {
        activateQuit(*bus, "org.example.Note-pad", &owner, [this] { ++refusals; });
    }

    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    ActionGroup app;
    QDBusServer server;
    std::optional<QDBusConnection> appEnd;
    std::optional<QDBusConnection> bus;
    QObject owner;
    int refusals = 0;
};

TEST_F(QuitActionTest, TheActionIsActivatedOnce) {
    activate();
    ASSERT_TRUE(waitFor([&] { return !app.activated.isEmpty(); }));
    EXPECT_EQ(app.activated, QStringList{"quit"});
    EXPECT_EQ(refusals, 0);
}

TEST_F(QuitActionTest, AnAppWithoutTheActionRefuses) {
    app.isEnabled.reset();
    activate();
    ASSERT_TRUE(waitFor([&] { return refusals == 1; }));
    EXPECT_TRUE(app.activated.isEmpty());
}

TEST_F(QuitActionTest, AnAppThatHasItDisabledRefuses) {
    app.isEnabled = false;
    activate();
    ASSERT_TRUE(waitFor([&] { return refusals == 1; }));
    EXPECT_TRUE(app.activated.isEmpty());
}

TEST_F(QuitActionTest, AnErrorOnActivationIsARefusal) {
    app.activationError = "org.freedesktop.DBus.Error.InvalidArgs";
    activate();
    EXPECT_TRUE(waitFor([&] { return refusals == 1; }));
}

TEST_F(QuitActionTest, AnAppThatIsAtItWithoutAnsweringIsLeftAlone) {
    app.activationError = "org.freedesktop.DBus.Error.NoReply"; // what comes in place of an answer
    activate();
    ASSERT_TRUE(waitFor([&] { return app.activated.size() == 1; }));
    app.activationError.clear();
    app.isEnabled.reset();
    activate(); // the answers come in order: once this one refuses, the first has not
    ASSERT_TRUE(waitFor([&] { return refusals > 0; }));
    EXPECT_EQ(refusals, 1);
}

TEST_F(QuitActionTest, AnAnswerOfAnotherFormIsARefusal) {
    app.answersInWords = true;
    activate();
    ASSERT_TRUE(waitFor([&] { return refusals == 1; }));
    EXPECT_TRUE(app.activated.isEmpty());
}

TEST_F(QuitActionTest, NothingIsCalledOnceTheOwnerIsGone) {
    app.isEnabled.reset();
    auto leaving = std::make_unique<QObject>();
    int calls = 0;
    activateQuit(*bus, "org.example.Note-pad", leaving.get(), [&] { ++calls; });
    leaving.reset();
    activate();
    ASSERT_TRUE(waitFor([&] { return refusals == 1; }));
    EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace tavero
