#include "text/TextDrawing.h"

#include <gtest/gtest.h>

#include <chrono>
#include <clocale>
#include <cmath>
#include <limits>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;

class TextDrawing : public testing::Test {
  protected:
    void SetUp() override { ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }
};

TEST_F(TextDrawing, WidthsAreCountedInColumns) {
    EXPECT_EQ(textWidth(""), 0);
    EXPECT_EQ(textWidth("CPU"), 3);
    EXPECT_EQ(textWidth("64°C –"), 6);
    EXPECT_EQ(textWidth("音楽"), 4);
    EXPECT_EQ(textWidth("e\u0301"), 1); // a combining accent
}

TEST_F(TextDrawing, ATextIsCutWithAnEllipsisOrPadded) {
    EXPECT_EQ(fitted("CPU", 5), "CPU  ");
    EXPECT_EQ(fittedRight("7", 3), "  7");
    EXPECT_EQ(fitted("Memory", 6), "Memory");
    EXPECT_EQ(fitted("Memory", 5), "Memo…");
    EXPECT_EQ(fitted("音楽音楽", 6), "音楽… ");
    EXPECT_EQ(fitted("Memory", 1), "…");
    EXPECT_EQ(fitted("Memory", 0), "");
    EXPECT_EQ(fitted("Memory", -3), "");
}

TEST_F(TextDrawing, NothingThatSteersTheTerminalGetsThrough) {
    EXPECT_EQ(fitted("a\x1b[2Jb\n\r\x7f", 10), "a?[2Jb??? ");
    EXPECT_EQ(fitted("\xff\xc3(\xe2\x82", 6), "?"
                                              "?(?? ");
}

TEST_F(TextDrawing, ABarIsFilledInEighths) {
    EXPECT_EQ(textBar(0, 4), "····");
    EXPECT_EQ(textBar(0.5, 4), "██··");
    EXPECT_EQ(textBar(0.53125, 4), "██▏·");
    EXPECT_EQ(textBar(1, 4), "████");
    EXPECT_EQ(textBar(7, 4), "████");
    EXPECT_EQ(textBar(-1, 4), "····");
    EXPECT_EQ(textBar(std::nan(""), 4), "····");
}

TEST_F(TextDrawing, AStackedBarNeverGrowsBeyondItsWidth) {
    const std::vector<BarPart> parts{{0.25, "a"}, {0.25, "b"}, {2, "c"}, {0.5, "d"}};
    EXPECT_EQ(textStackedBar(parts, 8), "aabbcccc");
    EXPECT_EQ(textStackedBar(std::span(parts).first(2), 8), "aabb····");
    EXPECT_EQ(textStackedBar({}, 3), "···");
}

TEST_F(TextDrawing, ASparklineEndsAtItsNewestPoint) {
    const Date end(1'800'000'000s);
    const std::vector<GraphPoint> points{{end - 90s, 1}, {end - 3s, 0}, {end - 2s, 0.5}, {end, 1}};
    EXPECT_EQ(textSparkline(points, 6, 6), "  ▁▅▅█");
    EXPECT_EQ(textSparkline({}, 4, 6), "    ");
    EXPECT_EQ(textSparkline(points, 0, 6), "");
}

TEST_F(TextDrawing, ASparklineShowsThePeakOfWhatFallsIntoOneColumn) {
    const Date end(1'800'000'000s);
    const std::vector<GraphPoint> points{{end - 2s, 0.2}, {end - 1s, 1}, {end, 0}};
    EXPECT_EQ(textSparkline(points, 1, 60), "█");
}

TEST_F(TextDrawing, ASparklineTakesAnyValue) {
    const Date end(1'800'000'000s);
    const std::vector<GraphPoint> points{
        {end - 2s, std::nan("")}, {end - 1s, std::numeric_limits<double>::infinity()}, {end, -5}};
    EXPECT_EQ(textSparkline(points, 3, 3), "▁█▁");
}

TEST_F(TextDrawing, ALongTextIsBrokenAtItsBlanks) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(wrapped("a plain text of some words", 12),
              (Lines{"a plain text", "of some", "words"}));
    EXPECT_EQ(wrapped("  blanks   vanish ", 80), Lines{"blanks vanish"});
    EXPECT_EQ(wrapped("a verylongword b", 6), (Lines{"a", "veryl…", "b"}));
    EXPECT_EQ(wrapped("", 6), Lines{});
}

} // namespace
} // namespace tavero
