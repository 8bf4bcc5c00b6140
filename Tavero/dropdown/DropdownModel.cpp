#include "dropdown/DropdownModel.h"

#include "desktop/Compositing.h"
#include "settings/SettingsFormat.h"
#include "window/Card.h"
#include "window/OverviewCards.h"

#include <utility>
#include <vector>

namespace tavero {

DropdownModel::DropdownModel(Section section, const Monitor& monitor, const Settings& settings,
                             const Theme& theme, std::function<Surroundings()> surroundings)
    : section_(metricOf(section) ? section : Section::overview), monitor_(monitor),
      settings_(settings), theme_(theme), surroundings_(std::move(surroundings)) {
    connect(&monitor, &Monitor::snapshotChanged, this, &DropdownModel::update);
    connect(&settings, &Settings::changed, this, &DropdownModel::update);
    connect(&theme, &Theme::changed, this, &DropdownModel::update);
    update();
}

QString DropdownModel::title() const {
    const std::string_view title = tavero::title(section_);
    return QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()));
}

bool DropdownModel::hasClearCorners() const { return windowsMayBeClear(); }

void DropdownModel::update() {
    if (!monitor_.snapshot()) return;
    const CardSource source{.snapshot = *monitor_.snapshot(),
                            .graphs = monitor_.graphs(),
                            .format = format(settings_),
                            .surroundings = surroundings_ ? surroundings_() : Surroundings{},
                            .isDark = theme_.isDark()};
    std::vector<CardRow> rows;
    for (const Section section : isOverview() ? visibleCards(settings_) : std::vector{section_}) {
        const bool isNew = !models_.contains(section);
        if (isOverview() && isNew && !hasSource(section, source.snapshot)) continue;
        CardModel* model = cardModel(section);
        model->show(card(section, source));
        rows.push_back({section, model});
    }
    cards_.set(std::move(rows));
    isWaiting_ = false;
}

// Kept for good, so that a list never holds a card that is gone.
CardModel* DropdownModel::cardModel(Section section) {
    std::unique_ptr<CardModel>& model = models_[section];
    if (!model) model = std::make_unique<CardModel>();
    return model.get();
}

} // namespace tavero
