#pragma once

#include "presentation/Section.h"
#include "records/LiveSnapshot.h"
#include "settings/Settings.h"

#include <string_view>
#include <vector>

namespace tavero {

// The sections that have a card on the Overview, in the user's order. `stored` is a list of raw
// values with commas between; what it doesn't name comes after, in the default order. Names that it
// repeats or that have no card are passed over.
std::vector<Section> orderedCards(std::string_view stored);

// Those of them that the user didn't hide.
std::vector<Section> visibleCards(const Settings& settings);

// Whether the machine has what the card is about. Every machine has a CPU and memory, also while
// their first figures are still to come; the others are told by their figures.
bool hasSource(Section section, const LiveSnapshot& snapshot);

} // namespace tavero
