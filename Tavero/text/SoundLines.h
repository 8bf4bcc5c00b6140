#pragma once

#include "presentation/Format.h"
#include "records/LiveSnapshot.h"
#include "sound/AppSound.h"
#include "text/TextPen.h"

#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The volume and the output in use, the outputs there are, and a line for each app that uses sound.
// Nothing as long as no reading has any sound, nor on a machine that has none. No line is wider
// than `columns`.
std::vector<std::string> soundLines(const std::optional<LiveSnapshot>& snapshot,
                                    const std::vector<AppSound>& apps, const Format& format,
                                    const TextPen& pen, int columns);

} // namespace tavero
