#include "text/ReportPage.h"

#include "text/TextDrawing.h"
#include "text/TextPen.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <utility>

namespace tavero {

namespace {

constexpr int leastColumns = 24;
constexpr int mostColumns = 100; // longer lines are harder to read
constexpr int labelColumns = 18;
constexpr int figureColumns = 12;
constexpr int fieldColumns = 12;

// Bars as one line of blocks, the highest a whole block. A bar without data is a dot.
std::string barLine(const std::vector<InsightsBar>& bars) {
    constexpr std::array<std::string_view, 8> blocks{"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
    double highest = 1;
    for (const InsightsBar& bar : bars) highest = std::max(highest, bar.height);
    std::string line;
    for (const InsightsBar& bar : bars) {
        const auto step = static_cast<std::size_t>(bar.height / highest * 7.999);
        line += bar.isFilled ? blocks.at(std::min(step, blocks.size() - 1)) : "·";
    }
    return line;
}

class Page {
  public:
    Page(const InsightsContent& content, const TextStyle& style)
        : content_(content), pen_{style.isColored},
          columns_(std::clamp(style.columns, leastColumns, mostColumns)) {}

    std::vector<std::string> lines(int days) {
        addTitle(days);
        addWarmingUp();
        addCards();
        addFindings();
        addApps();
        addRhythm();
        addDim(content_.footer);
        return std::move(lines_);
    }

  private:
    void add(std::string line) { lines_.push_back(std::move(line)); }
    void addText(std::string_view text) {
        for (std::string& line : wrapped(text, columns_)) add(std::move(line));
    }
    void addDim(std::string_view text) {
        for (const std::string& line : wrapped(text, columns_)) add(pen_.dim(line));
    }
    void addHeading(std::string_view text) {
        add("");
        add(pen_.bold(cut(text)));
    }
    std::string cut(std::string_view text) const {
        return fitted(text, std::min(textWidth(text), columns_));
    }
    // A text in the next column of the line, as far as there is room.
    std::string taking(std::string_view text, int width) {
        width = std::min(width, left_);
        left_ -= width;
        return fitted(text, width);
    }

    void addTitle(int days) {
        const std::string period(days == 7 ? InsightsTexts::lastWeek : InsightsTexts::lastMonth);
        add(pen_.bold(cut(std::string(InsightsTexts::title) + ": " + period)));
        add(pen_.dim(cut(InsightsTexts::subtitle)));
    }

    void addWarmingUp() {
        if (!content_.warmingUpDay) return;
        addHeading(InsightsTexts::warmingUpTitle);
        addText(InsightsTexts::warmingUpText);
        const std::string label = InsightsTexts::warmingUpLabel(*content_.warmingUpDay);
        const int barColumns = std::max(columns_ - textWidth(label) - 2, 1);
        add(textBar(static_cast<double>(*content_.warmingUpDay) / 7, std::min(barColumns, 42)) +
            "  " + pen_.dim(label));
    }

    // Average CPU       12 %        ▁▁▃█▂
    void addCards() {
        add("");
        for (const SummaryCard& card : content_.cards) {
            left_ = columns_;
            std::string line = taking(card.title, labelColumns);
            line += pen_.bold(taking(card.figure.joined(), figureColumns));
            const std::vector<InsightsBar> bars = card.bars();
            add(line + taking(barLine(bars), static_cast<int>(bars.size())));
        }
    }

    void addFindings() {
        addHeading(InsightsTexts::findings);
        if (content_.findings.empty()) addText(InsightsTexts::noFindings);
        for (const Finding& finding : content_.findings) {
            addText(finding.title);
            addDim(finding.detail);
        }
    }

    void addApps() {
        if (content_.heaviestApps.empty()) return;
        const auto columnCount = static_cast<int>(std::size(InsightsTexts::appColumns));
        const int nameColumns = std::max(columns_ - columnCount * fieldColumns, fieldColumns);
        add("");
        left_ = columns_;
        std::string head = taking(InsightsTexts::heaviestApps, nameColumns);
        for (const std::string_view column : InsightsTexts::appColumns) head += field(column);
        add(pen_.bold(head));
        for (const HeavyApp& app : content_.heaviestApps) {
            left_ = columns_;
            std::string line = taking(app.name, nameColumns);
            for (const std::string* value : {&app.cpuTime, &app.averageMemory, &app.written})
                line += field(*value);
            add(std::move(line));
        }
    }
    std::string field(std::string_view text) {
        const int width = std::min(fieldColumns, left_);
        left_ -= width;
        return fittedRight(text, width);
    }

    void addRhythm() {
        const Rhythm& rhythm = content_.rhythm;
        addHeading(InsightsTexts::rhythm);
        add(cut(rhythm.subtitle));
        add(cut(barLine(rhythm.bars)));
        std::string axis; // a mark every six bars
        for (const std::string_view hour : InsightsTexts::hours)
            axis += (axis.empty() ? "" : "    ") + std::string(hour);
        add(pen_.dim(cut(axis)));
        addFact(InsightsTexts::awake, rhythm.awake);
        addFact(InsightsTexts::busiestDay, rhythm.busiestDay);
        add("");
    }
    void addFact(std::string_view label, std::string_view value) {
        left_ = columns_;
        const std::string told = taking(label, labelColumns);
        add(pen_.dim(told) + taking(value, textWidth(value)));
    }

    const InsightsContent& content_;
    TextPen pen_;
    int columns_;
    int left_ = 0; // of the line under way
    std::vector<std::string> lines_;
};

} // namespace

std::vector<std::string> reportPage(const std::optional<InsightsContent>& content, int days,
                                    const TextStyle& style) {
    if (!content) return {std::string(InsightsTexts::waiting)};
    return Page(*content, style).lines(days);
}

} // namespace tavero
