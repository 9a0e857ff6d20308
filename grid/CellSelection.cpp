// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/CellSelection.h"

#include "base/SortedDistinct.h"

#include <utility>

namespace {

void AppendNumbers(QList<int>& numbers, int first, int last) {
    for (int number = first; number <= last; ++number)
        numbers.append(number);
}

}  // namespace

CellSelection::CellSelection(QAbstractItemModel* model, QObject* parent)
    : QItemSelectionModel(model, parent) {
    connect(this, &QItemSelectionModel::selectionChanged, this, [this] { m_whole_column = false; });
}

QList<int> CellSelection::Rows() const {
    QList<int> rows;
    const QItemSelection ranges = selection();
    for (const QItemSelectionRange& range : ranges)
        AppendNumbers(rows, range.top() + 1, range.bottom() + 1);
    return SortedDistinct(std::move(rows));
}

QList<int> CellSelection::Rows(int column) const {
    QList<int> rows;
    const QItemSelection ranges = selection();
    for (const QItemSelectionRange& range : ranges) {
        if (range.left() < column && column <= range.right() + 1)
            AppendNumbers(rows, range.top() + 1, range.bottom() + 1);
    }
    return SortedDistinct(std::move(rows));
}

QList<int> CellSelection::Columns() const {
    QList<int> columns;
    const QItemSelection ranges = selection();
    for (const QItemSelectionRange& range : ranges)
        AppendNumbers(columns, range.left() + 1, range.right() + 1);
    return SortedDistinct(std::move(columns));
}

void CellSelection::SelectRows(const QList<int>& rows) {
    QItemSelection runs;
    for (auto first = rows.cbegin(); first != rows.cend();) {
        auto last = first;
        while (last + 1 != rows.cend() && *(last + 1) == *last + 1)
            ++last;
        runs.append(
            {model()->index(*first - 1, 0), model()->index(*last - 1, model()->columnCount() - 1)});
        first = last + 1;
    }
    select(runs, ClearAndSelect);
}

void CellSelection::setCurrentIndex(const QModelIndex& index, SelectionFlags command) {
    if (!m_keep_current)
        QItemSelectionModel::setCurrentIndex(index, command);
}
