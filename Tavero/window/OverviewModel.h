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
#include <set>

namespace tavero {

// The Overview: a card for everything that this machine can tell of, live. A card that has come
// stays while the model lives, also if its figures fail for a while.
class OverviewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window owns it.")
    Q_PROPERTY(QString title READ title CONSTANT FINAL)
    Q_PROPERTY(QString summary READ summary CONSTANT FINAL)
    Q_PROPERTY(QString waitingText READ waitingText CONSTANT FINAL)
    Q_PROPERTY(bool isWaiting READ isWaiting NOTIFY isWaitingChanged FINAL)
    Q_PROPERTY(bool showsDetails READ showsDetails NOTIFY showsDetailsChanged FINAL)
    Q_PROPERTY(tavero::CardList* cards READ cards CONSTANT FINAL)

  public:
    // `summary` names the machine in a line; it may be empty. `surroundings` is asked on every
    // update and may be empty too. The others must outlive the model.
    OverviewModel(const Monitor& monitor, const Settings& settings, const Theme& theme,
                  QString summary, std::function<Surroundings()> surroundings = {});

    QString title() const;
    QString summary() const { return summary_; }
    QString waitingText() const { return QStringLiteral("Reading your Mac…"); }
    bool isWaiting() const { return isWaiting_; }       // until the first snapshot
    bool showsDetails() const { return showsDetails_; } // figures and curves on the cards
    CardList* cards() { return &cards_; }

  signals:
    void isWaitingChanged();
    void showsDetailsChanged();

  private:
    void update();
    CardModel* cardModel(Section section);

    const Monitor& monitor_;
    const Settings& settings_;
    const Theme& theme_;
    QString summary_;
    std::function<Surroundings()> surroundings_;

    std::set<Section> known_; // had a source at some time
    std::map<Section, std::unique_ptr<CardModel>> models_;
    CardList cards_;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(OverviewModel, bool, isWaiting_, true,
                                         &OverviewModel::isWaitingChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(OverviewModel, bool, showsDetails_, true,
                                         &OverviewModel::showsDetailsChanged)
};

} // namespace tavero
