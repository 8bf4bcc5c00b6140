#include "desktop/linux/LinuxAppIcons.h"

#include "platform/linux/TemporaryTree.h"

#include <QIcon>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace tavero {
namespace {

class LinuxAppIconsTest : public testing::Test {
  protected:
    TemporaryTree tree;
    LinuxAppIcons icons;

    std::string path(const std::string& file) const { return tree.root() / file; }
    std::string entry(const std::string& icon) const {
        tree.write("app.desktop", "[Desktop Entry]\nType=Application\nName=App\nIcon=" + icon +
                                      "\n[Desktop Action x]\nIcon=other\n");
        return path("app.desktop");
    }
    void draw(const std::string& file, QSize size, QColor color) const {
        tree.write(file, "");
        QImage image(size, QImage::Format_ARGB32);
        image.fill(color);
        ASSERT_TRUE(image.save(QString::fromStdString(path(file)), "PNG"));
    }
    // A theme of this tree, for the names that an entry may hold.
    void useTheme() const {
        QIcon::setThemeSearchPaths({QString::fromStdString(path("icons"))});
        tree.write("icons/hicolor/index.theme", "[Icon Theme]\nName=Hicolor\n"
                                                "Directories=32x32/apps,64x64/apps\n"
                                                "[32x32/apps]\nSize=32\nType=Fixed\n"
                                                "[64x64/apps]\nSize=64\nType=Fixed\n");
        QIcon::setThemeName("hicolor");
    }
};

TEST_F(LinuxAppIconsTest, AnIconIsReadFromThePathThatTheEntryNames) {
    draw("picture", {48, 48}, Qt::red);
    const QImage icon = icons.icon(entry(path("picture")), 48);
    ASSERT_EQ(icon.size(), QSize(48, 48));
    EXPECT_EQ(icon.pixelColor(24, 24), QColor(Qt::red));
}

TEST_F(LinuxAppIconsTest, AnotherShapeIsFittedIntoTheSquare) {
    draw("wide.png", {100, 50}, Qt::red);
    const QImage icon = icons.icon(entry(path("wide.png")), 32);
    ASSERT_EQ(icon.size(), QSize(32, 32));
    EXPECT_EQ(icon.pixelColor(16, 16), QColor(Qt::red));
    EXPECT_EQ(icon.pixelColor(16, 1).alpha(), 0);
}

TEST_F(LinuxAppIconsTest, ANameIsLookedUpInTheIconThemeAtTheSizeThatFits) {
    draw("icons/hicolor/32x32/apps/org.example.App.png", {32, 32}, Qt::green);
    draw("icons/hicolor/64x64/apps/org.example.App.png", {64, 64}, Qt::blue);
    useTheme();
    EXPECT_EQ(icons.icon(entry("org.example.App"), 32).pixelColor(16, 16), QColor(Qt::green));
    EXPECT_EQ(icons.icon(entry("org.example.App.png"), 64).pixelColor(32, 32), QColor(Qt::blue));
}

TEST_F(LinuxAppIconsTest, WhatWasReadOnceIsKeptAndSoIsThatThereIsNone) {
    draw("picture.png", {32, 32}, Qt::red);
    const std::string app = entry(path("picture.png"));
    const QImage first = icons.icon(app, 32);
    EXPECT_TRUE(icons.icon(path("later.desktop"), 32).isNull());
    tree.write("later.desktop", "[Desktop Entry]\nType=Application\nIcon=" + path("picture.png"));
    EXPECT_TRUE(icons.icon(path("later.desktop"), 32).isNull());
    tree.remove("picture.png");
    EXPECT_EQ(icons.icon(app, 32).cacheKey(), first.cacheKey());
    EXPECT_TRUE(icons.icon(app, 64).isNull()); // another size is another reading
}

TEST_F(LinuxAppIconsTest, WhatHasNoIconGivesNone) {
    useTheme();
    tree.write("broken.png", "no picture");
    for (const std::string& icon :
         {std::string(), std::string("no-such-icon-anywhere"), std::string("../up"),
          path("missing.png"), path("broken.png"), path("."), std::string("/dev/zero")})
        EXPECT_TRUE(LinuxAppIcons().icon(entry(icon), 32).isNull()) << icon;
    EXPECT_TRUE(icons.icon("", 32).isNull());
    EXPECT_TRUE(icons.icon("/Applications/Editor.app", 32).isNull());
    EXPECT_TRUE(icons.icon(path("Tool.AppImage"), 32).isNull());
    EXPECT_TRUE(icons.icon(entry("x"), 0).isNull());
    EXPECT_TRUE(icons.icon(entry("x"), -1).isNull());
    EXPECT_TRUE(icons.icon(entry("x"), 2'000'000'000).isNull());
}

TEST_F(LinuxAppIconsTest, APipeIsNotWaitedFor) {
    ASSERT_EQ(::mkfifo(path("pipe.desktop").c_str(), 0600), 0);
    ASSERT_EQ(::mkfifo(path("pipe.png").c_str(), 0600), 0);
    EXPECT_TRUE(icons.icon(path("pipe.desktop"), 32).isNull());
    EXPECT_TRUE(icons.icon(entry(path("pipe.png")), 32).isNull());
}

} // namespace
} // namespace tavero
