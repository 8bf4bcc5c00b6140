#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

namespace tavero {

// Walks through the text of a kernel file, a line and a word at a time, without copying it. Only
// nextLine() leaves a line, so a line cut short never borrows from the next one.
class TextCursor {
  public:
    explicit TextCursor(std::string_view text) : rest_(text) {}

    bool atEnd() const { return rest_.empty(); }

    // What is left, this line and the following ones.
    std::string_view rest() const { return rest_; }

    // Goes to the start of the next line; to the end if this is the last one.
    void nextLine() {
        const std::size_t end = rest_.find('\n');
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    }

    // Steps over this text if it comes next.
    bool skip(std::string_view text) {
        if (!rest_.starts_with(text)) return false;
        rest_.remove_prefix(text.size());
        return true;
    }

    // The next word on this line, empty if there is none.
    std::string_view word() {
        skipBlanks();
        std::size_t length = 0;
        while (length < rest_.size() && !isBlank(rest_[length]) && rest_[length] != '\n') ++length;
        return take(length);
    }

    // What comes before the next `mark` on this line; steps over the mark. Empty, with nothing
    // stepped over, if the line has none.
    std::string_view upTo(char mark) {
        std::size_t length = 0;
        while (length < rest_.size() && rest_[length] != mark && rest_[length] != '\n') ++length;
        if (length == rest_.size() || rest_[length] != mark) return {};
        const std::string_view found = take(length);
        rest_.remove_prefix(1);
        return found;
    }

    // The next number on this line. Absent, with nothing stepped over but blanks, if no digit comes
    // next. One past 64 bits is the largest value.
    std::optional<std::uint64_t> number() {
        skipBlanks();
        if (rest_.empty() || !isDigit(rest_.front())) return std::nullopt;
        constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
        std::uint64_t value = 0;
        std::size_t length = 0;
        for (; length < rest_.size() && isDigit(rest_[length]); ++length) {
            const auto digit = static_cast<std::uint64_t>(rest_[length] - '0');
            value = value > (most - digit) / 10 ? most : value * 10 + digit;
        }
        rest_.remove_prefix(length);
        return value;
    }

    // The next number with an optional fraction: "2.21".
    std::optional<double> decimal() {
        const std::optional<std::uint64_t> whole = number();
        if (!whole) return std::nullopt;
        double value = static_cast<double>(*whole);
        if (!skip(".")) return value;
        std::size_t length = 0;
        for (double unit = 0.1; length < rest_.size() && isDigit(rest_[length]); ++length) {
            value += unit * (rest_[length] - '0');
            unit /= 10;
        }
        rest_.remove_prefix(length);
        return value;
    }

  private:
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }
    static bool isBlank(char c) { return c == ' ' || c == '\t'; }

    void skipBlanks() {
        while (!rest_.empty() && isBlank(rest_.front())) rest_.remove_prefix(1);
    }

    std::string_view take(std::size_t length) {
        const std::string_view taken = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return taken;
    }

    std::string_view rest_;
};

} // namespace tavero
