#pragma once

#include "platform/mac/PropertyValue.h"
#include "records/GPUSnapshot.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>

namespace tavero::GPUReader {

// What an accelerator tells of itself, from the properties of its service ("IOAccelerator"). Absent
// without statistics; a figure that is missing from them is 0.
std::optional<GPUSnapshot> read(const PropertyMap& accelerator);

// The GPU time of each process, in nanoseconds, from the properties of the accelerators' user
// clients. A process may have several clients, and each one several entries.
std::unordered_map<std::int32_t, std::uint64_t> times(std::span<const PropertyMap> clients);

// The process in a text like "pid 123, Finder". Absent if the text is another, or no pid.
std::optional<std::int32_t> creator(std::string_view text);

} // namespace tavero::GPUReader
