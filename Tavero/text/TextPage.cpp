#include "text/TextPage.h"

#include "monitor/Tops.h"
#include "presentation/MetricPresence.h"
#include "presentation/MetricReading.h"
#include "presentation/MetricStatus.h"
#include "presentation/NumberText.h"
#include "presentation/PageInsight.h"
#include "text/TextDrawing.h"
#include "text/TextPen.h"
#include "text/TextTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

namespace tavero {

namespace {

constexpr int leastColumns = 24;
constexpr int mostColumns = 100; // longer lines are harder to read
constexpr int labelColumns = 14;
constexpr double graphSeconds = 60;
constexpr int coreColumns = 24;
constexpr std::size_t mostApps = 10;

class Page {
  public:
    Page(const LiveSnapshot& snapshot, const Graphs& graphs, const Format& format,
         const Surroundings& surroundings, const TextStyle& style)
        : snapshot_(snapshot), history_(graphs.history()), format_(format),
          surroundings_(surroundings), pen_{style.isColored},
          columns_(std::clamp(style.columns, leastColumns, mostColumns)) {}

    std::vector<std::string> lines() {
        for (const Metric metric : allMetrics)
            if (isPresent(metric, snapshot_)) addMetric(metric);
        addTable(
            usageTable("Using the most", mostOf(usingTheMost(snapshot_)), format_, pen_, columns_));
        addTable(networkTable("Using the network", mostOf(snapshot_.networkApps), format_, pen_,
                              columns_));
        if (!lines_.empty() && lines_.back().empty()) lines_.pop_back();
        return std::move(lines_);
    }

  private:
    void addMetric(Metric metric) {
        addHeadline(metric);
        addVerdict(metric);
        addGraph(metric);
        if (metric == Metric::cpu) addCores();
        if (metric == Metric::memory) addMemory();
        addStats(metric);
        lines_.emplace_back();
    }

    // CPU           12 %          Normal  Load 0.4 of 2
    void addHeadline(Metric metric) {
        const Reading now = reading(metric, snapshot_, format_);
        const std::optional<Status> mood = status(metric, snapshot_);
        left_ = columns_;
        std::string line = pen_.bold(taking(title(metric), labelColumns));
        line += pen_.bold(taking(now.value + " " + now.unit, labelColumns));
        if (mood) line += pen_.toned(mood->tone, taking(mood->text, textWidth(mood->text)));
        // The note of some metrics is what the status says already.
        if (!now.note.empty() && !(mood && mood->text == now.note)) {
            if (mood) line += taking("", 2);
            line += pen_.dim(taking(now.note, textWidth(now.note)));
        }
        lines_.push_back(std::move(line));
    }

    // A text in a column of this width, as far as the line has room.
    std::string taking(std::string_view text, int width) {
        width = std::min(width, left_);
        left_ -= width;
        return fitted(text, width);
    }

    // Both sentences in a line, or each in one of its own.
    void addVerdict(Metric metric) {
        const std::optional<PageInsight> verdict =
            insight(metric, snapshot_, format_, surroundings_);
        if (!verdict) return;
        const int width = textWidth(verdict->headline) + 1 + textWidth(verdict->detail);
        if (verdict->detail.empty() || width > columns_) {
            addSentence(verdict->headline);
            if (!verdict->detail.empty()) addSentence(verdict->detail);
            return;
        }
        addSentence(verdict->headline + " " + verdict->detail);
    }
    void addSentence(std::string_view text) {
        lines_.push_back(fitted(text, std::min(textWidth(text), columns_)));
    }

    void addGraph(Metric metric) {
        const auto points = history_.find(metric);
        if (points == history_.end()) return;
        lines_.push_back(
            pen_.colored(metric, textSparkline(points->second, columns_, graphSeconds)));
    }

