#include "window/OverviewModel.h"

#include "settings/SettingsFormat.h"
#include "window/Card.h"
#include "window/OverviewCards.h"

#include <utility>
#include <vector>

namespace tavero {

OverviewModel::OverviewModel(const Monitor& monitor, const Settings& settings, const Theme& theme,
                             QString summary, std::function<Surroundings()> surroundings)
    : monitor_(monitor), settings_(settings), theme_(theme), summary_(std::move(summary)),
      surroundings_(std::move(surroundings)) {
    connect(&monitor, &Monitor::snapshotChanged, this, &OverviewModel::update);
    connect(&settings, &Settings::changed, this, &OverviewModel::update);
    connect(&theme, &Theme::changed, this, &OverviewModel::update);
    update();
}

QString OverviewModel::title() const {
    const std::string_view title = tavero::title(Section::overview);
    return QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()));
}

void OverviewModel::update() {
    showsDetails_ = settings_.get(keys::cardDetails);
    if (!monitor_.snapshot()) return;
    const CardSource source{.snapshot = *monitor_.snapshot(),
                            .graphs = monitor_.graphs(),
                            .format = format(settings_),
                            .surroundings = surroundings_ ? surroundings_() : Surroundings{},
                            .isDark = theme_.isDark(),
                            .showsDetails = showsDetails_};
    std::vector<CardRow> rows;
    for (const Section section : visibleCards(settings_)) {
        if (hasSource(section, source.snapshot)) known_.insert(section);
        if (!known_.contains(section)) continue;
        CardModel* model = cardModel(section);
        model->show(card(section, source));
        rows.push_back({section, model});
    }
    cards_.set(std::move(rows));
    isWaiting_ = false;
}

// Kept for good, so that a list never holds a card that is gone.
CardModel* OverviewModel::cardModel(Section section) {
    std::unique_ptr<CardModel>& model = models_[section];
    if (!model) model = std::make_unique<CardModel>();
    return model.get();
}

} // namespace tavero
