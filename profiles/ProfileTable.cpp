// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/ProfileTable.h"

#include "base/SortedDistinct.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

// Above this many runs a removal resets the model instead of announcing each run.
constexpr qsizetype kMaxRuns = 100;

}  // namespace

ProfileTable::ProfileTable(ProfileKind kind, QObject* parent)
    : QAbstractTableModel(parent), m_labels_fixed(Describe(kind).labels != RowLabels::None) {
    const KindDescriptor& facts = Describe(kind);
    for (int column = 1; column <= facts.columns; ++column)
        m_headers.append(facts.headers[static_cast<size_t>(column - 1)].toString());
    m_columns.resize(std::max(facts.columns, 1));
    m_locked.fill(false, m_columns.size());
    m_locked.first() = m_labels_fixed;
}

bool ProfileTable::IsDataCell(int row, int column) const {
    return row >= 1 && row <= RowCount() && column >= 1 && column <= ColumnCount();
}

QString ProfileTable::CellText(int row, int column) const {
    if (row == 0)
        return HeaderText(column);
    return IsDataCell(row, column) ? m_columns[column - 1][row - 1] : QString();
}

void ProfileTable::SetCellText(int row, int column, const QString& text) {
    if (!IsDataCell(row, column) || m_columns[column - 1][row - 1] == text)
        return;
    m_columns[column - 1][row - 1] = text;
    const QModelIndex cell = index(row - 1, column - 1);
    emit dataChanged(cell, cell);
}

QStringList ProfileTable::Column(int column) const {
    return column >= 1 && column <= ColumnCount() ? m_columns[column - 1] : QStringList();
}

void ProfileTable::SetColumn(int column, const QStringList& texts, int row) {
    if (!IsDataCell(row, column))
        return;
    QStringList& cells = m_columns[column - 1];
    qsizetype first = 0;
    qsizetype last = std::min(cells.size() - (row - 1), texts.size()) - 1;
    while (first <= last && cells.at(row - 1 + first) == texts[first])
        ++first;
    while (first <= last && cells.at(row - 1 + last) == texts[last])
        --last;
    if (first > last)
        return;
    if (row == 1 && texts.size() == cells.size())
        cells = texts;  // shared with the giver, as in a reset
    else
        std::copy(texts.cbegin() + first, texts.cbegin() + last + 1,
                  cells.begin() + row - 1 + first);
    emit dataChanged(index(static_cast<int>(row - 1 + first), column - 1),
                     index(static_cast<int>(row - 1 + last), column - 1));
}

void ProfileTable::SetColumns(const QList<QStringList>& columns) {
    if (columns.first().size() != RowCount()) {
        beginResetModel();
        m_columns = columns;
        endResetModel();
        return;
    }
    for (int column = 1; column <= ColumnCount(); ++column)
        SetColumn(column, columns[column - 1]);
}

QString ProfileTable::HeaderText(int column) const {
    return column >= 1 && column <= ColumnCount() ? m_headers[column - 1] : QString();
}

void ProfileTable::SetHeaderText(int column, const QString& text) {
    if (column < 1 || column > ColumnCount())
        return;
    m_headers[column - 1] = text;
    emit headerDataChanged(Qt::Horizontal, column - 1, column - 1);
}

void ProfileTable::ResetRows(const QStringList& labels, const QStringList& values,
                             const QStringList& names) {
    beginResetModel();
    QList<QStringList> columns = {labels, values, names};
    columns.resize(m_columns.size());
    for (QStringList& cells : columns) {
        // A list of the right length stays shared with its giver.
        if (cells.size() != labels.size())
            cells.resize(labels.size());
    }
    m_columns = std::move(columns);
    endResetModel();
}

void ProfileTable::InsertRow(int row, const QString& label, const QString& value) {
    if (row < 1 || row > RowCount() + 1 || ColumnCount() == 0)
        return;
    beginInsertRows({}, row - 1, row - 1);
    for (QStringList& cells : m_columns)
        cells.insert(row - 1, QString());
    m_columns[kLabelColumn - 1][row - 1] = label;
    m_columns[kValueColumn - 1][row - 1] = value;
    endInsertRows();
}

