#include "components/AppTile.h"

#include "components/Palette.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <set>

namespace tavero {
namespace {

QImage drawn(TileKind kind, const QString& name, QSize size = {64, 64}) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawAppTile(painter, kind, name, size);
    return image;
}

bool has(const QImage& image, const QColor& color) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) == color) return true;
    return false;
}

TEST(AppTile, TheInitialIsTheFirstLetterOrDigitOfTheName) {
    EXPECT_EQ(tileInitial("editor"), "E");
    EXPECT_EQ(tileInitial("  «éditeur»"), "É");
    EXPECT_EQ(tileInitial("7-Zip"), "7");
    EXPECT_EQ(tileInitial("写真"), "写");
    EXPECT_EQ(tileInitial(QString::fromUtf8("𐐨x")), QString::fromUtf8("𐐀")); // beyond 16 bits
    EXPECT_EQ(tileInitial("…"), "");
    EXPECT_EQ(tileInitial(""), "");
    EXPECT_EQ(tileInitial(QString(QChar(0xD800))), ""); // half a character
}

TEST(AppTile, AnAppKeepsItsColorAndAppsHaveSeveral) {
    EXPECT_EQ(tileColor(TileKind::app, "Editor"), tileColor(TileKind::app, "Editor"));
    std::set<QRgb> colors;
    for (const char* name : {"Editor", "Mail", "Music", "Photos", "Terminal", "Notes", "Maps"})
        colors.insert(tileColor(TileKind::app, name).rgb());
    EXPECT_GT(colors.size(), 2u);
}

TEST(AppTile, WhiteReadsOnEveryColor) {
    for (const TileKind kind : {TileKind::app, TileKind::tool, TileKind::system})
        for (int name = 0; name < 100; ++name)
            EXPECT_GE(contrast(tileColor(kind, QString::number(name)), Qt::white),
                      readableContrast);
}

TEST(AppTile, EveryKindShowsItsSignInWhite) {
    for (const TileKind kind : {TileKind::app, TileKind::tool, TileKind::system}) {
        const QImage image = drawn(kind, "Editor");
        EXPECT_TRUE(has(image, Qt::white));
        EXPECT_TRUE(has(image, tileColor(kind, "Editor")));
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0); // round corners
    }
    EXPECT_NE(drawn(TileKind::app, "Editor"), drawn(TileKind::app, "Ample"));
    EXPECT_FALSE(has(drawn(TileKind::app, ""), Qt::white));
}

TEST(AppTile, WithoutRoomItDrawsNothing) {
    EXPECT_EQ(drawn(TileKind::system, "x", {1, 1}).size(), QSize(1, 1));
    QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawAppTile(painter, TileKind::app, "x", {0, 4});
    drawAppTile(painter, TileKind::app, "x", {-3, -3});
    EXPECT_EQ(image.pixelColor(1, 1).alpha(), 0);
}

} // namespace
} // namespace tavero
