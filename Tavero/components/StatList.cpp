#include "components/StatList.h"

namespace tavero {

QVariant StatList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const StatRow& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case labelRole:
        return row.label;
    case valueRole:
        return row.value;
    case tintRole:
        return row.tint;
    case isWideRole:
        return row.isWide;
    default:
        return {};
    }
}

QHash<int, QByteArray> StatList::roleNames() const {
    return {{labelRole, "label"}, {valueRole, "value"}, {tintRole, "tint"}, {isWideRole, "isWide"}};
}

} // namespace tavero