    // As many cores in a line as there is room for.
    void addCores() {
        if (!snapshot_.cpu) return;
        const std::vector<double>& cores = snapshot_.cpu->perCore;
        const int perLine = std::max(columns_ / coreColumns, 1);
        std::string line;
        for (std::size_t i = 0; i < cores.size(); ++i) {
            line += pen_.dim(fittedRight(std::to_string(i + 1), 3)) + " ";
            line += pen_.colored(Metric::cpu, textBar(cores[i], coreColumns - 11));
            line += fittedRight(percent(cores[i]) + "%", 5) + "  ";
            const bool isLast = i + 1 == cores.size();
            if (!isLast && static_cast<int>(i + 1) % perLine != 0) continue;
            lines_.push_back(std::exchange(line, {}));
        }
    }

    void addMemory() {
        if (!snapshot_.memory) return;
        const MemorySnapshot& memory = *snapshot_.memory;
        const double total = std::max(static_cast<double>(memory.total), 1.0);
        struct Part {
            std::string_view name;
            std::uint64_t bytes;
            std::string_view fill;
        };
        const std::array parts{Part{"Apps", memory.app, "█"}, Part{"Wired", memory.wired, "▓"},
                               Part{"Compressed", memory.compressed, "▒"},
                               Part{"Cached", memory.cached, "░"}};
        std::vector<BarPart> bar;
        std::vector<Stat> legend;
        for (const Part& part : parts) {
            bar.push_back({static_cast<double>(part.bytes) / total, part.fill});
            legend.push_back(
                {std::string(part.fill) + " " + std::string(part.name), format_.bytes(part.bytes)});
        }
        legend.push_back({"· Free", format_.bytes(memory.free())});
        if (memory.swapTotal > 0) legend.push_back({"Swap", format_.bytes(memory.swapUsed)});
        lines_.push_back(pen_.colored(Metric::memory, textStackedBar(bar, columns_)));
        addRow(legend);
    }

    void addTable(std::vector<std::string> table) {
        if (table.empty()) return;
        std::move(table.begin(), table.end(), std::back_inserter(lines_));
        lines_.emplace_back();
    }

    static std::vector<AppUsage> mostOf(std::vector<AppUsage> apps) {
        apps.resize(std::min(apps.size(), mostApps));
        return apps;
    }

    // Those of the card and of the page. What isn't known is left out here: a line of text has no
    // place to keep.
    void addStats(Metric metric) {
        std::vector<Stat> all = overviewStats(metric, snapshot_, format_, surroundings_);
        const std::size_t onCard = all.size();
        for (Stat& stat : stats(metric, snapshot_, format_, surroundings_)) {
            // The card calls the temperature "Temp".
            const auto isTheSame = [&](const Stat& told) {
                return stat.label.starts_with(told.label);
            };
            const auto cardEnd = all.begin() + static_cast<std::ptrdiff_t>(onCard);
            if (std::none_of(all.begin(), cardEnd, isTheSame)) all.push_back(std::move(stat));
        }
        std::erase_if(all, [](const Stat& stat) { return stat.value.starts_with(placeholder); });
        addRow(all);
    }

    // Labels and values side by side, on as many lines as they need.
    void addRow(const std::vector<Stat>& stats) {
        std::string line;
        int used = 0;
        for (const Stat& stat : stats) {
            const int width = std::min(textWidth(stat.label) + 1 + textWidth(stat.value), columns_);
            if (used > 0 && used + 2 + width > columns_) {
                lines_.push_back(std::exchange(line, {}));
                used = 0;
            }
            if (used > 0) {
                line += "  ";
                used += 2;
            }
            const int label = std::min(textWidth(stat.label) + 1, width);
            line += pen_.dim(fitted(stat.label, label)) + fitted(stat.value, width - label);
            used += width;
        }
        if (used > 0) lines_.push_back(std::move(line));
    }

    const LiveSnapshot& snapshot_;
    GraphHistory history_;
    const Format& format_;
    const Surroundings& surroundings_;
    TextPen pen_;
    int columns_;
    int left_ = 0; // of the line under way
    std::vector<std::string> lines_;
};

} // namespace

std::vector<std::string> textPage(const std::optional<LiveSnapshot>& snapshot, const Graphs& graphs,
                                  const Format& format, const Surroundings& surroundings,
                                  const TextStyle& style) {
    if (!snapshot) return {"Reading your Mac…"};
    return Page(*snapshot, graphs, format, surroundings, style).lines();
}

} // namespace tavero
