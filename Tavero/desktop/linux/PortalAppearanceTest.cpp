#include "desktop/linux/PortalAppearance.h"

#include <QCoreApplication>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusServer>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace tavero {
namespace {

const QString appearance = "org.freedesktop.appearance";
const QString gnome = "org.gnome.desktop.interface";

TEST(PortalSetting, OnlyTheOneThatAsksForDarkIsDark) {
    const auto isDark = [](const QVariant& value) {
        return withSetting({.isDark = false}, appearance, "color-scheme", value).isDark;
    };
    EXPECT_FALSE(isDark(0u)); // no preference
    EXPECT_TRUE(isDark(1u));
    EXPECT_FALSE(isDark(2u)); // light
    EXPECT_FALSE(isDark(3u)); // of the future
}

TEST(PortalSetting, AValueOfAnotherTypeChangesNothing) {
    const Look dark{.isDark = true};
    for (const QVariant& value : {QVariant(), QVariant(true), QVariant("2"), QVariant(2.0)})
        EXPECT_EQ(withSetting(dark, appearance, "color-scheme", value), dark);
    EXPECT_EQ(withSetting(dark, gnome, "enable-animations", 0u), dark);
}

TEST(PortalSetting, AnotherSettingChangesNothing) {
    EXPECT_EQ(withSetting({}, appearance, "accent-color", 1u), Look{});
    EXPECT_EQ(withSetting({}, gnome, "color-scheme", 1u), Look{});
}

TEST(PortalSetting, BothNamesOfReducedMotionCount) {
    EXPECT_TRUE(withSetting({}, appearance, "reduced-motion", 1u).reducesMotion);
    EXPECT_TRUE(withSetting({}, gnome, "enable-animations", false).reducesMotion);
    EXPECT_FALSE(
        withSetting({.reducesMotion = true}, gnome, "enable-animations", true).reducesMotion);
}

// A portal of settable values. It speaks D-Bus without a bus, from one end of a socket to the
// other.
class FakePortal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

  public:
    PortalSettings settings;
    bool refuses = false;
    int calls = 0;

    FakePortal() {
        qDBusRegisterMetaType<PortalSettings>();
        QObject::connect(&server_, &QDBusServer::newConnection, this,
                         [this](const QDBusConnection& connection) {
                             connection_ = connection;
                             connection_->registerObject("/org/freedesktop/portal/desktop", this,
                                                         QDBusConnection::ExportAllSlots |
                                                             QDBusConnection::ExportAllSignals);
                         });
    }
    ~FakePortal() override { QDBusConnection::disconnectFromPeer("portal"); }

    QDBusConnection connect() {
        return QDBusConnection::connectToPeer(server_.address(), "portal");
    }

  public slots:
    PortalSettings ReadAll(const QStringList&) { // NOLINT: the portal's name
        ++calls;
        if (refuses) sendErrorReply(QDBusError::AccessDenied, "not today");
        return settings;
    }

  signals:
    void SettingChanged(const QString& space, const QString& key, const QDBusVariant& value);

  private:
    QDBusServer server_;
    std::optional<QDBusConnection> connection_;
};

// Serves the event loop until `done`, or for so long that the test may say it never happens.
bool waitFor(const std::function<bool()>& done) {
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(std::chrono::seconds(10));
    while (!done() && limit.isActive()) loop.processEvents(QEventLoop::WaitForMoreEvents);
    return done();
}

class PortalAppearanceTest : public testing::Test {
  protected:
    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    FakePortal portal;
};

TEST_F(PortalAppearanceTest, ItIsLightUntilThePortalAnswersAndThenWhatItSays) {
    portal.settings[appearance]["color-scheme"] = 1u;
    portal.settings[gnome]["enable-animations"] = false;
    PortalAppearance look(portal.connect());
    EXPECT_EQ(look.look(), Look{});
    ASSERT_TRUE(waitFor([&] { return look.look() != Look{}; }));
    EXPECT_EQ(look.look(), (Look{.isDark = true, .reducesMotion = true}));
}

TEST_F(PortalAppearanceTest, ItFollowsAChange) {
    PortalAppearance look(portal.connect());
    int changes = 0;
    QObject::connect(&look, &Appearance::changed, [&] { ++changes; });
    ASSERT_TRUE(waitFor([&] { return portal.calls == 1; }));
    emit portal.SettingChanged(appearance, "color-scheme", QDBusVariant(1u));
    ASSERT_TRUE(waitFor([&] { return look.look().isDark; }));
    EXPECT_EQ(changes, 1);
    emit portal.SettingChanged(appearance, "color-scheme", QDBusVariant(1u)); // says nothing new
    emit portal.SettingChanged(appearance, "color-scheme", QDBusVariant(2u));
    ASSERT_TRUE(waitFor([&] { return !look.look().isDark; }));
    EXPECT_EQ(changes, 2);
}

TEST_F(PortalAppearanceTest, APortalThatRefusesLeavesTheDefaults) {
    portal.refuses = true;
    portal.settings[appearance]["color-scheme"] = 1u;
    PortalAppearance look(portal.connect());
    ASSERT_TRUE(waitFor([&] { return portal.calls == 1; }));
    emit portal.SettingChanged(gnome, "enable-animations", QDBusVariant(false)); // comes after
    ASSERT_TRUE(waitFor([&] { return look.look().reducesMotion; }));
    EXPECT_FALSE(look.look().isDark);
}

TEST_F(PortalAppearanceTest, WithoutABusItStaysLight) {
    PortalAppearance look(QDBusConnection("no such connection"));
    QCoreApplication::processEvents();
    EXPECT_EQ(look.look(), Look{});
}

} // namespace
} // namespace tavero

#include "PortalAppearanceTest.moc"
