#pragma once

#include "components/Theme.h"
#include "monitor/Monitor.h"
#include "presentation/MetricStats.h"
#include "presentation/Section.h"
#include "settings/Settings.h"
#include "window/CardList.h"
#include "window/CardModel.h"

#include <QObject>
#include <QProperty>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <map>
#include <memory>

namespace tavero {

// What the panel shows, live: all there is to tell of the metric that it was opened on, or a line
// of each metric. A line that has come stays while the panel is open.
class DropdownModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The dropdown owns it.")
    Q_PROPERTY(QString title READ title CONSTANT FINAL)
    Q_PROPERTY(bool isOverview READ isOverview CONSTANT FINAL)
    Q_PROPERTY(QString waitingText READ waitingText CONSTANT FINAL)
    Q_PROPERTY(bool isWaiting READ isWaiting NOTIFY isWaitingChanged FINAL)
    Q_PROPERTY(bool hasClearCorners READ hasClearCorners CONSTANT FINAL)
    Q_PROPERTY(tavero::CardList* cards READ cards CONSTANT FINAL)

  public:
    // A section that isn't about a metric opens the overview. `surroundings` is asked on every
    // update and may be empty. The others must outlive the model.
    DropdownModel(Section section, const Monitor& monitor, const Settings& settings,
                  const Theme& theme, std::function<Surroundings()> surroundings = {});

    Section section() const { return section_; }
    QString title() const;
    bool isOverview() const { return section_ == Section::overview; }
    QString waitingText() const { return QStringLiteral("Reading your Mac…"); }
    bool isWaiting() const { return isWaiting_; } // until the first snapshot
    bool hasClearCorners() const;
    CardList* cards() { return &cards_; } // one, unless it is the overview

  signals:
    void isWaitingChanged();
    void openMain(); // asks whoever opened the panel
    void quit();

  private:
    void update();
    CardModel* cardModel(Section section);

    Section section_;
    const Monitor& monitor_;
    const Settings& settings_;
    const Theme& theme_;
    std::function<Surroundings()> surroundings_;

    std::map<Section, std::unique_ptr<CardModel>> models_;
    CardList cards_;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(DropdownModel, bool, isWaiting_, true,
                                         &DropdownModel::isWaitingChanged)
};

} // namespace tavero
