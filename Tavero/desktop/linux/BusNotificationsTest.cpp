#include "desktop/linux/BusNotifications.h"

#include "desktop/linux/test/NotificationService.h"

#include <QDBusConnectionInterface>
#include <QFile>
#include <QGuiApplication>

#include <gtest/gtest.h>

#include <signal.h>

// Runs on a session bus of its own, with a real service of notifications on it.
namespace tavero {
namespace {

using namespace std::chrono_literals;
using Error = Notifications::Error;

const Notification fullDisk{.key = "diskFull",
                            .title = "Your disk is almost full",
                            .body = "Only 3.1 GB left.",
                            .section = "disk"};
const Notification busyApp{.key = "appCPU|/usr/share/applications/spinner.desktop",
                           .title = "Spinner is working hard",
                           .body = "Above 80% CPU for 5 minutes.",
                           .section = "cpu",
                           .bundlePath = "/usr/share/applications/spinner.desktop"};

class BusNotificationsTest : public testing::Test {
  protected:
    NotificationService service;
    BusNotifications notifications{QDBusConnection::sessionBus(), 5s};
    std::vector<std::pair<NotificationAction, Notification>> clicks;

    void SetUp() override {
        notifications.setHandler([this](NotificationAction action, const Notification& about) {
            clicks.emplace_back(action, about);
        });
    }

    // What came of it. Fails if nothing did.
    Error deliver(const Notification& notification) { return deliver(notifications, notification); }
    static Error deliver(Notifications& to, const Notification& notification) {
        std::optional<Error> result;
        to.deliver(notification, [&](Error error) { result = std::move(error); });
        EXPECT_FALSE(result); // never from within the call
        EXPECT_TRUE(happens([&] { return result.has_value(); }));
        return result.value_or("no answer");
    }
    static NotificationAuthorization authorization(Notifications& of) {
        std::optional<NotificationAuthorization> result;
        of.readAuthorization([&](NotificationAuthorization found) { result = found; });
        EXPECT_TRUE(happens([&] { return result.has_value(); }));
        return result.value_or(NotificationAuthorization::notDetermined);
    }
    using Click = std::pair<NotificationAction, Notification>;
    using Clicks = std::vector<Click>;
};

TEST_F(BusNotificationsTest, ANotificationArrivesWithItsTextAndActions) {
    service.start();
    ASSERT_EQ(deliver(busyApp), std::nullopt);
    const auto shown = service.shown();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].application, "Tavero");
    EXPECT_EQ(shown[0].title, busyApp.title);
    EXPECT_EQ(shown[0].body, busyApp.body);
    EXPECT_EQ(shown[0].icon, "com.brimfold.tavero");
    EXPECT_EQ(shown[0].actions, (QStringList{"default", "Open", "quit", "Quit"}));
    EXPECT_EQ(shown[0].hints, (QVariantMap{{"desktop-entry", "com.brimfold.tavero"}}));
    EXPECT_EQ(shown[0].timeout, -1);
}

TEST_F(BusNotificationsTest, WithoutAnAppThereIsNoQuit) {
    service.start();
    deliver(fullDisk);
    EXPECT_EQ(service.shown().at(0).actions, (QStringList{"default", "Open"}));
}

TEST_F(BusNotificationsTest, AServiceIsGivenOnlyWhatItKnows) {
    NotificationService plain("body sound");
    plain.start();
    Notification marked = busyApp;
    marked.body = "<b>R&D</b> is busy";
    ASSERT_EQ(deliver(marked), std::nullopt);
    const auto shown = plain.shown();
    EXPECT_TRUE(shown.at(0).actions.isEmpty());
    EXPECT_EQ(shown[0].body, "<b>R&D</b> is busy");
    EXPECT_EQ(shown[0].hints.value("sound-name"), "message-new-instant");
}

TEST_F(BusNotificationsTest, MarkupIsShownAsItWasWritten) {
    service.start();
    Notification marked = fullDisk;
    marked.title = marked.body = "<b>R&D</b>";
    deliver(marked);
    EXPECT_EQ(service.shown().at(0).body, "&lt;b&gt;R&amp;D&lt;/b&gt;");
    EXPECT_EQ(service.shown().at(0).title, "<b>R&D</b>"); // titles have no markup
}

