#pragma once

#include "records/Date.h"

#include <filesystem>
#include <optional>

namespace tavero {

// When a file was created: st_birthtimespec of stat. Absent if it can't be read.
std::optional<Date> creationDate(const std::filesystem::path& file);

} // namespace tavero
