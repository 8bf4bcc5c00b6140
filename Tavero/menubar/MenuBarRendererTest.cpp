#include "menubar/MenuBarRenderer.h"

#include "drawing/Mark.h"
#include "drawing/test/Canvas.h"
#include "menubar/Face.h"
#include "menubar/test/Samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <tuple>
#include <vector>

namespace tavero {
namespace {

constexpr double scale = 2;

const MenuBarFaces& faces() { return MenuBarFaces::shared(); }

std::vector<Sample> allSamples() {
    std::vector<Sample> samples;
    for (SampleGroup& group : sampleGroups())
        for (Sample& sample : group.samples) samples.push_back(std::move(sample));
    return samples;
}

int width(const QImage& image) { return qRound(image.deviceIndependentSize().width()); }

QImage image(Metric metric, MenuBarItemMode mode, bool showsNames = true,
             const LiveSnapshot& snapshot = laptopSnapshot()) {
    return MenuBarRenderer::image(metric, mode, snapshot, wavyHistory(), {.showsNames = showsNames},
                                  scale);
}

TEST(MenuBarRenderer, AllPicturesAreEighteenPointsHighAtEveryScale) {
    for (const Sample& sample : allSamples()) {
        if (std::holds_alternative<MarkContent>(sample.content)) continue;
        const QImage once = MenuBarRenderer::image(sample.content, 1);
        const QImage twice = MenuBarRenderer::image(sample.content, 2);
        EXPECT_EQ(once.height(), 18) << sample.name;
        EXPECT_EQ(twice.size(), once.size() * 2) << sample.name;
        EXPECT_EQ(twice.devicePixelRatio(), 2) << sample.name;
    }
}

TEST(MenuBarRenderer, TheWidthsAddUp) {
    const int icon = 18;
    EXPECT_EQ(width(image(Metric::cpu, MenuBarItemMode::value, false)),
              icon + faces().value.reservedWidth("88%"));
    EXPECT_EQ(width(image(Metric::cpu, MenuBarItemMode::graph, false)), icon + 26);
    EXPECT_EQ(width(image(Metric::disk, MenuBarItemMode::graph, false)), icon + 13);
    EXPECT_EQ(width(image(Metric::cpu, MenuBarItemMode::both, false)),
              icon + 26 + 4 + faces().value.reservedWidth("88%"));
    EXPECT_EQ(width(image(Metric::memory, MenuBarItemMode::both, false)),
              icon + 13 + 4 + faces().value.reservedWidth("8.8 GB"));
}

TEST(MenuBarRenderer, ASmallNameTakesTheRoomThatItNeeds) {
    const int icon = 18;
    EXPECT_EQ(width(image(Metric::power, MenuBarItemMode::graph)),
              icon + faces().name.reservedWidth("BATT"));
    EXPECT_EQ(width(image(Metric::cpu, MenuBarItemMode::graph)), icon + 26) << "it fits";
    EXPECT_EQ(width(image(Metric::cpu, MenuBarItemMode::value)),
              icon + faces().namedValue.reservedWidth("88%"));
    EXPECT_EQ(width(image(Metric::memory, MenuBarItemMode::value, true, {})),
              icon + faces().name.reservedWidth("MEM"))
        << "the placeholder is slimmer";
}

TEST(MenuBarRenderer, TheNetworkIsAsWideAsTheWiderRow) {
    const int icon = 18;
    const int rows =
        std::max(faces().small.reservedWidth("↑ 888K"), faces().small.reservedWidth("↓ 8.8M"));
    EXPECT_EQ(width(image(Metric::network, MenuBarItemMode::value)), icon + rows);
    EXPECT_EQ(width(image(Metric::network, MenuBarItemMode::both)), icon + 26 + 4 + rows);
}

TEST(MenuBarRenderer, TheWidthDependsOnHowManyDigitsThereAreAndNotOnWhich) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> fraction(0, 1);
    std::map<std::tuple<Metric, MenuBarItemMode, bool, std::string>, int> widths;
    for (int i = 0; i < 300; ++i) {
        LiveSnapshot snapshot;
        snapshot.cpu = CPUSnapshot{.user = fraction(random)};
        snapshot.memory =
            MemorySnapshot{.total = std::uint64_t{1} << 36,
                           .app = static_cast<std::uint64_t>(fraction(random) * 64 * (1 << 30))};
        snapshot.gpu = GPUSnapshot{.device = fraction(random)};
        if (i % 2 == 0) snapshot.battery = BatterySnapshot{.percent = i % 101};
        snapshot.systemWatts = fraction(random) * 200;
        snapshot.cpuTemperature = fraction(random) * 110;
        snapshot.diskAvailable = static_cast<std::int64_t>(fraction(random) * 2e12);
        snapshot.networkInPerSecond = std::pow(fraction(random), 4) * 2e8;
        snapshot.networkOutPerSecond = 0;
        for (const Metric metric : allMetrics)
            for (const auto mode : {MenuBarItemMode::value, MenuBarItemMode::both})
                for (const bool showsNames : {true, false}) {
                    const std::string shape = digitsAsEights(menuBarValue(metric, snapshot, {})) +
                                              std::string(smallName(metric, snapshot));
                    const int now = width(image(metric, mode, showsNames, snapshot));
                    const auto [before, isNew] =
                        widths.try_emplace({metric, mode, showsNames, shape}, now);
                    EXPECT_EQ(before->second, now) << shape;
                }
    }
    EXPECT_GT(widths.size(), 40u) << "many lengths were tried";
}

TEST(MenuBarRenderer, DigitsAreOfEqualWidth) {
    for (const Face* face : {&faces().value, &faces().small, &faces().namedValue, &faces().strain})
        for (char digit = '0'; digit <= '9'; ++digit)
            EXPECT_DOUBLE_EQ(face->width(std::string(1, digit)), face->width("8")) << digit;
}

TEST(MenuBarRenderer, ATemplateIsBlackInkAlone) {
    for (const Sample& sample : allSamples()) {
        if (std::holds_alternative<Strain>(sample.content)) continue;
        const QImage picture = MenuBarRenderer::image(sample.content, scale);
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                ASSERT_EQ(picture.pixel(x, y) & 0xFFFFFF, 0u) << sample.name;
        EXPECT_FALSE(inkOf(picture).isEmpty()) << sample.name;
    }
}

TEST(MenuBarRenderer, NothingYetIsAFlatLineThatPromisesACurve) {
    const LiveSnapshot snapshot = laptopSnapshot();
    const QImage picture = MenuBarRenderer::image(Metric::cpu, MenuBarItemMode::graph, snapshot, {},
                                                  {.showsNames = false}, scale);
    const QRect graph = inkOf(picture.copy(36, 0, 52, 36)); // right of the icon
    EXPECT_EQ(graph.width(), 52);
    EXPECT_EQ(graph.height(), 4); // 2.4 pixels, blurred at both edges
    EXPECT_NEAR(inkAt(picture, 60, graph.top() + 1), 0.3, 0.01);
    EXPECT_EQ(graph.top(), 26) << "a point above the bottom of the graph, which ends at 30";
}

TEST(MenuBarRenderer, TheRingIsFilledClockwiseFromTheTop) {
    LiveSnapshot snapshot;
    snapshot.battery = BatterySnapshot{.percent = 25};
    const QImage picture = MenuBarRenderer::image(Metric::power, MenuBarItemMode::graph, snapshot,
                                                  {}, {.showsNames = false}, scale);
    const int middle = 36 + 13; // pixels from the left, of a ring 13 points wide behind the icon
    EXPECT_EQ(inkAt(picture, middle + 7, 18 - 8), 1);
    EXPECT_NEAR(inkAt(picture, middle + 7, 18 + 7), 0.25, 0.01);
    EXPECT_NEAR(inkAt(picture, middle - 8, 18 - 8), 0.25, 0.01);
    EXPECT_EQ(inkAt(picture, middle, 18), 0);
}

TEST(MenuBarRenderer, StrainIsWhiteOnOrangeAndAsWideAsItsText) {
    const Strain strain{"Memory 93%", Metric::memory, "93%"};
    const QImage picture = MenuBarRenderer::strainImage(strain, scale);
    EXPECT_EQ(width(picture), 25 + faces().strain.reservedWidth("Memory 88%") + 7);
    EXPECT_EQ(picture.pixelColor(8, 18), QColor(0xE0, 0x78, 0x2A));
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0) << "the corners are round";
    const QRect text(50, 0, picture.width() - 64, 36);
    int white = 0;
    for (int y = text.top(); y < text.bottom(); ++y)
        for (int x = text.left(); x < text.right(); ++x)
            white += picture.pixelColor(x, y) == Qt::white ? 1 : 0;
    EXPECT_GT(white, 100);
}

