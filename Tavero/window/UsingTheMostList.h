#pragma once

#include <QObject> // first, for moc 6.4 loses its way in <concepts> otherwise

#include "components/AppIconItem.h"
#include "components/RowList.h"
#include "records/AppIdentity.h"

#include <QImage>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <string>

namespace tavero {

// An app among those that use the most, ready to show. An empty text and a null icon show nothing.
struct UsingTheMostRow {
    AppIdentity app;
    std::string bundlePath; // empty for one that can't be quit from here
    AppIconItem::Kind kind = AppIconItem::App;
    QImage icon;
    QString name;
    QString flag;
    QString note;
    QString cpu;
    double cpuLevel = 0; // of its bar, 0 to 1
    QString memory;
    double memoryLevel = 0;
    QString spoken; // the whole row for a screen reader
    bool isConfirming = false;

    const AppIdentity& identity() const { return app; }
    bool operator==(const UsingTheMostRow&) const = default;
};

class UsingTheMost;

// The rows, each of which also knows whose they are, so that it can ask to quit.
class UsingTheMostList : public RowList<UsingTheMostRow> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A view-model owns it.")

  public:
    enum Role {
        ownerRole = Qt::UserRole,
        kindRole,
        iconRole,
        nameRole,
        flagRole,
        noteRole,
        cpuRole,
        cpuLevelRole,
        memoryRole,
        memoryLevelRole,
        spokenRole,
        canQuitRole,
        quitTextRole,
        isConfirmingRole
    };

    // The owner must outlive the list.
    explicit UsingTheMostList(UsingTheMost& owner) : owner_(owner) {}

    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  private:
    UsingTheMost& owner_;
};

} // namespace tavero
