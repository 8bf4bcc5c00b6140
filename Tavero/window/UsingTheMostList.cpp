#include "window/UsingTheMostList.h"

#include "window/UsingTheMost.h"

namespace tavero {

QVariant UsingTheMostList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const UsingTheMostRow& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case ownerRole:
        return QVariant::fromValue(&owner_);
    case kindRole:
        return QVariant::fromValue(row.kind);
    case iconRole:
        return row.icon;
    case nameRole:
        return row.name;
    case flagRole:
        return row.flag;
    case noteRole:
        return row.note;
    case cpuRole:
        return row.cpu;
    case cpuLevelRole:
        return row.cpuLevel;
    case memoryRole:
        return row.memory;
    case memoryLevelRole:
        return row.memoryLevel;
    case spokenRole:
        return row.spoken;
    case canQuitRole:
        return !row.bundlePath.empty();
    case quitTextRole:
        return "Quit " + row.name;
    case isConfirmingRole:
        return row.isConfirming;
    default:
        return {};
    }
}

QHash<int, QByteArray> UsingTheMostList::roleNames() const {
    return {{ownerRole, "owner"},       {kindRole, "kind"},
            {iconRole, "icon"},         {nameRole, "name"},
            {flagRole, "flag"},         {noteRole, "note"},
            {cpuRole, "cpu"},           {cpuLevelRole, "cpuLevel"},
            {memoryRole, "memory"},     {memoryLevelRole, "memoryLevel"},
            {spokenRole, "spoken"},     {canQuitRole, "canQuit"},
            {quitTextRole, "quitText"}, {isConfirmingRole, "isConfirming"}};
}

} // namespace tavero