TEST(MenuBarRenderer, TheMarkHasItsOwnSizeAndADotForAnUpdate) {
    const QImage plain = MenuBarRenderer::image(ItemContent(MarkContent{}), scale);
    const QImage ready = MenuBarRenderer::image(ItemContent(MarkContent{true}), scale);
    EXPECT_EQ(plain.size(), markSize.toSize() * 2);
    EXPECT_EQ(ready.size(), plain.size());
    EXPECT_NE(ready, plain);
}

TEST(MenuBarRenderer, TheSoundItemIsAsWideWhateverTheVolume) {
    const QImage loud = MenuBarRenderer::image(SoundContent{"speaker.wave.3.fill"}, scale);
    const QImage silent = MenuBarRenderer::image(SoundContent{"speaker.slash.fill"}, scale);
    EXPECT_EQ(loud.size(), silent.size());
    EXPECT_NE(loud, silent);
}

TEST(MenuBarRenderer, ASquareCellIsSquareAndHoldsEverything) {
    for (const Sample& sample : allSamples()) {
        const QImage picture = MenuBarRenderer::squareImage(sample.content, scale);
        EXPECT_EQ(picture.size(), QSize(44, 44)) << sample.name;
        EXPECT_EQ(picture.devicePixelRatio(), 2) << sample.name;
        EXPECT_FALSE(inkOf(picture).isEmpty()) << sample.name;
    }
}

TEST(MenuBarRenderer, ALongNumberInASquareCellIsMadeToFit) {
    for (const Metric metric : allMetrics) {
        const MetricContent item = metricContent(metric, MenuBarItemMode::value, busySnapshot(), {},
                                                 {.showsNames = false});
        const QImage picture = MenuBarRenderer::squareImage(item, scale);
        for (int y = 22; y < 44; ++y) {
            EXPECT_LT(inkAt(picture, 0, y), 0.9) << title(metric); // cut off it would be full
            EXPECT_LT(inkAt(picture, 43, y), 0.9) << title(metric);
        }
    }
}

TEST(MenuBarRenderer, ASymbolWithoutAPictureTakesNoRoom) {
    const BluetoothContent unknown{{{"Thing", "no.such.symbol", 40}}};
    const QImage picture = MenuBarRenderer::image(unknown, scale);
    EXPECT_LE(width(picture), 1 + 3 + faces().value.reservedWidth("88%"));
    EXPECT_FALSE(inkOf(picture).isEmpty());
}

} // namespace
} // namespace tavero
