#include "monitor/Graphs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double mebibyte = 1024.0 * 1024;
constexpr Date start{1'700'000'000s};

LiveSnapshot at(Date date) {
    LiveSnapshot snapshot;
    snapshot.date = date;
    return snapshot;
}

std::vector<double> values(const Graphs& graphs, Metric metric) {
    std::vector<double> list;
    const GraphHistory& history = graphs.rawHistory();
    if (const auto found = history.find(metric); found != history.end())
        for (const GraphPoint& point : found->second) list.push_back(point.value);
    return list;
}

TEST(Graphs, AMetricWithoutASourceIsSkippedAndHasNoCurve) {
    Graphs graphs;
    graphs.feed(at(start));
    EXPECT_EQ(graphs.rawHistory().size(), 2u);
    EXPECT_THAT(values(graphs, Metric::disk), ElementsAre(0));
    EXPECT_THAT(values(graphs, Metric::network), ElementsAre(0));
    EXPECT_EQ(graphs.rawUpload(), (std::vector<GraphPoint>{{start, 0}}));
}

TEST(Graphs, EveryMetricFeedsItsCurve) {
    LiveSnapshot snapshot = at(start);
    snapshot.cpu = {.user = 0.25, .system = 0.5};
    snapshot.memory = {.total = 100, .app = 30, .wired = 10, .compressed = 10};
    snapshot.gpu = {.device = 0.125};
    snapshot.systemWatts = 30;
    snapshot.cpuTemperature = 55;
    snapshot.diskReadPerSecond = 3;
    snapshot.diskWritePerSecond = 4;
    snapshot.networkInPerSecond = 5;
    snapshot.networkOutPerSecond = 6;
    Graphs graphs;
    graphs.feed(snapshot);
    EXPECT_THAT(values(graphs, Metric::cpu), ElementsAre(0.75));
    EXPECT_THAT(values(graphs, Metric::memory), ElementsAre(0.5));
    EXPECT_THAT(values(graphs, Metric::gpu), ElementsAre(0.125));
    EXPECT_THAT(values(graphs, Metric::power), ElementsAre(0.5));
    EXPECT_THAT(values(graphs, Metric::disk), ElementsAre(7));
    EXPECT_THAT(values(graphs, Metric::temperature), ElementsAre(0.5));
    EXPECT_THAT(values(graphs, Metric::network), ElementsAre(5));
    EXPECT_THAT(graphs.rawUpload(), ElementsAre(GraphPoint{start, 6}));
}

TEST(Graphs, WithABatteryThePowerCurveIsTheChargeNotTheWatts) {
    LiveSnapshot snapshot = at(start);
    snapshot.systemWatts = 30;
    snapshot.battery = {.percent = 80};
    Graphs graphs;
    graphs.feed(snapshot);
    EXPECT_THAT(values(graphs, Metric::power), ElementsAre(0.8));
}

TEST(Graphs, WattsAndDegreesAreCappedAtTheTop) {
    LiveSnapshot snapshot = at(start);
    snapshot.systemWatts = 61;
    snapshot.cpuTemperature = 120;
    Graphs graphs;
    graphs.feed(snapshot);
    EXPECT_THAT(values(graphs, Metric::power), ElementsAre(1));
    EXPECT_THAT(values(graphs, Metric::temperature), ElementsAre(1));
}

TEST(Graphs, AMemoryOfUnknownSizeDividesNothing) {
    LiveSnapshot snapshot = at(start);
    snapshot.memory = {.total = 0, .app = 3};
    Graphs graphs;
    graphs.feed(snapshot);
    EXPECT_THAT(values(graphs, Metric::memory), ElementsAre(3));
}

TEST(Graphs, AValueThatIsNoNumberIsSkipped) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    LiveSnapshot snapshot = at(start);
    snapshot.cpu = {.user = nan};
    snapshot.systemWatts = nan;
    snapshot.cpuTemperature = std::numeric_limits<double>::infinity();
    snapshot.diskReadPerSecond = nan;
    snapshot.networkOutPerSecond = nan;
    Graphs graphs;
    graphs.feed(snapshot);
    EXPECT_EQ(graphs.rawHistory().size(), 1u);
    EXPECT_THAT(graphs.rawUpload(), IsEmpty());
    EXPECT_EQ(graphs.top(Metric::network), 0.1 * mebibyte);
}

