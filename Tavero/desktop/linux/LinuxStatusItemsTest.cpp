#include "desktop/linux/LinuxStatusItems.h"

#include "desktop/linux/StatusInk.h"
#include "desktop/linux/StatusNotifierMenu.h"
#include "desktop/linux/StatusNotifierPixmap.h"
#include "desktop/linux/test/FakeBar.h"
#include "time/VirtualTime.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QDBusObjectPath>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>

#include <gtest/gtest.h>

#include <optional>

// Runs on a session bus of its own, without a display.
namespace tavero {
namespace {

using namespace std::chrono_literals;

const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

StatusPicture picture(const std::string& text, QColor color = Qt::black, bool isTemplate = true) {
    QImage wide(140, 36, QImage::Format_ARGB32_Premultiplied);
    QImage square(44, 44, QImage::Format_ARGB32_Premultiplied);
    wide.fill(color);
    square.fill(color);
    wide.setDevicePixelRatio(2);
    square.setDevicePixelRatio(2);
    return {.wide = wide, .square = square, .isTemplate = isTemplate, .text = text};
}

struct LinuxStatusItemsTest : testing::Test {
    Appearance appearance;
    VirtualTime time;
    std::optional<LinuxStatusItems> bar;
    std::unique_ptr<StatusItem> cpu;
    std::vector<QPoint> opened;
    std::vector<StatusMenuEntry> entries;

    void start(const QString& desktops = QStringLiteral("KDE")) {
        bar.emplace(QDBusConnection::sessionBus(), appearance, time, desktops);
        cpu = bar->add("cpu", "CPU",
                       {.open = [this](QPoint where) { opened.push_back(where); },
                        .menu = [this] { return entries; }});
        cpu->setPicture(picture("CPU 12%"));
    }

    // The name under which the only item is on the bus.
    static QString itemOf(const FakeBar& host) {
        EXPECT_TRUE(waitUntil([&] { return host.items.size() == 1; }));
        return host.items.value(0);
    }
    static StatusNotifierPixmaps pixmaps(FakeBar& host, const QString& item) {
        return qdbus_cast<StatusNotifierPixmaps>(host.property(item, "IconPixmap"));
    }
    static MenuLayout layout(FakeBar& host, const QString& item) {
        const QDBusMessage reply =
            host.call(item, "/MenuBar", menuInterface, "GetLayout", {0, -1, QStringList()});
        return qdbus_cast<MenuLayout>(reply.arguments().value(1));
    }

