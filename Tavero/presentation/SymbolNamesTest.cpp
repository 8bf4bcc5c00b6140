#include "presentation/SymbolNames.h"

#include "presentation/Metric.h"
#include "presentation/Section.h"
#include "presentation/Stat.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace tavero {
namespace {

using testing::Contains;

TEST(SymbolNames, StandOnceAndInOrder) {
    EXPECT_EQ(std::adjacent_find(symbolNames.begin(), symbolNames.end(), std::greater_equal<>()),
              symbolNames.end());
}

TEST(SymbolNames, HoldThoseOfMetricsAndPages) {
    for (const Metric metric : allMetrics) EXPECT_THAT(symbolNames, Contains(symbol(metric)));
    for (const Section section : allSections) EXPECT_THAT(symbolNames, Contains(symbol(section)));
}

TEST(SymbolNames, HoldThoseOfTheFigures) {
    for (const std::string_view label : labelsWithSymbols())
        EXPECT_THAT(symbolNames, Contains(Stat{std::string(label)}.symbol())) << label;
    EXPECT_EQ(labelsWithSymbols().size(), 25u);
    EXPECT_THAT(symbolNames, Contains(Stat{"a label of no symbol"}.symbol()));
}

} // namespace
} // namespace tavero
