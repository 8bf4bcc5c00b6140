#include "text/TextDrawing.h"

#include "records/Date.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cwchar>
#include <optional>
#include <utility>

namespace tavero {

namespace {

constexpr std::array<std::string_view, 9> leftBlocks{" ", "▏", "▎", "▍", "▌", "▋", "▊", "▉", "█"};
constexpr std::array<std::string_view, 9> lowerBlocks{" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
constexpr std::string_view emptyTrack = "·";

struct Character {
    std::string_view bytes;
    int width;
};

// The length of the UTF-8 sequence at the front of a text; absent if it is none.
std::optional<std::size_t> sequenceLength(std::string_view text, wchar_t& character) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    const std::size_t length = first < 0x80                    ? 1
                               : first >= 0xf0 && first < 0xf5 ? 4
                               : first >= 0xe0 && first < 0xf0 ? 3
                               : first >= 0xc2 && first < 0xe0 ? 2
                                                               : 0;
    if (length == 0 || length > text.size()) return std::nullopt;
    unsigned value = length == 1 ? first : first & (0x7fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80) return std::nullopt;
        value = value << 6 | (byte(i) & 0x3fu);
    }
    character = static_cast<wchar_t>(value);
    return length;
}

// The first character of a text that is not empty.
Character firstCharacter(std::string_view text) {
    wchar_t character = 0;
    const std::optional<std::size_t> length = sequenceLength(text, character);
    if (!length) return {text.substr(0, 1), -1};
    return {text.substr(0, *length), wcwidth(character)};
}

template <typename Visit>
void forEachCharacter(std::string_view text, Visit visit) {
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (!visit(character.width < 0 ? Character{"?", 1} : character)) return;
        text.remove_prefix(character.bytes.size());
    }
}

std::string repeated(std::string_view text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) result += text;
    return result;
}

double clampedFraction(double value) { return std::isnan(value) ? 0 : std::clamp(value, 0.0, 1.0); }

std::string cut(std::string_view text, int width) {
    if (textWidth(text) <= width) {
        std::string whole;
        forEachCharacter(text, [&](Character character) {
            whole += character.bytes;
            return true;
        });
        return whole;
    }
    std::string result;
    int used = 0;
    forEachCharacter(text, [&](Character character) {
        if (used + character.width > width - 1) return false;
        result += character.bytes;
        used += character.width;
        return true;
    });
    return width > 0 ? result + "…" : "";
}

} // namespace

int textWidth(std::string_view text) {
    int width = 0;
    forEachCharacter(text, [&](Character character) {
        width += character.width;
        return true;
    });
    return width;
}

std::string fitted(std::string_view text, int width) {
    std::string result = cut(text, width);
    return result + repeated(" ", width - textWidth(result));
}

std::string fittedRight(std::string_view text, int width) {
    std::string result = cut(text, width);
    return repeated(" ", width - textWidth(result)) + result;
}

std::vector<std::string> wrapped(std::string_view text, int width) {
    std::vector<std::string> lines;
    std::string line;
    const auto endLine = [&] {
        if (!line.empty()) lines.push_back(std::exchange(line, {}));
    };
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(word.size() + 1, text.size()));
        if (word.empty()) continue;
        const int wordWidth = std::min(textWidth(word), width);
        if (!line.empty() && textWidth(line) + 1 + wordWidth > width) endLine();
        line += (line.empty() ? "" : " ") + fitted(word, wordWidth);
    }
    endLine();
    return lines;
}

std::string textBar(double fraction, int width) {
    const int eighths = static_cast<int>(std::lround(clampedFraction(fraction) * width * 8));
    std::string bar = repeated(leftBlocks[8], eighths / 8);
    int used = eighths / 8;
    if (eighths % 8 != 0) {
        bar += leftBlocks[static_cast<std::size_t>(eighths % 8)];
        ++used;
    }
    return bar + repeated(emptyTrack, width - used);
}

std::string textStackedBar(std::span<const BarPart> parts, int width) {
    std::string bar;
    double sum = 0;
    int used = 0;
    for (const BarPart& part : parts) {
        sum = clampedFraction(sum + clampedFraction(part.fraction));
        const int end = static_cast<int>(std::lround(sum * width));
        bar += repeated(part.fill, end - used);
        used = end;
    }
    return bar + repeated(emptyTrack, width - used);
}

std::string textSparkline(std::span<const GraphPoint> points, int width, double seconds) {
    std::vector<std::optional<double>> columns(static_cast<std::size_t>(std::max(width, 0)));
    if (!points.empty() && width > 0) {
        const Date end = points.back().time;
        for (const GraphPoint& point : points) {
            const double age = secondsBetween(point.time, end);
            if (!(age >= 0 && age < seconds)) continue;
            const auto column =
                static_cast<std::size_t>(width - 1 - static_cast<int>(age / seconds * width));
            columns[column] = std::max(columns[column].value_or(0), clampedFraction(point.value));
        }
    }
    std::string line;
    std::optional<double> last;
    for (const std::optional<double>& column : columns) {
        // Between two samples the line goes on as it was.
        if (column) last = column;
        line += last ? lowerBlocks[static_cast<std::size_t>(1 + std::lround(*last * 7))] : " ";
    }
    return line;
}

} // namespace tavero
