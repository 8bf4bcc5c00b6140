#pragma once

#include "records/Date.h"

#include <chrono>
#include <utility>
#include <vector>

namespace tavero {

// Adds an entry, which has a `time`, to a list that holds those of the last `span`, oldest first.
// An entry that is exactly `span` old stays. Entries later than the new one are from before the
// clock was set back: they would never age, so they go.
template <typename Entry>
void appendRolling(std::vector<Entry>& list, Entry entry, std::chrono::seconds span) {
    while (!list.empty() && list.back().time > entry.time) list.pop_back();
    const Date cutoff = entry.time - span;
    auto firstKept = list.begin();
    while (firstKept != list.end() && firstKept->time < cutoff) ++firstKept;
    list.erase(list.begin(), firstKept);
    list.push_back(std::move(entry));
}

} // namespace tavero
