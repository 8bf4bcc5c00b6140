#include "window/MemoryBreakdown.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

constexpr std::uint64_t gibibyte = std::uint64_t{1} << 30;

TEST(MemoryBreakdown, NamesWhatTheMemoryIsUsedForAndWhatIsFree) {
    const MemorySnapshot memory{.total = 16 * gibibyte,
                                .app = 4 * gibibyte,
                                .wired = 2 * gibibyte,
                                .compressed = gibibyte,
                                .cached = 3 * gibibyte};
    const std::vector<SegmentRow> rows = memoryBreakdown(memory, {}, false);
    ASSERT_EQ(rows.size(), 5u);
    const char* const names[] = {"Apps", "Wired", "Compressed", "Cached", "Free"};
    const char* const values[] = {"4.0 GB", "2.0 GB", "1.0 GB", "3.0 GB", "6.0 GB"};
    double sum = 0;
    for (std::size_t at = 0; at < rows.size(); ++at) {
        EXPECT_EQ(rows[at].name, names[at]);
        EXPECT_EQ(rows[at].value, values[at]);
        sum += rows[at].fraction;
    }
    EXPECT_DOUBLE_EQ(rows[0].fraction, 0.25);
    EXPECT_DOUBLE_EQ(sum, 1);
}

TEST(MemoryBreakdown, FiguresThatClaimMoreThanThereIsShareTheBar) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    for (const MemorySnapshot& memory :
         {MemorySnapshot{.total = gibibyte, .app = gibibyte, .wired = gibibyte},
          MemorySnapshot{.total = 0, .app = 7, .cached = 1},
          MemorySnapshot{.total = 1, .app = most}}) {
        double sum = 0;
        for (const SegmentRow& row : memoryBreakdown(memory, {}, true)) sum += row.fraction;
        EXPECT_NEAR(sum, 1, 1e-9);
    }
}

TEST(MemoryBreakdown, OfNothingItIsEmpty) {
    for (const SegmentRow& row : memoryBreakdown({}, {}, false)) {
        EXPECT_EQ(row.fraction, 0);
        EXPECT_EQ(row.value, "0 MB");
    }
}

} // namespace
} // namespace tavero
