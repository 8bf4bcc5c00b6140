#pragma once

#include <QObject> // first, for moc 6.4

#include "history/InsightsReport.h"
#include "insights/History.h"
#include "insights/InsightsContent.h"
#include "settings/Settings.h"
#include "time/Clock.h"

#include <memory>
#include <optional>

namespace tavero {

// The page of the report on the last days: it loads the report while it is on screen, once a minute
// and at once when the period changes, and deletes the history when the user confirms.
class InsightsPage : public QObject {
    Q_OBJECT

  public:
    // All must outlive the page.
    InsightsPage(History& history, Clock& clock, Settings& settings);
    ~InsightsPage() override;

    void appear();
    void disappear();

    // 7 or 30; survives a restart.
    int days() const;
    void setDays(int days);

    // Absent until the first report has come, and for good without a history.
    const std::optional<InsightsReport>& report() const { return report_; }
    std::optional<InsightsContent> content() const;

    // After the user confirmed. The page shows the empty report as soon as it is there.
    void deleteHistory();

  signals:
    void reportChanged();
    void daysChanged();

  private:
    void load();
    void take(std::optional<InsightsReport> report);

    History& history_;
    Clock& clock_;
    Settings& settings_;
    std::optional<InsightsReport> report_;
    bool isVisible_ = false;
    // What is still to come belongs to this visit and period; an answer to an older one is dropped.
    std::shared_ptr<bool> visit_;
    Timer next_;
};

} // namespace tavero
