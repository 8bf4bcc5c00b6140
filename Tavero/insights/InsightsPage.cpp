#include "insights/InsightsPage.h"

#include "settings/SettingsFormat.h"

#include <chrono>
#include <utility>

namespace tavero {

namespace {

constexpr std::chrono::seconds reloadInterval{60};
constexpr int week = 7;
constexpr int month = 30;

} // namespace

InsightsPage::InsightsPage(History& history, Clock& clock, Settings& settings)
    : history_(history), clock_(clock), settings_(settings) {
    connect(&settings_, &Settings::changed, this, [this](const QString& name) {
        if (name != QString::fromStdString(keys::insightsDays.name)) return;
        emit daysChanged();
        if (isVisible_) load();
    });
}

InsightsPage::~InsightsPage() = default;

void InsightsPage::appear() {
    if (std::exchange(isVisible_, true)) return;
    load();
}

void InsightsPage::disappear() {
    isVisible_ = false;
    visit_.reset();
    next_.reset();
}

int InsightsPage::days() const { return settings_.get(keys::insightsDays) == week ? week : month; }

void InsightsPage::setDays(int days) { settings_.set(keys::insightsDays, std::int64_t{days}); }

std::optional<InsightsContent> InsightsPage::content() const {
    if (!report_) return std::nullopt;
    return insightsContent(*report_, format(settings_));
}

void InsightsPage::load() {
    next_.reset();
    visit_ = std::make_shared<bool>();
    history_.report(days(), [this, visit = std::weak_ptr(visit_)](auto report) {
        if (visit.expired()) return;
        take(std::move(report));
        next_ = clock_.after(reloadInterval, [this] { load(); });
    });
}

void InsightsPage::take(std::optional<InsightsReport> report) {
    if (report == report_) return;
    report_ = std::move(report);
    emit reportChanged();
}

void InsightsPage::deleteHistory() {
    history_.deleteAll();
    // The worker keeps the order, so this report is that of the empty history.
    if (isVisible_) load();
}

} // namespace tavero
