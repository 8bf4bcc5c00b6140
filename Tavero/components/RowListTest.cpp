#include "components/RowList.h"

#include "components/SegmentList.h"
#include "components/StatList.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tavero {
namespace {

struct Row {
    int id = 0;
    std::string text;

    int identity() const { return id; }
    bool operator==(const Row&) const = default;
};

class List : public RowList<Row> {
  public:
    QVariant data(const QModelIndex& index, int role) const override {
        if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != Qt::DisplayRole)
            return {};
        return QString::fromStdString(rows()[static_cast<std::size_t>(index.row())].text);
    }
};

// What the list told its views, a letter each.
std::string& record(List& list, std::string& told) {
    const auto tell = [&told](char letter) { return [&told, letter] { told += letter; }; };
    QObject::connect(&list, &List::rowsInserted, tell('i'));
    QObject::connect(&list, &List::rowsRemoved, tell('r'));
    QObject::connect(&list, &List::rowsMoved, tell('m'));
    QObject::connect(&list, &List::dataChanged, tell('c'));
    QObject::connect(&list, &List::modelReset, tell('!'));
    return told;
}

TEST(RowList, EqualRowsTellNobody) {
    List list;
    list.set({{1, "a"}, {2, "b"}});
    std::string told;
    record(list, told);
    list.set({{1, "a"}, {2, "b"}});
    EXPECT_EQ(told, "");
}

TEST(RowList, ARowThatStaysIsChangedInPlace) {
    List list;
    list.set({{1, "a"}, {2, "b"}});
    std::string told;
    record(list, told);
    list.set({{1, "a"}, {2, "other"}});
    EXPECT_EQ(told, "c");
    EXPECT_EQ(list.rows()[1].text, "other");
}

TEST(RowList, RowsMoveAndWhatHangsOnThemMovesAlong) {
    List list;
    list.set({{1, "a"}, {2, "b"}, {3, "c"}});
    const QPersistentModelIndex second = list.index(1);
    std::string told;
    record(list, told);
    list.set({{3, "c"}, {1, "a"}, {2, "b"}});
    EXPECT_EQ(told, "m");
    EXPECT_EQ(second.row(), 2);
    EXPECT_EQ(second.data(), "b");
}

TEST(RowList, NewRowsComeInAndOldOnesGoWithoutTheOthers) {
    List list;
    list.set({{1, "a"}, {2, "b"}});
    const QPersistentModelIndex second = list.index(1);
    std::string told;
    record(list, told);
    list.set({{3, "c"}, {2, "b"}});
    EXPECT_EQ(told, "ri");
    EXPECT_EQ(second.row(), 1);
}

TEST(RowList, AnyContentsFollowAnyOthersAlsoWithIdentitiesThatRepeat) {
    List list;
    const QAbstractItemModelTester tester(&list,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::string told;
    record(list, told);
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::vector<Row> rows(random() % 7);
        for (Row& row : rows)
            row = {static_cast<int>(random() % 6), std::string(1 + random() % 2, 'x')};
        list.set(rows);
        ASSERT_EQ(list.rows(), rows);
    }
    EXPECT_EQ(told.find('!'), std::string::npos);
}

TEST(StatList, TellsWhatARowHoldsAndNothingOfRowsThatAreNot) {
    StatList list;
    list.set({{.label = "Temp", .value = "64°C", .tint = Qt::red, .isWide = true}});
    const QModelIndex row = list.index(0);
    EXPECT_EQ(row.data(StatList::labelRole), "Temp");
    EXPECT_EQ(row.data(StatList::valueRole), "64°C");
    EXPECT_EQ(row.data(StatList::tintRole).value<QColor>(), QColor(Qt::red));
    EXPECT_EQ(row.data(StatList::isWideRole), true);
    EXPECT_FALSE(row.data(Qt::DisplayRole).isValid());
    EXPECT_FALSE(list.data(list.index(1), StatList::labelRole).isValid());
    EXPECT_EQ(list.roleNames().size(), 4);
}

TEST(SegmentList, TellsWhatARowHoldsAndNothingOfRowsThatAreNot) {
    SegmentList list;
    list.set({{.name = "Apps", .value = "4 GB", .fraction = 0.5, .color = Qt::red}});
    const QModelIndex row = list.index(0);
    EXPECT_EQ(row.data(SegmentList::nameRole), "Apps");
    EXPECT_EQ(row.data(SegmentList::valueRole), "4 GB");
    EXPECT_EQ(row.data(SegmentList::colorRole).value<QColor>(), QColor(Qt::red));
    EXPECT_FALSE(list.data(QModelIndex(), SegmentList::nameRole).isValid());
    EXPECT_EQ(list.roleNames().size(), 3);
}

} // namespace
} // namespace tavero
