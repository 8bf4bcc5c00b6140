#pragma once

#include "components/SegmentList.h"
#include "components/StatList.h"
#include "monitor/Graphs.h"
#include "presentation/Format.h"
#include "presentation/GraphPoint.h"
#include "presentation/MetricStats.h"
#include "presentation/Section.h"
#include "records/LiveSnapshot.h"

#include <QColor>
#include <QList>
#include <QString>

#include <vector>

namespace tavero {

// Everything that a card on the Overview says, ready to show. An empty text, an empty list and a
// colour that is not valid show nothing.
struct Card {
    bool showsDetails = true; // figures and curves, below the headline
    QString title;
    QString symbol; // the name of its icon
    QColor color;
    QString verdict;      // what is going on, in one sentence
    QString wholeVerdict; // and why, or what to do
    QString value;
    QString unit;
    QString note;
    QString status;
    QColor statusColor;
    QColor statusBackground;
    QList<double> cores; // how busy each is, in the order the host reports them
    QString coresNote;
    std::vector<SegmentRow> segments;
    std::vector<StatRow> stats;
    std::vector<GraphPoint> points; // fractions of the graph's height
    std::vector<GraphPoint> uploadPoints;
    QColor uploadColor;
    QString spoken;       // the headline for a screen reader
    QString spokenDetail; // and the rest

    bool operator==(const Card&) const = default;
};

// What cards are made of.
struct CardSource {
    const LiveSnapshot& snapshot;
    const Graphs& graphs;
    Format format;
    Surroundings surroundings;
    bool isDark = false;
    bool showsDetails = true;
};

// The card of a section that has one: see orderedCards().
Card card(Section section, const CardSource& source);

} // namespace tavero
