#include "text/TextPen.h"

namespace tavero {

std::string TextPen::with(std::string_view code, std::string_view text) const {
    if (!isColored || text.empty()) return std::string(text);
    return "\x1b[" + std::string(code) + "m" + std::string(text) + "\x1b[0m";
}

std::string TextPen::bold(std::string_view text) const { return with("1", text); }
std::string TextPen::dim(std::string_view text) const { return with("2", text); }

std::string TextPen::toned(Tone tone, std::string_view text) const {
    if (tone == Tone::good) return with("32", text);
    if (tone == Tone::warning) return with("33", text);
    return dim(text);
}

std::string TextPen::colored(Metric metric, std::string_view text) const {
    switch (metric) {
    case Metric::cpu:
    case Metric::network:
        return with("34", text);
    case Metric::memory:
        return with("33", text);
    case Metric::gpu:
        return with("35", text);
    case Metric::power:
        return with("32", text);
    case Metric::disk:
        return with("36", text);
    case Metric::temperature:
        return with("31", text);
    }
    return std::string(text);
}

} // namespace tavero
