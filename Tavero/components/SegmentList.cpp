#include "components/SegmentList.h"

namespace tavero {

QVariant SegmentList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const SegmentRow& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case nameRole:
        return row.name;
    case valueRole:
        return row.value;
    case colorRole:
        return row.color;
    default:
        return {};
    }
}

QHash<int, QByteArray> SegmentList::roleNames() const {
    return {{nameRole, "name"}, {valueRole, "value"}, {colorRole, "color"}};
}

} // namespace tavero
