#pragma once

#include "components/RowList.h"

#include <QColor>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tavero {

// A part of a whole, ready to show.
struct SegmentRow {
    QString name;
    QString value;
    double fraction = 0; // of the whole
    QColor color;

    const QString& identity() const { return name; }
    bool operator==(const SegmentRow&) const = default;
};

// What something is made of, in the order of the bar that shows it.
class SegmentList : public RowList<SegmentRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A view-model owns it.")

  public:
    enum Role { nameRole = Qt::UserRole, valueRole, colorRole };

    using RowList::RowList;

    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;
};

} // namespace tavero
