#include "text/SoundLines.h"

#include "presentation/LevelBars.h"
#include "presentation/Section.h"
#include "text/TextDrawing.h"

#include <algorithm>
#include <string_view>

namespace tavero {

namespace {

constexpr int labelColumns = 14;
constexpr int nameColumns = 30;
constexpr int statusColumns = 11;
constexpr int volumeColumns = 6;
constexpr int levelColumns = 14;

// One line, filled from the left as far as there is room.
class Line {
  public:
    explicit Line(int columns) : left_(columns) {}

    // The text in a column of this width.
    std::string taking(std::string_view text, int width) {
        width = std::min(width, left_);
        left_ -= width;
        return fitted(text, width);
    }
    std::string taking(std::string_view text) { return taking(text, textWidth(text)); }

  private:
    int left_;
};

std::string headline(const std::optional<LiveSnapshot>& snapshot, const Format& format,
                     const TextPen& pen, int columns) {
    Line line(columns);
    std::string text = pen.bold(line.taking(title(Section::sound), labelColumns));
    text += pen.bold(line.taking(sidebarValue(Section::sound, snapshot, {}, format), labelColumns));
    if (const std::optional<AudioOutput>& output = snapshot->sound->output)
        text += pen.dim(line.taking(output->name));
    return text;
}

// "Outputs       Speakers, Headphones"
std::string outputs(const SoundSnapshot& sound, const TextPen& pen, int columns) {
    std::string names;
    for (const AudioOutput& output : sound.outputs)
        names += (names.empty() ? "" : ", ") + output.name;
    Line line(columns);
    const std::string label = pen.dim(line.taking("Outputs", labelColumns));
    return label + line.taking(names);
}

std::string row(const AppSound& app, const TextPen& pen, int columns) {
    Line line(columns);
    std::string text = line.taking(app.name, nameColumns);
    text += pen.dim(line.taking(" " + std::string(status(app)), statusColumns));
    text += line.taking(fittedRight(volumeText(app), volumeColumns));
    text += line.taking("  " + textBar(loudness(app.level), levelColumns));
    if (!app.output.empty()) text += pen.dim(line.taking("  " + app.output));
    return text;
}

} // namespace

std::vector<std::string> soundLines(const std::optional<LiveSnapshot>& snapshot,
                                    const std::vector<AppSound>& apps, const Format& format,
                                    const TextPen& pen, int columns) {
    if (!snapshot || !snapshot->sound) return {};
    if (apps.empty() && snapshot->sound->outputs.empty()) return {};
    std::vector<std::string> lines{"", headline(snapshot, format, pen, columns)};
    if (!snapshot->sound->outputs.empty()) lines.push_back(outputs(*snapshot->sound, pen, columns));
    for (const AppSound& app : apps) lines.push_back(row(app, pen, columns));
    return lines;
}

} // namespace tavero