    // Everything about hosts is known once the strip waits for one, or doesn't.
    bool waits() {
        return waitUntil([this] { return time.pending() == 1; });
    }
    void showStrip() {
        start();
        ASSERT_TRUE(waits());
        time.advance(LinuxStatusItems::patience);
        ASSERT_NE(bar->strip(), nullptr);
    }
};

TEST_F(LinuxStatusItemsTest, EveryItemRegistersUnderANameOfItsOwn) {
    FakeBar host;
    start();
    const auto memory = bar->add("memory", "Memory", {});
    ASSERT_TRUE(waitUntil([&] { return host.items.size() == 2; }));
    EXPECT_NE(host.items[0], host.items[1]);
    EXPECT_EQ(host.property(host.items[0], "Id"), "tavero-cpu");
    EXPECT_EQ(host.property(host.items[1], "Id"), "tavero-memory");
    EXPECT_EQ(host.property(host.items[1], "Title"), "Memory");
    EXPECT_EQ(host.property(host.items[0], "Status"), "Active");
    EXPECT_EQ(host.property(host.items[0], "Category"), "SystemServices");
    EXPECT_EQ(host.property(host.items[0], "ItemIsMenu"), false);
}

TEST_F(LinuxStatusItemsTest, APanelIsOfferedSquaresAndTheWidePicture) {
    FakeBar host;
    start();
    const StatusNotifierPixmaps offered = pixmaps(host, itemOf(host));
    ASSERT_EQ(offered.size(), 3);
    EXPECT_EQ(QSize(offered[0].width, offered[0].height), QSize(22, 22));
    EXPECT_EQ(QSize(offered[1].width, offered[1].height), QSize(44, 44));
    EXPECT_EQ(QSize(offered[2].width, offered[2].height), QSize(140, 36));
    EXPECT_EQ(offered[2].argb.size(), 140 * 36 * 4);
}

TEST_F(LinuxStatusItemsTest, APanelWithSquareCellsIsOfferedSquaresOnly) {
    FakeBar host;
    start("XFCE");
    EXPECT_EQ(pixmaps(host, itemOf(host)).size(), 2);
}

TEST_F(LinuxStatusItemsTest, ColoursArriveInTheOrderOfTheBus) {
    FakeBar host;
    start();
    cpu->setPicture(picture("strain", QColor(0xE0, 0x78, 0x2A), false));
    const QByteArray argb = pixmaps(host, itemOf(host)).value(1).argb;
    EXPECT_EQ(argb.left(4), QByteArray::fromHex("ffe0782a"));
}

TEST_F(LinuxStatusItemsTest, TemplatesTakeTheInkOfTheBar) {
    FakeBar host;
    start();
    const QString item = itemOf(host);
    EXPECT_EQ(pixmaps(host, item).value(0).argb.left(4), QByteArray::fromHex("ff1c1c1f"));
    ASSERT_TRUE(waitUntil([&] { return host.heard.contains("NewIcon " + item); }));
    host.heard.clear();
    appearance.set({.isDark = true});
    ASSERT_TRUE(waitUntil([&] { return host.heard.contains("NewIcon " + item); }));
    EXPECT_EQ(pixmaps(host, item).value(0).argb.left(4), QByteArray::fromHex("fff4f4f6"));
}

TEST_F(LinuxStatusItemsTest, PanelsHearOnlyOfAnotherPicture) {
    FakeBar host;
    start();
    const QString item = itemOf(host);
    cpu->setPicture(picture("CPU 12%"));
    cpu->setPicture(picture("CPU 13%")); // the same drawing under other words
    cpu->setPicture(picture("CPU 13%", Qt::red, false));
    ASSERT_TRUE(waitUntil([&] { return host.heard.count("NewIcon " + item) == 2; }));
    host.property(item, "Id"); // whatever else was sent is here before the answer
    EXPECT_EQ(host.heard, (QStringList{"NewIcon " + item, "NewToolTip " + item,
                                       "NewToolTip " + item, "NewIcon " + item}));
    const auto tip = qdbus_cast<StatusNotifierToolTip>(host.property(item, "ToolTip"));
    EXPECT_EQ(tip.title, "CPU 13%");
    EXPECT_EQ(host.property(item, "IconAccessibleDesc"), "CPU 13%");
}

TEST_F(LinuxStatusItemsTest, AClickOpensWhereItWas) {
    FakeBar host;
    start();
    host.activate(itemOf(host), 120, 14);
    ASSERT_TRUE(waitUntil([&] { return !opened.empty(); }));
    EXPECT_EQ(opened.front(), QPoint(120, 14));
    host.call(host.items[0], "/StatusNotifierItem", "org.kde.StatusNotifierItem", "ContextMenu",
              {0, 0});
    ASSERT_TRUE(waitUntil([&] { return opened.size() == 2; }));
    EXPECT_TRUE(opened.back().isNull());
}

TEST_F(LinuxStatusItemsTest, AClickMayTakeTheItemAway) {
    FakeBar host;
    start();
    std::unique_ptr<StatusItem> fleeting;
    fleeting = bar->add("fleeting", "Fleeting", {.open = [&](QPoint) { fleeting.reset(); }});
    ASSERT_TRUE(waitUntil([&] { return host.items.size() == 2; }));
    host.activate(host.items[1], 1, 1);
    ASSERT_TRUE(waitUntil([&] { return fleeting == nullptr; }));
    EXPECT_EQ(host.property(host.items[0], "Id"), "tavero-cpu");
    EXPECT_FALSE(host.property(host.items[1], "Id").isValid()); // off the bus
}

TEST_F(LinuxStatusItemsTest, APanelGetsTheMenuAndItsClicks) {
    FakeBar host;
    start();
    int chosen = 0;
    entries = {{.title = "CPU 12%"}, {}, {.title = "Open_Tavero", .choose = [&] { ++chosen; }}};
    const QString item = itemOf(host);
    EXPECT_EQ(qdbus_cast<QDBusObjectPath>(host.property(item, "Menu")).path(), "/MenuBar");
    const MenuLayout menu = layout(host, item);
    EXPECT_EQ(menu.id, 0);
    EXPECT_EQ(menu.properties.value("children-display"), "submenu");
    ASSERT_EQ(menu.children.size(), 3);
    EXPECT_EQ(menu.children[0].properties.value("label"), "CPU 12%");
    EXPECT_EQ(menu.children[0].properties.value("enabled"), false);
    EXPECT_EQ(menu.children[1].properties.value("type"), "separator");
    EXPECT_EQ(menu.children[2].properties.value("label"), "Open__Tavero");
    EXPECT_FALSE(menu.children[2].properties.contains("enabled"));

    const auto click = [&](int id, const char* what) {
        return host
            .call(item, "/MenuBar", menuInterface, "Event",
                  {id, QLatin1String(what), QVariant::fromValue(QDBusVariant(0)), 0u})
            .type();
    };
    EXPECT_EQ(click(menu.children[2].id, "hovered"), QDBusMessage::ReplyMessage);
    EXPECT_EQ(click(menu.children[0].id, "clicked"), QDBusMessage::ReplyMessage);
    EXPECT_EQ(click(menu.children[2].id, "clicked"), QDBusMessage::ReplyMessage);
    ASSERT_TRUE(waitUntil([&] { return chosen > 0; }));
    EXPECT_EQ(chosen, 1);
    EXPECT_EQ(click(999, "clicked"), QDBusMessage::ErrorMessage);
}

TEST_F(LinuxStatusItemsTest, AMenuThatChangedSaysSoAndOldClicksHitNothing) {
    FakeBar host;
    start();
    int chosen = 0;
    entries = {{.title = "Open", .choose = [&] { ++chosen; }}};
    const QString item = itemOf(host);
    const int open = layout(host, item).children.value(0).id;
    const auto isChanged = [&] {
        return host.call(item, "/MenuBar", menuInterface, "AboutToShow", {0}).arguments().value(0);
    };
    EXPECT_EQ(isChanged(), false);
    entries = {{.title = "Quit", .choose = [&] { chosen += 10; }}};
    EXPECT_EQ(isChanged(), true);
    const MenuEvent event{.id = open, .type = "clicked", .data = QDBusVariant(0), .timestamp = 1};
    const QDBusMessage reply = host.call(item, "/MenuBar", menuInterface, "EventGroup",
                                         {QVariant::fromValue(QList<MenuEvent>{event})});
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int>{open});
    EXPECT_EQ(chosen, 0);
    const QDBusMessage lines = host.call(item, "/MenuBar", menuInterface, "GetGroupProperties",
                                         {QVariant::fromValue(QList<int>()), QStringList{"label"}});
    const auto known = qdbus_cast<QList<MenuLine>>(lines.arguments().value(0));
    ASSERT_EQ(known.size(), 2);
    EXPECT_EQ(known[1].properties, (QVariantMap{{"label", "Quit"}}));
}

TEST_F(LinuxStatusItemsTest, ANewPanelGetsTheItemsOfBefore) {
    std::optional<FakeBar> host(std::in_place);
    start();
    const QString item = itemOf(*host);
    host.reset();
    host.emplace();
    EXPECT_EQ(itemOf(*host), item);
    host->activate(item, 5, 5);
    EXPECT_TRUE(waitUntil([&] { return !opened.empty(); }));
}

TEST_F(LinuxStatusItemsTest, WithoutAPanelTheStripComesAndGoesWithOne) {
    start();
    ASSERT_TRUE(waits());
    time.advance(LinuxStatusItems::patience - 1ms);
    EXPECT_EQ(bar->strip(), nullptr);
    time.advance(1ms);
    ASSERT_NE(bar->strip(), nullptr);
    EXPECT_TRUE(bar->strip()->isVisible());
    EXPECT_EQ(bar->strip()->cells().size(), 1u);
    {
        const FakeBar host;
        EXPECT_TRUE(waitUntil([this] { return bar->strip() == nullptr; }));
    }
    ASSERT_TRUE(waits());
    time.advance(LinuxStatusItems::patience);
    EXPECT_NE(bar->strip(), nullptr);
}

TEST_F(LinuxStatusItemsTest, APanelThatRestartsBringsNoStrip) {
    std::optional<FakeBar> host(std::in_place);
    start();
    itemOf(*host);
    host.reset();
    ASSERT_TRUE(waits());
    time.advance(LinuxStatusItems::patience - 1ms);
    host.emplace();
    ASSERT_TRUE(waitUntil([this] { return time.pending() == 0; }));
    time.advance(1min);
    EXPECT_EQ(bar->strip(), nullptr);
}

TEST_F(LinuxStatusItemsTest, AWatcherThatNothingShowsForIsNoPanel) {
    FakeBar host(false);
    start();
    ASSERT_TRUE(waits());
    time.advance(LinuxStatusItems::patience);
    EXPECT_NE(bar->strip(), nullptr);
    EXPECT_NE(itemOf(host), QString()); // is there for the panel that may come
    host.setHost(true);
    EXPECT_TRUE(waitUntil([this] { return bar->strip() == nullptr; }));
    host.setHost(false);
    EXPECT_TRUE(waits());
}

TEST_F(LinuxStatusItemsTest, WithoutABusThereIsTheStrip) {
    bar.emplace(QDBusConnection(QStringLiteral("none")), appearance, time, QString());
    const auto item = bar->add("cpu", "CPU", {});
    time.advance(LinuxStatusItems::patience);
    EXPECT_NE(bar->strip(), nullptr);
}

TEST_F(LinuxStatusItemsTest, TheStripHoldsTheItemsFromTheRight) {
    showStrip();
    StatusStrip& strip = *bar->strip();
    auto memory = bar->add("memory", "Memory", {});
    ASSERT_EQ(strip.cells().size(), 2u);
    EXPECT_EQ(strip.cells()[1].title, "Memory"); // until it has a picture
    EXPECT_GT(strip.cellRect(1).width(), 0);
    EXPECT_EQ(strip.cellRect(1).right() + 1, strip.cellRect(0).left());
    EXPECT_EQ(strip.cellRect(0).width(), 70 + 2 * 7);
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_EQ(strip.geometry().right(), screen.right());
    EXPECT_EQ(strip.geometry().top(), screen.top());
    EXPECT_EQ(strip.height(), StatusStrip::thickness);
    memory.reset();
    EXPECT_EQ(strip.cells().size(), 1u);
    EXPECT_EQ(strip.geometry().right(), screen.right());
    EXPECT_TRUE(strip.cellRect(1).isNull());
    cpu.reset();
    EXPECT_EQ(bar->strip(), nullptr); // an empty strip is none
}

TEST_F(LinuxStatusItemsTest, AClickOnTheStripOpensAtTheCell) {
    showStrip();
    StatusStrip& strip = *bar->strip();
    const auto send = [&](QEvent::Type type, QPoint at) {
        QMouseEvent event(type, at, strip.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&strip, &event);
    };
    const QPoint middle = strip.cellRect(0).center();
    send(QEvent::MouseButtonPress, middle);
    send(QEvent::MouseButtonRelease, {1, 1}); // thought better of it
    send(QEvent::MouseButtonPress, middle);
    EXPECT_TRUE(opened.empty());
    send(QEvent::MouseButtonRelease, middle);
    ASSERT_TRUE(waitUntil([&] { return !opened.empty(); }));
    EXPECT_EQ(opened.size(), 1u);
    EXPECT_EQ(opened[0], strip.mapToGlobal(middle));
}

TEST_F(LinuxStatusItemsTest, ThePointerOnTheStripBringsATooltipAfterAWhile) {
    showStrip();
    StatusStrip& strip = *bar->strip();
    const auto windows = [] { return QGuiApplication::topLevelWindows().size(); };
    const auto before = windows();
    const QPoint middle = strip.cellRect(0).center();
    QMouseEvent move(QEvent::MouseMove, middle, strip.mapToGlobal(middle), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&strip, &move);
    time.advance(599ms);
    EXPECT_EQ(windows(), before);
    time.advance(1ms);
    EXPECT_EQ(windows(), before + 1);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&strip, &leave);
    EXPECT_EQ(windows(), before);
}