TEST_F(BusNotificationsTest, ANewerOneOfAKeyReplacesTheOlder) {
    service.start();
    int answers = 0;
    const auto count = [&](const Error& error) { answers += !error; };
    for (int i = 0; i < 2; ++i) notifications.deliver(fullDisk, count); // before any answer
    notifications.deliver(busyApp, count);
    ASSERT_TRUE(happens([&] { return answers == 3; }));
    const auto shown = service.shown();
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_EQ(shown[0].replaces, 0u);
    EXPECT_EQ(shown[1].replaces, 1u);
    EXPECT_EQ(shown[2].replaces, 0u);
    EXPECT_EQ(notifications.shown(), 2u);
}

TEST_F(BusNotificationsTest, ClicksTellWhatWasClickedAndWhere) {
    service.start();
    deliver(fullDisk);
    deliver(busyApp);
    service.invoke(1, "default");
    service.invoke(2, "quit");
    service.invoke(2, "something-else");
    service.invoke(2, "default");
    ASSERT_TRUE(happens([&] { return clicks.size() == 3; }));
    EXPECT_EQ(clicks, (Clicks{{NotificationAction::open, fullDisk},
                              {NotificationAction::quit, busyApp},
                              {NotificationAction::open, busyApp}}));
}

TEST_F(BusNotificationsTest, ClicksOnOthersNotificationsAreIgnored) {
    service.start();
    deliver(busyApp);
    service.invoke(77, "quit");
    service.invoke(0, "default");
    service.closeNotification(77);
    service.invoke(1, "default");
    ASSERT_TRUE(happens([&] { return !clicks.empty(); }));
    EXPECT_EQ(clicks, (Clicks{{NotificationAction::open, busyApp}}));
}

TEST_F(BusNotificationsTest, OnlyTheServiceThatShowsItCanTellOfAClick) {
    service.start();
    deliver(busyApp);
    QDBusMessage forged = QDBusMessage::createSignal(
        "/org/freedesktop/Notifications", "org.freedesktop.Notifications", "ActionInvoked");
    forged << 1u << QStringLiteral("quit");
    ASSERT_TRUE(QDBusConnection::sessionBus().send(forged));
    service.invoke(1, "default");
    ASSERT_TRUE(happens([&] { return !clicks.empty(); }));
    EXPECT_EQ(clicks, (Clicks{{NotificationAction::open, busyApp}}));
}

TEST_F(BusNotificationsTest, WhatIsClosedIsForgotten) {
    service.start();
    deliver(fullDisk);
    service.closeNotification(1);
    ASSERT_TRUE(happens([&] { return notifications.shown() == 0; }));
    deliver(fullDisk);
    EXPECT_EQ(service.shown().at(1).replaces, 0u);
}

TEST_F(BusNotificationsTest, WhatIsNeverClosedDoesNotPileUp) {
    service.start();
    int answers = 0;
    for (int i = 0; i < 150; ++i) {
        Notification notification = busyApp;
        notification.key += std::to_string(i);
        notifications.deliver(notification, [&](const Error& error) { answers += !error; });
    }
    ASSERT_TRUE(happens([&] { return answers == 150; }));
    EXPECT_LE(notifications.shown(), 100u);
    service.invoke(150, "default");
    ASSERT_TRUE(happens([&] { return !clicks.empty(); }));
}

TEST_F(BusNotificationsTest, WithoutAServiceTheErrorIsTold) {
    EXPECT_EQ(authorization(notifications), NotificationAuthorization::denied);
    const Error error = deliver(fullDisk);
    ASSERT_TRUE(error);
    EXPECT_NE(error->find("org.freedesktop.Notifications"), std::string::npos) << *error;
    service.start();
    EXPECT_EQ(authorization(notifications), NotificationAuthorization::authorized);
    EXPECT_EQ(deliver(fullDisk), std::nullopt);
}

