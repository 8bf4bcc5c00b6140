#include "desktop/linux/ProcessStatus.h"

#include "platform/linux/TextCursor.h"

#include <utility>

namespace tavero {

namespace {

template <typename Number>
std::optional<Number> numberOf(TextCursor& line) {
    const std::optional<std::uint64_t> number = line.number();
    if (!number || !std::in_range<Number>(*number)) return std::nullopt;
    return static_cast<Number>(*number);
}

} // namespace

std::optional<ProcessStatus> parseProcessStatus(std::string_view text) {
    std::optional<std::int32_t> parent;
    std::optional<std::uint32_t> user, actsForUser;
    // A name can't forge a line: the kernel writes a line break in it as "\n".
    for (TextCursor line(text); !line.atEnd(); line.nextLine()) {
        if (line.skip("PPid:")) parent = numberOf<std::int32_t>(line);
        if (line.skip("Uid:")) {
            user = numberOf<std::uint32_t>(line);
            actsForUser = numberOf<std::uint32_t>(line);
        }
    }
    if (!parent || !user || !actsForUser) return std::nullopt;
    return ProcessStatus{*parent, *user, *actsForUser};
}

} // namespace tavero