TEST(Graphs, PointsStaySixtyFiveSeconds) {
    Graphs graphs;
    for (const auto second : {0s, 1s, 65s}) graphs.feed(at(start + second));
    EXPECT_EQ(graphs.rawUpload().size(), 3u); // the first is exactly 65 s old
    graphs.feed(at(start + 65s + 1ns));
    EXPECT_EQ(graphs.rawUpload().front().time, start + 1s);
    EXPECT_EQ(graphs.rawUpload().size(), 3u);
}

TEST(Graphs, AClockSetBackLeavesNoPointsOfTheFuture) {
    Graphs graphs;
    graphs.feed(at(start));
    graphs.feed(at(start + 24h));
    graphs.feed(at(start + 1s));
    ASSERT_EQ(graphs.rawUpload().size(), 1u);
    EXPECT_EQ(graphs.rawUpload().front().time, start + 1s);
}

TEST(Graphs, OnlyDiskAndNetworkHaveATop) {
    const Graphs graphs;
    for (const Metric metric : allMetrics)
        EXPECT_EQ(graphs.top(metric).has_value(),
                  metric == Metric::disk || metric == Metric::network);
}

TEST(Graphs, WithoutADiskCurveTheHistoryHasNoneAndTheTopStands) {
    const Graphs graphs;
    EXPECT_FALSE(graphs.history().contains(Metric::disk));
    EXPECT_EQ(graphs.top(Metric::disk), 0.1 * mebibyte);
    EXPECT_THAT(graphs.uploadHistory(), IsEmpty());
}

TEST(Graphs, DownloadAndUploadShareOneScale) {
    LiveSnapshot snapshot = at(start);
    snapshot.networkInPerSecond = mebibyte;
    snapshot.networkOutPerSecond = 4 * mebibyte;
    Graphs graphs;
    graphs.feed(snapshot);
    EXPECT_EQ(graphs.top(Metric::network), 5 * mebibyte);
    EXPECT_DOUBLE_EQ(graphs.history().at(Metric::network)[0].value, 0.2);
    EXPECT_DOUBLE_EQ(graphs.uploadHistory()[0].value, 0.8);
}

TEST(Graphs, TheHistoryScalesDiskAndLeavesFractions) {
    LiveSnapshot snapshot = at(start);
    snapshot.cpu = {.user = 0.5};
    snapshot.diskReadPerSecond = 8 * mebibyte;
    Graphs graphs;
    graphs.feed(snapshot);
    const GraphHistory history = graphs.history();
    EXPECT_EQ(history.at(Metric::disk)[0], (GraphPoint{start, 0.8}));
    EXPECT_EQ(history.at(Metric::cpu)[0], (GraphPoint{start, 0.5}));
}

TEST(NiceTop, IsTheFirstRoundRateThatHoldsTheValue) {
    EXPECT_EQ(niceTop(0), 0.1 * mebibyte);
    EXPECT_EQ(niceTop(-1), 0.1 * mebibyte);
    EXPECT_EQ(niceTop(0.2 * mebibyte), 0.25 * mebibyte);
    EXPECT_EQ(niceTop(1'048'576), mebibyte);
    EXPECT_EQ(niceTop(1'048'577), 2 * mebibyte);
    EXPECT_EQ(niceTop(5000 * mebibyte), 5000 * mebibyte);
    EXPECT_EQ(niceTop(6 * 1024 * mebibyte), 10000 * mebibyte);
    EXPECT_EQ(niceTop(1e18), 10000 * mebibyte);
}

} // namespace
} // namespace tavero
