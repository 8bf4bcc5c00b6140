#include "components/Sparkline.h"

#include "components/GraphSeries.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tavero {
namespace {

using namespace std::chrono_literals;

const Date end{1000s};
const QColor color(0x2772AF);
constexpr QSizeF size{120, 42};

GraphPoint point(std::chrono::nanoseconds beforeEnd, double value) {
    return {end - beforeEnd, value};
}

QPolygonF curve(const std::vector<GraphPoint>& points, QSizeF in = size) {
    return sparklineCurve(points, in);
}

QImage drawn(const std::vector<GraphPoint>& points, bool isDark = false) {
    QImage image(size.toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawSparkline(painter, points, size, color, isDark);
    return image;
}

bool isEmpty(const QImage& image) {
    QImage nothing(image.size(), image.format());
    nothing.fill(Qt::transparent);
    return image == nothing;
}

TEST(Sparkline, TimeRunsFromLeftToRightAndEndsAtTheNewestPoint) {
    EXPECT_EQ(curve({point(60s, 0), point(30s, 0), point(0s, 0)}),
              QPolygonF(QList<QPointF>{{0, 41}, {60, 41}, {120, 41}}));
}

TEST(Sparkline, ValuesStandBetweenOnePixelFromTheBottomAndOneFromTheTop) {
    EXPECT_EQ(curve({point(60s, 0), point(30s, 0.5), point(0s, 1)}),
              QPolygonF(QList<QPointF>{{0, 41}, {60, 21}, {120, 1}}));
}

TEST(Sparkline, ValuesOutsideAreClampedAndNoNumberIsLeftOut) {
    EXPECT_EQ(curve({point(60s, -5), point(30s, std::nan("")), point(0s, 1e300)}),
              QPolygonF(QList<QPointF>{{0, 41}, {120, 1}}));
}

TEST(Sparkline, APointOlderThanTheWindowIsLeftOutAndOneExactlyAsOldStays) {
    EXPECT_EQ(curve({point(60s + 1ns, 1), point(60s, 0), point(0s, 0)}).size(), 2);
}

TEST(Sparkline, ItIsAnchoredToTheNewestPointWheneverThatWas) {
    const std::vector<GraphPoint> before{{end - 3600s, 0}, {end - 3590s, 0}};
    EXPECT_EQ(curve(before), QPolygonF(QList<QPointF>{{100, 41}, {120, 41}}));
}

TEST(Sparkline, AnotherWindowStretchesTheTime) {
    const std::vector<GraphPoint> points{point(60s, 0), point(30s, 0), point(0s, 0)};
    EXPECT_EQ(sparklineCurve(points, size, 120s).first().x(), 60);
    EXPECT_TRUE(sparklineCurve(points, size, 0s).isEmpty());
}

TEST(Sparkline, OnePointInTheWindowDrawsNothing) {
    EXPECT_TRUE(isEmpty(drawn({point(100s, 0.5), point(0s, 0.5)})));
    EXPECT_TRUE(isEmpty(drawn({point(0s, 0.5)})));
}

TEST(Sparkline, NoPointsAndNoRoomDrawNothing) {
    EXPECT_TRUE(isEmpty(drawn({})));
    EXPECT_TRUE(curve({point(1s, 0), point(0s, 0)}, {0, 10}).isEmpty());
    EXPECT_TRUE(curve({point(1s, 0), point(0s, 0)}, {10, 0}).isEmpty());
}

TEST(Sparkline, TheStrokeHasTheFullColorAndTheAreaBelowAVeilOfIt) {
    const QImage light = drawn({point(60s, 0.5), point(0s, 0.5)});
    EXPECT_NEAR(light.pixelColor(60, 20).alphaF(), 0.75, 0.005); // half of the width of 1.5
    EXPECT_NEAR(light.pixelColor(60, 20).blueF(), color.blueF(), 0.005);
    EXPECT_EQ(light.pixelColor(60, 10).alpha(), 0);
    EXPECT_NEAR(light.pixelColor(60, 35).alphaF(), 0.14, 0.005);
    const QImage dark = drawn({point(60s, 0.5), point(0s, 0.5)}, true);
    EXPECT_NEAR(dark.pixelColor(60, 35).alphaF(), 0.26, 0.005);
}

TEST(Sparkline, TheVeilEndsUnderTheFirstPoint) {
    const QImage image = drawn({point(30s, 1), point(0s, 1)});
    EXPECT_EQ(image.pixelColor(50, 35).alpha(), 0);
    EXPECT_GT(image.pixelColor(70, 35).alpha(), 0);
}

TEST(GraphSeries, EqualPointsTellNobody) {
    GraphSeries series;
    int changes = 0;
    QObject::connect(&series, &GraphSeries::changed, [&] { ++changes; });
    series.set({point(1s, 0.1), point(0s, 0.2)});
    series.set({point(1s, 0.1), point(0s, 0.2)});
    EXPECT_EQ(changes, 1);
    series.set({});
    EXPECT_EQ(changes, 2);
}

} // namespace
} // namespace tavero
