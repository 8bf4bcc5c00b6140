#pragma once

#include "components/RowList.h"
#include "presentation/Section.h"
#include "window/CardModel.h"

#include <QtQml/qqmlregistration.h>

namespace tavero {

struct CardRow {
    Section section = Section::overview;
    CardModel* card = nullptr;

    Section identity() const { return section; }
    bool operator==(const CardRow&) const = default;
};

// The cards on screen, in their order.
class CardList : public RowList<CardRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The Overview owns it.")

  public:
    enum Role { cardRole = Qt::UserRole };

    using RowList::RowList;

    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;
};

} // namespace tavero
