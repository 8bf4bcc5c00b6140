#include "menubar/test/GoldenPicture.h"

#include <QDir>

#include <gtest/gtest.h>

namespace tavero {
namespace {

// Processors round differently when they blend.
constexpr int tolerated = 2; // of 255

QImage kept(const std::string& name) {
    const QDir folder(TAVERO_GOLDEN_PICTURES);
    return QImage(folder.filePath(QString::fromStdString(name + ".png")));
}

// After a wanted change: tavero-menubar-sheet docs/menu-bar.png Tavero/menubar/golden
TEST(GoldenPictures, EveryItemLooksAsItDid) {
    for (const auto& [name, samples] : sampleGroups())
        EXPECT_LE(largestDifference(goldenPicture(samples), kept(name)), tolerated) << name;
}

TEST(GoldenPictures, AnotherPictureIsTold) {
    const QImage picture = kept("cpu");
    ASSERT_FALSE(picture.isNull());
    QImage other = picture;
    other.setPixelColor(0, 0, QColor(0, 0, 0, 10));
    EXPECT_GT(largestDifference(picture, other), tolerated);
    EXPECT_EQ(largestDifference(picture, picture), 0);
    EXPECT_EQ(largestDifference(picture, kept("memory")), 255);
}

} // namespace
} // namespace tavero
