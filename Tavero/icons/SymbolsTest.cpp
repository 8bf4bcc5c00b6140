#include "icons/Symbols.h"

#include "icons/SymbolOutlines.h"
#include "presentation/SymbolNames.h"

#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int side = 32;
constexpr int margin = 8;

// The symbol in the middle of an empty picture, with room around its box.
QImage drawn(std::string_view name, const QColor& color = Qt::black) {
    QImage image(side + 2 * margin, side + 2 * margin, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawSymbol(painter, name, QRectF(margin, margin, side, side), color);
    painter.end();
    return image;
}

template <typename Predicate>
int countPixels(const QImage& image, Predicate predicate) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (predicate(x, y, qAlpha(image.pixel(x, y)))) ++count;
    return count;
}

bool isInBox(int x, int y) {
    const auto inside = [](int at) { return at >= margin && at < margin + side; };
    return inside(x) && inside(y);
}

TEST(Symbols, EveryNameHasAPictureAndEveryPictureAName) {
    std::vector<std::string_view> pictures;
    for (const SymbolEntry& entry : symbolOutlines.entries) pictures.push_back(entry.name);
    EXPECT_THAT(pictures, testing::ElementsAreArray(symbolNames));
    for (const std::string_view name : symbolNames) EXPECT_TRUE(hasSymbol(name)) << name;
}

TEST(Symbols, NoOtherNameHasOne) {
    for (const char* name : {"", "cp", "cpu ", "CPU", "zebra", "aardvark", "bolt.", "xmark.fill"}) {
        EXPECT_FALSE(hasSymbol(name)) << name;
        EXPECT_TRUE(symbolSize(name, 11).isEmpty()) << name;
        EXPECT_EQ(countPixels(drawn(name), [](int, int, int alpha) { return alpha != 0; }), 0);
    }
}

TEST(Symbols, EveryDrawingFillsItsBoxAndStaysInIt) {
    for (const std::string_view name : symbolNames) {
        const QImage image = drawn(name);
        EXPECT_GT(countPixels(image, [](int, int, int alpha) { return alpha > 200; }), 30) << name;
        EXPECT_EQ(
            countPixels(image, [](int x, int y, int alpha) { return alpha > 0 && !isInBox(x, y); }),
            0)
            << name;
        // Most of the box is spanned at least one way, so that symbols beside each other look
        // alike.
        int left = side, right = 0, top = side, bottom = 0;
        countPixels(image, [&](int x, int y, int alpha) {
            if (alpha < 100) return false;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
            return true;
        });
        EXPECT_GE(std::max(right - left, bottom - top), side / 2) << name;
    }
}

TEST(Symbols, ATranslucentColourIsEvenEverywhere) {
    for (const std::string_view name : symbolNames)
        EXPECT_EQ(countPixels(drawn(name, QColor(0, 0, 0, 100)),
                              [](int, int, int alpha) { return alpha > 101; }),
                  0)
            << name;
}

TEST(Symbols, TheLoudspeakersKeepTheirPlaceWhileTheirWavesGrow) {
    const auto inked = [](std::string_view name) {
        return countPixels(drawn(name), [](int, int, int alpha) { return alpha > 128; });
    };
    EXPECT_LT(inked("speaker.wave.1.fill"), inked("speaker.wave.2.fill"));
    EXPECT_LT(inked("speaker.wave.2.fill"), inked("speaker.wave.3.fill"));
    const QImage quiet = drawn("speaker.wave.1.fill");
    const QImage loud = drawn("speaker.wave.3.fill");
    const QRect body(margin, margin, side / 2, side);
    EXPECT_EQ(quiet.copy(body), loud.copy(body));
}

TEST(Symbols, TheyGrowWithThePointSizeAndFitAnyBox) {
    EXPECT_EQ(symbolSize("cpu", 22), symbolSize("cpu", 11) * 2);
    EXPECT_TRUE(symbolSize("cpu", 0).isEmpty());
    EXPECT_TRUE(symbolSize("cpu", -3).isEmpty());

    QImage wide(60, 20, QImage::Format_ARGB32);
    wide.fill(Qt::transparent);
    QPainter painter(&wide);
    drawSymbol(painter, "circle.fill", QRectF(0, 0, 60, 20), Qt::red);
    drawSymbol(painter, "circle.fill", QRectF(), Qt::red);
    painter.end();
    EXPECT_EQ(qAlpha(wide.pixel(30, 10)), 255);
    EXPECT_EQ(qAlpha(wide.pixel(18, 10)), 0);
    EXPECT_EQ(qAlpha(wide.pixel(41, 10)), 0);
}

// Whether it begins like one of the names that are put together: "bolt.", "speaker.".
bool looksLikeSymbol(std::string_view text) {
    const std::string_view first = text.substr(0, text.find('.') + 1);
    return std::any_of(symbolNames.begin(), symbolNames.end(),
                       [&](std::string_view name) { return name.starts_with(first); });
}

// Names of symbols in a line of source: what is assigned to a symbol or handed to something called
// so, and whatever in quotes looks like one.
std::vector<std::string> symbolsIn(const std::string& line) {
    static const std::regex assigned(R"re([sS]ymbol\w*\s*[:=]\s*"([^"]*)")re");
    static const std::regex handed(R"re([sS]ymbol\w*\((?:\*?\w+,\s*)?"([^"]*)")re");
    static const std::regex dotted(R"re("([a-z0-9]+(?:\.[a-z0-9]+)+)")re");
    std::vector<std::string> names;
    for (const std::regex* pattern : {&assigned, &handed, &dotted})
        for (std::sregex_iterator match(line.begin(), line.end(), *pattern), end; match != end;
             ++match)
            if (pattern != &dotted || looksLikeSymbol((*match)[1].str()))
                names.push_back((*match)[1]);
    return names;
}

TEST(Symbols, TheSearchFindsNamesInSources) {
    EXPECT_THAT(symbolsIn(R"(    symbol: "lock.filled")"),
                ElementsAre("lock.filled", "lock.filled"));
    EXPECT_THAT(symbolsIn(R"(.symbol = "padlock",)"), ElementsAre("padlock"));
    EXPECT_THAT(symbolsIn(R"(drawSymbol(painter, "padlock", box, color);)"),
                ElementsAre("padlock"));
    EXPECT_THAT(symbolsIn(R"(isMuted ? "speaker.off" : "speaker.wave.9.fill")"),
                ElementsAre("speaker.off", "speaker.wave.9.fill"));
    EXPECT_THAT(symbolsIn(R"(get("lock") + "org.example.lock")"), IsEmpty());
}

TEST(Symbols, NoSourceNamesASymbolWithoutAPicture) {
    int found = 0;
    for (const auto& file : std::filesystem::recursive_directory_iterator(TAVERO_SOURCES)) {
        const std::string path = file.path().string();
        const std::string extension = file.path().extension().string();
        if (extension != ".cpp" && extension != ".h" && extension != ".qml") continue;
        if (path.ends_with("Test.cpp")) continue; // which name what doesn't exist
        std::ifstream source(path);
        for (std::string line; std::getline(source, line);)
            for (const std::string& name : symbolsIn(line)) {
                ++found;
                EXPECT_TRUE(hasSymbol(name)) << name << " in " << path;
            }
    }
    EXPECT_GT(found, static_cast<int>(symbolNames.size()) / 2); // of the table of names alone
}

} // namespace
} // namespace tavero
