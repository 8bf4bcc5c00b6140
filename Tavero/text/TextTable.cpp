#include "text/TextTable.h"

#include "presentation/NumberText.h"
#include "records/SaturatingSum.h"
#include "text/TextDrawing.h"

#include <algorithm>
#include <functional>

namespace tavero {

namespace {

constexpr int nameColumns = 30;
constexpr int noteGap = 2;

struct Column {
    std::string_view title;
    int width;
    std::function<std::string(const AppUsage&)> text;
};

// A line that is filled from the left, as far as it has room.
class Line {
  public:
    explicit Line(int columns) : left_(columns) {}

    std::string taking(std::string_view text, int width) { return fitted(text, take(width)); }
    // Always a blank apart from what stands before.
    std::string takingRight(std::string_view text, int width) {
        const int taken = take(width);
        return taken > 0 ? " " + fittedRight(text, taken - 1) : "";
    }

  private:
    int take(int width) {
        const int taken = std::min(width, left_);
        left_ -= taken;
        return taken;
    }

    int left_;
};

std::string row(const AppUsage& app, const std::vector<Column>& figures, const TextPen& pen,
                int columns) {
    Line line(columns);
    std::string text = line.taking(app.name, nameColumns);
    for (const Column& figure : figures) text += line.takingRight(figure.text(app), figure.width);
    if (!app.note) return text;
    text += line.taking("", noteGap);
    return text + pen.dim(line.taking(*app.note, textWidth(*app.note)));
}

std::vector<std::string> table(std::string_view title, const std::vector<AppUsage>& apps,
                               const std::vector<Column>& figures, const TextPen& pen,
                               int columns) {
    if (apps.empty()) return {};
    Line head(columns);
    std::vector<std::string> lines{pen.bold(head.taking(title, nameColumns))};
    for (const Column& figure : figures)
        lines.front() += pen.dim(head.takingRight(figure.title, figure.width));
    for (const AppUsage& app : apps) lines.push_back(row(app, figures, pen, columns));
    return lines;
}

std::string withUnit(std::optional<double> value, int decimals, std::string_view unit) {
    return known(value) ? fixed(value, decimals) + std::string(unit) : placeholder;
}

} // namespace

std::vector<std::string> usageTable(std::string_view title, const std::vector<AppUsage>& apps,
                                    const Format& format, const TextPen& pen, int columns) {
    std::vector<Column> figures{
        {"CPU", 8, [](const AppUsage& app) { return percent(app.cpu) + "%"; }},
        {"Memory", 12, [&](const AppUsage& app) { return format.bytes(app.memory); }}};
    const auto anyHas = [&](const auto& figure) {
        return std::any_of(apps.begin(), apps.end(),
                           [&](const AppUsage& app) { return known(figure(app)).has_value(); });
    };
    if (anyHas([](const AppUsage& app) { return app.gpu; }))
        figures.push_back({"GPU", 8, [](const AppUsage& app) {
                               return known(app.gpu) ? percent(app.gpu) + "%" : placeholder;
                           }});
    if (anyHas([](const AppUsage& app) { return app.watts; }))
        figures.push_back(
            {"Power", 10, [](const AppUsage& app) { return withUnit(app.watts, 1, " W"); }});
    return table(title, apps, figures, pen, columns);
}

std::vector<std::string> networkTable(std::string_view title, const std::vector<AppUsage>& apps,
                                      const Format& format, const TextPen& pen, int columns) {
    const auto total = [](const AppUsage& app) {
        return saturatingSum(app.networkInTotal, app.networkOutTotal);
    };
    return table(title, apps,
                 {{"Download", 14,
                   [&](const AppUsage& app) { return format.rate(app.networkInRate).joined(); }},
                  {"Upload", 14,
                   [&](const AppUsage& app) { return format.rate(app.networkOutRate).joined(); }},
                  {"Total", 12, [&](const AppUsage& app) { return format.bytes(total(app)); }}},
                 pen, columns);
}

} // namespace tavero
