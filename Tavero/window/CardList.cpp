#include "window/CardList.h"

namespace tavero {

QVariant CardList::data(const QModelIndex& index, int role) const {
    if (role != cardRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    return QVariant::fromValue(rows()[static_cast<std::size_t>(index.row())].card);
}

QHash<int, QByteArray> CardList::roleNames() const { return {{cardRole, "card"}}; }

} // namespace tavero
