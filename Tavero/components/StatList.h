#pragma once

#include "components/RowList.h"

#include <QColor>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tavero {

// A secondary figure, ready to show.
struct StatRow {
    QString label;
    QString value;
    QColor tint;         // of the value; not valid: the surface's own
    bool isWide = false; // takes a whole row of a grid

    const QString& identity() const { return label; }
    bool operator==(const StatRow&) const = default;
};

class StatList : public RowList<StatRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A view-model owns it.")

  public:
    enum Role { labelRole = Qt::UserRole, valueRole, tintRole, isWideRole };

    using RowList::RowList;

    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;
};

} // namespace tavero
