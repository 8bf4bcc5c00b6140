#include "window/OverviewCards.h"

#include "presentation/MetricPresence.h"

#include <algorithm>
#include <array>
#include <optional>

namespace tavero {

namespace {

constexpr std::array defaultOrder{Section::cpu,   Section::memory, Section::gpu,
                                  Section::power, Section::disk,   Section::network};

bool contains(const auto& list, Section section) {
    return std::find(list.begin(), list.end(), section) != list.end();
}

} // namespace

std::vector<Section> orderedCards(std::string_view stored) {
    std::vector<Section> cards;
    const auto add = [&](std::optional<Section> section) {
        if (section && contains(defaultOrder, *section) && !contains(cards, *section))
            cards.push_back(*section);
    };
    while (!stored.empty()) {
        const std::size_t comma = std::min(stored.find(','), stored.size());
        add(sectionNamed(stored.substr(0, comma)));
        stored.remove_prefix(std::min(comma + 1, stored.size()));
    }
    for (const Section section : defaultOrder) add(section);
    return cards;
}

std::vector<Section> visibleCards(const Settings& settings) {
    std::vector<Section> cards = orderedCards(settings.get(keys::overviewCardOrder));
    std::erase_if(cards, [&](Section card) { return !settings.get(keys::overviewCard(card)); });
    return cards;
}

bool hasSource(Section section, const LiveSnapshot& snapshot) {
    const std::optional<Metric> metric = metricOf(section);
    return metric && isPresent(*metric, snapshot);
}

} // namespace tavero