TEST_F(BusNotificationsTest, AfterARestartOfTheServiceItsIdsAreForgotten) {
    service.start();
    deliver(busyApp);
    service.end();
    EXPECT_TRUE(deliver(busyApp));
    service.start();
    ASSERT_TRUE(happens([&] { return notifications.shown() == 0; }));
    service.invoke(1, "quit"); // the new service's first is another's
    ASSERT_EQ(deliver(fullDisk), std::nullopt);
    EXPECT_EQ(service.shown().at(0).replaces, 0u);
    EXPECT_EQ(clicks, Clicks());
}

TEST_F(BusNotificationsTest, AnotherServiceIsAskedAgainWhatItKnows) {
    service.start();
    deliver(busyApp);
    service.end();
    NotificationService plain("body");
    plain.start();
    ASSERT_TRUE(happens([&] { return notifications.shown() == 0; }));
    ASSERT_EQ(deliver(busyApp), std::nullopt);
    EXPECT_TRUE(plain.shown().at(0).actions.isEmpty());
}

TEST_F(BusNotificationsTest, ARefusalIsToldInTheServicesWords) {
    service.start();
    service.refuse();
    EXPECT_EQ(deliver(fullDisk), "There is no room");
    EXPECT_EQ(notifications.shown(), 0u);
}

TEST_F(BusNotificationsTest, AServiceThatHangsBlocksNothing) {
    service.start();
    BusNotifications impatient(QDBusConnection::sessionBus(), 50ms);
    service.hang();
    int errors = 0;
    for (int i = 0; i < 3; ++i)
        impatient.deliver(fullDisk, [&](const Error& error) { errors += error.has_value(); });
    EXPECT_EQ(errors, 0);
    ASSERT_TRUE(happens([&] { return errors == 3; }));
    service.end();
    service.start();
    EXPECT_EQ(deliver(notifications, fullDisk), std::nullopt);
}

TEST_F(BusNotificationsTest, NobodyIsToldAfterItHasGone) {
    service.start();
    bool wasTold = false;
    {
        BusNotifications brief(QDBusConnection::sessionBus());
        brief.deliver(fullDisk, [&](const Error&) { wasTold = true; });
        brief.readAuthorization([&](NotificationAuthorization) { wasTold = true; });
    }
    EXPECT_EQ(deliver(fullDisk), std::nullopt); // answered after those
    EXPECT_FALSE(wasTold);
}

TEST_F(BusNotificationsTest, AServiceThatTheBusCanStartIsAuthorizedAndStarted) {
    const QString file = TAVERO_TEST_SERVICES "/org.freedesktop.Notifications.service";
    QFile entry(file);
    ASSERT_TRUE(entry.open(QFile::WriteOnly));
    QString command;
    for (const QString& word : NotificationService::command("body"))
        command += (command.isEmpty() ? "" : " ") + ("'" + word + "'");
    entry.write(
        ("[D-BUS Service]\nName=org.freedesktop.Notifications\nExec=" + command + "\n").toUtf8());
    entry.close();
    const auto reload = [] { QDBusConnection::sessionBus().interface()->call("ReloadConfig"); };
    reload();
    EXPECT_FALSE(NotificationService::isRunning());
    EXPECT_EQ(authorization(notifications), NotificationAuthorization::authorized);
    EXPECT_EQ(deliver(fullDisk), std::nullopt);
    EXPECT_TRUE(NotificationService::isRunning());

    QFile::remove(file);
    reload();
    const uint pid =
        QDBusConnection::sessionBus().interface()->servicePid("org.freedesktop.Notifications");
    ::kill(static_cast<pid_t>(pid), SIGKILL);
    EXPECT_TRUE(happens([] { return !NotificationService::isRunning(); }));
}

TEST(BusNotificationsWithoutABus, NothingIsAuthorizedAndTheErrorIsTold) {
    BusNotifications notifications(QDBusConnection("there is none of this name"));
    std::optional<NotificationAuthorization> authorization;
    notifications.readAuthorization(
        [&](NotificationAuthorization found) { authorization = found; });
    EXPECT_EQ(authorization, NotificationAuthorization::denied);
    std::optional<Error> result;
    notifications.deliver(fullDisk, [&](Error error) { result = std::move(error); });
    ASSERT_TRUE(happens([&] { return result.has_value(); }));
    EXPECT_TRUE(*result);
}

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setDesktopFileName("com.brimfold.tavero");
    return RUN_ALL_TESTS();
}
