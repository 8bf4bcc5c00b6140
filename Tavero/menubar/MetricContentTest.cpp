#include "menubar/MetricContent.h"

#include "menubar/test/Samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tavero {
namespace {

using namespace std::chrono_literals;

MetricContent content(Metric metric, MenuBarItemMode mode, bool showsNames = true) {
    return metricContent(metric, mode, laptopSnapshot(), wavyHistory(), {.showsNames = showsNames});
}

TEST(MetricContent, TheNetworkShowsItsSmallNameOverAGraphOnly) {
    EXPECT_FALSE(content(Metric::network, MenuBarItemMode::both).showsName);
    EXPECT_FALSE(content(Metric::network, MenuBarItemMode::value).showsName);
    EXPECT_TRUE(content(Metric::network, MenuBarItemMode::graph).showsName);
    EXPECT_EQ(content(Metric::network, MenuBarItemMode::graph).name, "NET");
}

TEST(MetricContent, EveryOtherMetricShowsItsNameInEveryModeUnlessTheUserDoesNotWantThem) {
    for (const Metric metric : allMetrics) {
        if (metric == Metric::network) continue;
        for (const auto mode :
             {MenuBarItemMode::value, MenuBarItemMode::graph, MenuBarItemMode::both}) {
            EXPECT_TRUE(content(metric, mode).showsName);
            EXPECT_FALSE(content(metric, mode, false).showsName);
        }
    }
}

TEST(MetricContent, AShareHasARingAndAValueOverTimeACurve) {
    for (const Metric metric : allMetrics) {
        const MetricContent item = content(metric, MenuBarItemMode::both);
        EXPECT_EQ(hasRing(metric), item.curve.isEmpty());
        EXPECT_EQ(hasRing(metric), item.share > 0);
    }
}

TEST(MetricContent, WhatAModeDoesNotShowIsNoneOfItsValues) {
    const MetricContent value = content(Metric::cpu, MenuBarItemMode::value);
    EXPECT_TRUE(value.curve.isEmpty());
    EXPECT_EQ(content(Metric::memory, MenuBarItemMode::value).share, 0);
    EXPECT_EQ(content(Metric::cpu, MenuBarItemMode::graph).value, "");
}

TEST(MetricContent, TheRingTellsWhatIsTaken) {
    const LiveSnapshot snapshot = laptopSnapshot();
    EXPECT_DOUBLE_EQ(ringFraction(Metric::memory, snapshot), 7800.0 / 16384);
    EXPECT_DOUBLE_EQ(ringFraction(Metric::power, snapshot), 0.76);
    EXPECT_DOUBLE_EQ(ringFraction(Metric::disk, snapshot), 1 - 312.0 / 994);
    EXPECT_EQ(ringFraction(Metric::cpu, snapshot), 0);
    for (const Metric metric : allMetrics) EXPECT_EQ(ringFraction(metric, {}), 0);
}

TEST(MetricContent, AWholeOfNothingDividesByOne) {
    LiveSnapshot snapshot;
    snapshot.memory = MemorySnapshot{.app = 5};
    EXPECT_EQ(ringFraction(Metric::memory, snapshot), 1);
    snapshot.diskAvailable = 0;
    snapshot.diskCapacity = 0;
    EXPECT_EQ(ringFraction(Metric::disk, snapshot), 1);
    snapshot.diskAvailable = 5;
    EXPECT_EQ(ringFraction(Metric::disk, snapshot), 0);
    snapshot.diskAvailable = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(ringFraction(Metric::disk, snapshot), 1);
}

TEST(MetricContent, TheCurveIsAMinuteBeforeTheNewestPointAndOlderOnesStandAtItsEdge) {
    const Date end{1000s};
    const std::vector<GraphPoint> points{
        {end - 65s, 0.1}, {end - 60s, 0.2}, {end - 30s, 0.5}, {end, 1}};
    EXPECT_EQ(menuBarCurve(points),
              QPolygonF(QList<QPointF>{{0, 0.1}, {0, 0.2}, {0.5, 0.5}, {1, 1}}));
}

TEST(MetricContent, ValuesOfTheCurveAreClampedAndWhatIsNoNumberIsLeftOut) {
    const Date end{1000s};
    const std::vector<GraphPoint> points{{end - 60s, -3}, {end - 30s, std::nan("")}, {end, 1e300}};
    EXPECT_EQ(menuBarCurve(points), QPolygonF(QList<QPointF>{{0, 0}, {1, 1}}));
}

TEST(MetricContent, OnePointIsNoCurveYet) {
    EXPECT_TRUE(menuBarCurve({}).isEmpty());
    EXPECT_TRUE(menuBarCurve(std::vector<GraphPoint>{{Date{1s}, 0.5}}).isEmpty());
}

TEST(MetricContent, ATurnedClockLeavesTheCurveInItsPlace) {
    const std::vector<GraphPoint> points{{Date{5000s}, 0.5}, {Date{1000s}, 0.7}};
    EXPECT_EQ(menuBarCurve(points), QPolygonF(QList<QPointF>{{1, 0.5}, {1, 0.7}}));
}

} // namespace
} // namespace tavero
