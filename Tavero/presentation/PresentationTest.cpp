#include "presentation/MetricReading.h"
#include "presentation/MetricStats.h"
#include "presentation/MetricStatus.h"
#include "presentation/PageInsight.h"
#include "presentation/ScaledGraph.h"
#include "presentation/Section.h"
#include "presentation/test/RandomSnapshot.h"

#include <gtest/gtest.h>

#include <regex>

namespace tavero {
namespace {

bool hasNegativeNothing(const std::string& text) {
    static const std::regex pattern("-0(\\.0*)?([^0-9.]|$)");
    return std::regex_search(text, pattern);
}

// What a formatted number must never show.
void expectReadable(const std::string& text) {
    EXPECT_EQ(text.find("nan"), std::string::npos) << text;
    EXPECT_EQ(text.find("inf"), std::string::npos) << text;
    EXPECT_FALSE(hasNegativeNothing(text)) << text;
}

void expectFilled(const std::string& text) {
    EXPECT_FALSE(text.empty());
    expectReadable(text);
}

void expectReadable(const std::vector<Stat>& stats) {
    EXPECT_FALSE(stats.empty());
    for (const Stat& stat : stats) {
        expectFilled(stat.label);
        expectFilled(stat.value);
        expectFilled(std::string(stat.symbol()));
    }
}

TEST(Presentation, TheCheckItselfFindsWhatItLooksFor) {
    for (const char* bad : {"-0", "-0.0", "-0°C", "-0.0 MB/s", "Load -0.00 of 4"})
        EXPECT_TRUE(hasNegativeNothing(bad)) << bad;
    for (const char* fine : {"-0.3", "0", "-05", "10-0.1"})
        EXPECT_FALSE(hasNegativeNothing(fine)) << fine;
}

TEST(Presentation, AnySnapshotGivesReadableText) {
    std::mt19937_64 random(8);
    for (int round = 0; round < 4000; ++round) {
        const LiveSnapshot snapshot = randomSnapshot(random);
        const Format format{.networkBits = round % 2 != 0, .fahrenheit = round % 3 == 0};
        const Surroundings surroundings{.displays = 1, .openApps = -1, .uptime = "1 d"};
        for (const Metric metric : allMetrics) {
            const Reading shown = reading(metric, snapshot, format);
            expectFilled(shown.value);
            expectFilled(shown.unit);
            expectReadable(shown.note);
            if (const std::optional<Status> pill = status(metric, snapshot))
                expectFilled(pill->text);
            expectReadable(stats(metric, snapshot, format, surroundings));
            expectReadable(overviewStats(metric, snapshot, format, surroundings));
            if (const std::optional<PageInsight> verdict =
                    insight(metric, snapshot, format, surroundings)) {
                expectFilled(verdict->headline);
                expectReadable(verdict->detail);
            }
            expectReadable(graphScale(metric, snapshot.diskWritePerSecond, format));
        }
        for (const Section section : allSections)
            expectReadable(sidebarValue(section, snapshot, BluetoothSummary{true, 3}, format));
        expectFilled(graphLabel(snapshot.diskReadPerSecond, format));
        expectFilled(format.shortRate(snapshot.networkInPerSecond));
        if (HasFailure()) FAIL() << "in round " << round;
    }
}

} // namespace
} // namespace tavero
