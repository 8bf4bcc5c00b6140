#pragma once

#include <QAbstractListModel>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace tavero {

// A list that a surface shows, fed with whole new contents. Rows that stay are moved and changed in
// place, never reset, so that what hangs on a row (hover, focus, an animation) survives an update.
//
// A row is a plain value with == and an `identity()`, which tells rows apart across updates.
template <typename Row>
class RowList : public QAbstractListModel {
  public:
    using QAbstractListModel::QAbstractListModel;

    const std::vector<Row>& rows() const { return rows_; }
    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }

    void set(std::vector<Row> rows) {
        removeMissing(rows);
        for (std::size_t at = 0; at < rows.size(); ++at) place(std::move(rows[at]), at);
        removeFrom(rows.size());
    }

  private:
    static auto sameAs(const Row& row) {
        return [&row](const Row& other) { return other.identity() == row.identity(); };
    }

    void removeMissing(const std::vector<Row>& wanted) {
        for (std::size_t at = rows_.size(); at-- > 0;) {
            if (std::any_of(wanted.begin(), wanted.end(), sameAs(rows_[at]))) continue;
            beginRemoveRows({}, static_cast<int>(at), static_cast<int>(at));
            rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(at));
            endRemoveRows();
        }
    }

    // Brings the row to its place; those before it are settled.
    void place(Row row, std::size_t at) {
        const int index = static_cast<int>(at);
        const auto target = rows_.begin() + static_cast<std::ptrdiff_t>(at);
        const auto found = std::find_if(target, rows_.end(), sameAs(row));
        if (found == rows_.end()) {
            beginInsertRows({}, index, index);
            rows_.insert(target, std::move(row));
            endInsertRows();
            return;
        }
        if (found != target) {
            const int from = static_cast<int>(std::distance(rows_.begin(), found));
            beginMoveRows({}, from, from, {}, index);
            std::rotate(target, found, std::next(found));
            endMoveRows();
        }
        if (rows_[at] == row) return;
        rows_[at] = std::move(row);
        emit dataChanged(this->index(index), this->index(index));
    }

    // What is left over when an identity came twice and now comes once.
    void removeFrom(std::size_t count) {
        if (rows_.size() <= count) return;
        beginRemoveRows({}, static_cast<int>(count), static_cast<int>(rows_.size()) - 1);
        rows_.resize(count);
        endRemoveRows();
    }

    std::vector<Row> rows_;
};

} // namespace tavero
