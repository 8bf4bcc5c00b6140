#include "monitor/AppLogs.h"
#include "monitor/Graphs.h"
#include "monitor/NotchTexts.h"
#include "monitor/PowerShares.h"
#include "monitor/Strain.h"
#include "monitor/SystemIssue.h"
#include "monitor/Tops.h"
#include "presentation/MetricReading.h"
#include "presentation/test/RandomSnapshot.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tavero {
namespace {

void expectNumber(std::optional<double> value) { EXPECT_TRUE(std::isfinite(value.value_or(0))); }

void expectNumbers(const AppUsage& row) {
    expectNumber(row.watts);
    expectNumber(row.cpuAverage);
    expectNumber(row.gpuAverage);
    expectNumber(row.gpuPeak);
    expectNumber(row.memoryShare);
    for (const AppUsage& child : row.children) expectNumbers(child);
}

// As the engine gives a row: what is derived comes later.
void removeDerived(AppUsage& row) {
    row.watts = row.cpuAverage = row.gpuAverage = row.gpuPeak = row.memoryShare = std::nullopt;
    for (AppUsage& child : row.children) removeDerived(child);
}

// One machine whose sources give anything at all, and whose clock is set back now and then.
TEST(DerivedState, NoSnapshotLeavesAFigureThatIsNoNumber) {
    std::mt19937_64 random(15);
    Graphs graphs;
    AppLogs logs;
    SystemIssue issue;
    for (int round = 0; round < 3000; ++round) {
        LiveSnapshot snapshot = randomSnapshot(random);
        for (AppUsage& row : snapshot.apps) removeDerived(row);
        snapshot.date = Date(std::chrono::seconds(1'700'000'000 + round % 700 * 5));
        graphs.feed(snapshot);
        logs.recordCPU(snapshot);
        logs.recordMemory(snapshot);
        issue.update(snapshot);

        for (const AppUsage& row : issue.present(withWatts(snapshot.apps, powerDraw(snapshot))))
            expectNumbers(logs.withAverages(row, random(), snapshot.date));
        for (const auto& [metric, points] : graphs.history())
            for (const GraphPoint& point : points) expectNumber(point.value);
        for (const GraphPoint& point : graphs.uploadHistory()) expectNumber(point.value);
        if (const auto strain = detectStrain(snapshot, ThermalState::serious, {})) {
            EXPECT_FALSE(strain->value.empty());
        }
        EXPECT_TRUE(notchCPU(snapshot).ends_with("%"));
        EXPECT_EQ(notchMemory(snapshot).empty(), !snapshot.memory);
        EXPECT_GE(tops(snapshot.apps).cpu, 0.01);
        EXPECT_LE(usingTheMost(snapshot).size(), snapshot.apps.size());
        if (HasFailure()) FAIL() << "in round " << round;
    }
}

} // namespace
} // namespace tavero
