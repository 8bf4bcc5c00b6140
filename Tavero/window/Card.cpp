#include "window/Card.h"

#include "components/Palette.h"
#include "presentation/MetricReading.h"
#include "presentation/MetricStatus.h"
#include "presentation/PageInsight.h"
#include "window/MemoryBreakdown.h"

#include <QStringList>

#include <string>
#include <string_view>

namespace tavero {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

void addReading(Card& card, Metric metric, const CardSource& source) {
    const Reading reading = tavero::reading(metric, source.snapshot, source.format);
    card.value = text(reading.value);
    card.unit = text(reading.unit);
    card.note = text(reading.note);
}

void addStatus(Card& card, Metric metric, const CardSource& source) {
    const std::optional<Status> status = tavero::status(metric, source.snapshot);
    if (!status) return;
    const ToneColors tone = colors(status->tone);
    card.status = text(status->text);
    if (card.note == card.status) card.note.clear(); // memory would say its pressure twice
    card.statusBackground = pick(tone.background, source.isDark);
    card.statusColor =
        tone.text ? pick(*tone.text, source.isDark) : Palette::of(source.isDark).secondaryText;
}

void addVerdict(Card& card, Metric metric, const CardSource& source) {
    const std::optional<PageInsight> insight =
        tavero::insight(metric, source.snapshot, source.format, source.surroundings);
    if (!insight) return;
    card.verdict = text(insight->headline);
    card.wholeVerdict = card.verdict;
    if (insight->detail.empty()) return;
    // A headline that ends in a figure has no full stop of its own.
    if (card.verdict.back().isLetterOrNumber()) card.wholeVerdict += '.';
    card.wholeVerdict += ' ' + text(insight->detail);
}

void addStats(Card& card, Metric metric, const CardSource& source) {
    const QColor background = Palette::of(source.isDark).card;
    for (const Stat& stat :
         overviewStats(metric, source.snapshot, source.format, source.surroundings)) {
        StatRow row{.label = text(stat.label), .value = text(stat.value), .isWide = stat.wide};
        if (stat.tint) row.tint = readable(pick(*stat.tint, source.isDark), background);
        card.stats.push_back(std::move(row));
    }
}

void addCurves(Card& card, Metric metric, const CardSource& source) {
    GraphHistory history = source.graphs.history();
    card.points = std::move(history[metric]);
    if (metric != Metric::network) return;
    card.uploadPoints = source.graphs.uploadHistory();
    card.uploadColor = pick(uploadColor, source.isDark);
}

// "8 cores", or how many there are of each kind. Not which is which: the list of cores doesn't say.
QString coresNote(const CPUSnapshot& cpu) {
    const std::int64_t count = std::ssize(cpu.perCore);
    const std::int64_t fast = cpu.performanceCores;
    const std::int64_t small = cpu.efficiencyCores;
    if (fast > 0 && small > 0 && fast <= count && small == count - fast)
        return QStringLiteral("%1 P · %2 E cores").arg(fast).arg(small);
    return count == 1 ? QStringLiteral("1 core") : QStringLiteral("%1 cores").arg(count);
}

void addCores(Card& card, const CardSource& source) {
    if (!source.snapshot.cpu || source.snapshot.cpu->perCore.empty()) return;
    const CPUSnapshot& cpu = *source.snapshot.cpu;
    card.cores = QList<double>(cpu.perCore.begin(), cpu.perCore.end());
    card.coresNote = coresNote(cpu);
}

void addSpoken(Card& card) {
    const QString measure = card.unit.isEmpty() ? card.value : card.value + ' ' + card.unit;
    QStringList headline{card.title, measure, card.status, card.note};
    headline.removeAll(QString());
    card.spoken = headline.join(QStringLiteral(", "));

    QStringList detail;
    for (const SegmentRow& segment : card.segments) detail += segment.name + ' ' + segment.value;
    for (const StatRow& stat : card.stats) detail += stat.label + ' ' + stat.value;
    card.spokenDetail = (card.wholeVerdict + ' ' + detail.join(QStringLiteral(", "))).trimmed();
}

} // namespace

Card card(Section section, const CardSource& source) {
    const std::optional<Metric> metric = metricOf(section);
    if (!metric) return {};
    Card card{.showsDetails = source.showsDetails,
              .title = text(title(section)),
              .symbol = text(symbol(section)),
              .color = pick(color(section), source.isDark)};
    addReading(card, *metric, source);
    addStatus(card, *metric, source);
    addVerdict(card, *metric, source);
    addStats(card, *metric, source);
    addCurves(card, *metric, source);
    if (section == Section::cpu) addCores(card, source);
    if (section == Section::memory && source.snapshot.memory)
        card.segments = memoryBreakdown(*source.snapshot.memory, source.format, source.isDark);
    addSpoken(card);
    return card;
}

} // namespace tavero