QList<int> ProfileTable::DataRows(const QList<int>& rows) const {
    QList<int> there = SortedDistinct(rows);
    there.removeIf([this](int row) { return row < 1 || row > RowCount(); });
    return there;
}

void ProfileTable::RemoveRows(const QList<int>& rows) {
    const QList<int> order = DataRows(rows);
    // Neighbouring rows go in one piece, so that a large selection costs one notification a run.
    QList<std::pair<int, int>> runs;
    for (const int row : order) {
        if (runs.isEmpty() || row != runs.last().second + 1)
            runs.append({row, row});
        runs.last().second = row;
    }
    if (runs.size() > kMaxRuns) {
        RemoveScattered(order);
        return;
    }
    std::reverse(runs.begin(), runs.end());
    for (const auto& [first, last] : std::as_const(runs)) {
        beginRemoveRows({}, first - 1, last - 1);
        for (QStringList& cells : m_columns)
            cells.remove(first - 1, last - first + 1);
        endRemoveRows();
    }
}

// Removes all rows in one pass: run by run each would move all cells behind it.
void ProfileTable::RemoveScattered(const QList<int>& rows) {
    std::vector<bool> gone(static_cast<size_t>(RowCount()));
    for (const int row : rows)
        gone[static_cast<size_t>(row - 1)] = true;
    beginResetModel();
    for (QStringList& cells : m_columns) {
        QStringList kept;
        kept.reserve(cells.size() - rows.size());
        for (qsizetype i = 0; i < cells.size(); ++i) {
            if (!gone[static_cast<size_t>(i)])
                kept.append(std::move(cells[i]));
        }
        cells = std::move(kept);
    }
    endResetModel();
}

void ProfileTable::MoveRow(int from, int to, const CellRewrite& rewrite) {
    if (from == to || !IsDataCell(from, 1) || !IsDataCell(to, 1))
        return;
    const auto [first, last] = std::minmax({from - 1, to - 1});
    for (QStringList& cells : m_columns) {
        cells.move(from - 1, to - 1);
        if (rewrite)
            std::transform(cells.cbegin() + first, cells.cbegin() + last + 1, cells.begin() + first,
                           rewrite);
    }
    emit dataChanged(index(first, 0), index(last, ColumnCount() - 1));
}

void ProfileTable::SetLocked(int column, bool locked) {
    if (column >= 1 && column <= ColumnCount())
        m_locked[column - 1] = locked;
}

bool ProfileTable::IsLocked(int column) const {
    return column < 1 || column > ColumnCount() || m_locked[column - 1];
}

void ProfileTable::SetChoices(const QStringList& choices) {
    m_choices = choices;
}

int ProfileTable::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : RowCount();
}

int ProfileTable::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount();
}

QVariant ProfileTable::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole: return CellText(index.row() + 1, index.column() + 1);
        case kChoicesRole:
            return index.column() + 1 == kNameColumn ? QVariant(m_choices) : QVariant();
        case Qt::TextAlignmentRole:
            // The fixed tables may be wider than their window: their texts begin where they can be
            // seen.
            return m_labels_fixed ? QVariant() : QVariant(Qt::AlignRight | Qt::AlignVCenter);
        default: return {};
    }
}

bool ProfileTable::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole ||
        !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid) ||
        IsLocked(index.column() + 1))
        return false;
    return m_entry_hook && m_entry_hook(index.row() + 1, index.column() + 1, value.toString());
}

QVariant ProfileTable::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Horizontal)
        return section >= 0 && section < ColumnCount() ? QVariant(m_headers[section]) : QVariant();
    return section >= 0 && section < RowCount() ? QVariant(section + 1) : QVariant();
}

Qt::ItemFlags ProfileTable::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    if (!IsLocked(index.column() + 1))
        flags |= Qt::ItemIsEditable;
    return flags;
}
