#include "window/CardModel.h"

#include <utility>

namespace tavero {

void CardModel::show(Card card) {
    showsDetails_ = card.showsDetails;
    title_ = std::move(card.title);
    symbol_ = std::move(card.symbol);
    color_ = card.color;
    verdict_ = std::move(card.verdict);
    wholeVerdict_ = std::move(card.wholeVerdict);
    value_ = std::move(card.value);
    unit_ = std::move(card.unit);
    note_ = std::move(card.note);
    status_ = std::move(card.status);
    statusColor_ = card.statusColor;
    statusBackground_ = card.statusBackground;
    cores_ = std::move(card.cores);
    coresNote_ = std::move(card.coresNote);
    uploadColor_ = card.uploadColor;
    spoken_ = std::move(card.spoken);
    spokenDetail_ = std::move(card.spokenDetail);
    hasSegments_ = !card.segments.empty();
    segments_.set(std::move(card.segments));
    stats_.set(std::move(card.stats));
    series_.set(std::move(card.points));
    uploadSeries_.set(std::move(card.uploadPoints));
}

} // namespace tavero
