#pragma once

#include "components/GraphSeries.h"
#include "components/SegmentList.h"
#include "components/StatList.h"
#include "window/Card.h"

#include <QObject>
#include <QProperty>
#include <QtQml/qqmlregistration.h>

namespace tavero {

// A card that is on screen: tells what changed in it, and nothing else.
class CardModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The Overview owns it.")
    Q_PROPERTY(bool showsDetails READ showsDetails NOTIFY showsDetailsChanged FINAL)
    Q_PROPERTY(QString title READ title NOTIFY titleChanged FINAL)
    Q_PROPERTY(QString symbol READ symbol NOTIFY symbolChanged FINAL)
    Q_PROPERTY(QColor color READ color NOTIFY colorChanged FINAL)
    Q_PROPERTY(QString verdict READ verdict NOTIFY verdictChanged FINAL)
    Q_PROPERTY(QString wholeVerdict READ wholeVerdict NOTIFY wholeVerdictChanged FINAL)
    Q_PROPERTY(QString value READ value NOTIFY valueChanged FINAL)
    Q_PROPERTY(QString unit READ unit NOTIFY unitChanged FINAL)
    Q_PROPERTY(QString note READ note NOTIFY noteChanged FINAL)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged FINAL)
    Q_PROPERTY(QColor statusColor READ statusColor NOTIFY statusColorChanged FINAL)
    Q_PROPERTY(QColor statusBackground READ statusBackground NOTIFY statusBackgroundChanged FINAL)
    Q_PROPERTY(QList<double> cores READ cores NOTIFY coresChanged FINAL)
    Q_PROPERTY(QString coresNote READ coresNote NOTIFY coresNoteChanged FINAL)
    Q_PROPERTY(QColor uploadColor READ uploadColor NOTIFY uploadColorChanged FINAL)
    Q_PROPERTY(QString spoken READ spoken NOTIFY spokenChanged FINAL)
    Q_PROPERTY(QString spokenDetail READ spokenDetail NOTIFY spokenDetailChanged FINAL)
    Q_PROPERTY(tavero::SegmentList* segments READ segments CONSTANT FINAL)
    Q_PROPERTY(bool hasSegments READ hasSegments NOTIFY hasSegmentsChanged FINAL)
    Q_PROPERTY(tavero::StatList* stats READ stats CONSTANT FINAL)
    Q_PROPERTY(tavero::GraphSeries* series READ series CONSTANT FINAL)
    Q_PROPERTY(tavero::GraphSeries* uploadSeries READ uploadSeries CONSTANT FINAL)

  public:
    using QObject::QObject;

    void show(Card card);

    bool showsDetails() const { return showsDetails_; }
    QString title() const { return title_; }
    QString symbol() const { return symbol_; }
    QColor color() const { return color_; }
    QString verdict() const { return verdict_; }
    QString wholeVerdict() const { return wholeVerdict_; }
    QString value() const { return value_; }
    QString unit() const { return unit_; }
    QString note() const { return note_; }
    QString status() const { return status_; }
    QColor statusColor() const { return statusColor_; }
    QColor statusBackground() const { return statusBackground_; }
    QList<double> cores() const { return cores_; }
    QString coresNote() const { return coresNote_; }
    QColor uploadColor() const { return uploadColor_; }
    QString spoken() const { return spoken_; }
    QString spokenDetail() const { return spokenDetail_; }
    SegmentList* segments() { return &segments_; }
    bool hasSegments() const { return hasSegments_; }
    StatList* stats() { return &stats_; }
    GraphSeries* series() { return &series_; }
    GraphSeries* uploadSeries() { return &uploadSeries_; } // empty for all but the network

  signals:
    void showsDetailsChanged();
    void titleChanged();
    void symbolChanged();
    void colorChanged();
    void verdictChanged();
    void wholeVerdictChanged();
    void valueChanged();
    void unitChanged();
    void noteChanged();
    void statusChanged();
    void statusColorChanged();
    void statusBackgroundChanged();
    void coresChanged();
    void coresNoteChanged();
    void uploadColorChanged();
    void spokenChanged();
    void spokenDetailChanged();
    void hasSegmentsChanged();

  private:
    // Each compares before it tells.
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, bool, showsDetails_, &CardModel::showsDetailsChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QString, title_, &CardModel::titleChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QString, symbol_, &CardModel::symbolChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QColor, color_, &CardModel::colorChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QString, verdict_, &CardModel::verdictChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QString, wholeVerdict_, &CardModel::wholeVerdictChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QString, value_, &CardModel::valueChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QString, unit_, &CardModel::unitChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QString, note_, &CardModel::noteChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QString, status_, &CardModel::statusChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QColor, statusColor_, &CardModel::statusColorChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QColor, statusBackground_,
                               &CardModel::statusBackgroundChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QList<double>, cores_, &CardModel::coresChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QString, coresNote_, &CardModel::coresNoteChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QColor, uploadColor_, &CardModel::uploadColorChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QString, spoken_, &CardModel::spokenChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, QString, spokenDetail_, &CardModel::spokenDetailChanged)
    Q_OBJECT_BINDABLE_PROPERTY(CardModel, bool, hasSegments_, &CardModel::hasSegmentsChanged)

    SegmentList segments_;
    StatList stats_;
    GraphSeries series_;
    GraphSeries uploadSeries_;
};

} // namespace tavero