TEST_F(LinuxStatusItemsTest, ForAScreenReaderACellIsAButton) {
    showStrip();
    auto memory = bar->add("memory", "Memory", {});
    QAccessibleInterface* strip = QAccessible::queryAccessibleInterface(bar->strip());
    ASSERT_NE(strip, nullptr);
    EXPECT_EQ(strip->role(), QAccessible::ToolBar);
    ASSERT_EQ(strip->childCount(), 2);
    QAccessibleInterface* cell = strip->child(0);
    EXPECT_EQ(cell->role(), QAccessible::Button);
    EXPECT_EQ(cell->text(QAccessible::Name), "CPU 12%");
    EXPECT_EQ(strip->child(1)->text(QAccessible::Name), "Memory");
    EXPECT_EQ(strip->indexOfChild(strip->child(1)), 1);
    const QPoint middle = bar->strip()->mapToGlobal(bar->strip()->cellRect(0).center());
    EXPECT_EQ(strip->childAt(middle.x(), middle.y()), cell);
    cell->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(waitUntil([&] { return !opened.empty(); }));
    memory.reset();
    EXPECT_EQ(strip->childCount(), 1);
    cpu.reset(); // and the strip with it
}

TEST_F(LinuxStatusItemsTest, TheStripCannotBeClosed) {
    showStrip();
    EXPECT_FALSE(bar->strip()->close());
    EXPECT_TRUE(bar->strip()->isVisible());
}

TEST_F(LinuxStatusItemsTest, TheStripFollowsTheAppearance) {
    appearance.set({.isDark = true});
    showStrip();
    EXPECT_TRUE(bar->strip()->isDark());
    appearance.set({.isDark = false});
    EXPECT_FALSE(bar->strip()->isDark());
}

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
