#pragma once

#include "records/Date.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace tavero {

// What the alert rules remember across restarts.
struct AlertMemory {
    std::map<std::string, Date> lastFired; // by key
    std::set<std::string> active;          // keys that fired and have not been clear for long

    // A JSON object of two members: "lastFired" maps each key to seconds since 1 January 2001 UTC,
    // "active" is a list. Both are required, others are ignored; anything else decodes to nothing.
    std::string encoded() const;
    static std::optional<AlertMemory> decoded(std::string_view json);

    bool operator==(const AlertMemory&) const = default;
};

} // namespace tavero
