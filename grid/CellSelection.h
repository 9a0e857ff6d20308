// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QItemSelectionModel>
#include <QList>

/// The selection of the grid and its headers.
class CellSelection : public QItemSelectionModel {
    Q_OBJECT

public:
    explicit CellSelection(QAbstractItemModel* model, QObject* parent = nullptr);

    /// While on, only the selection changes: the current cell stays where it is.
    void KeepCurrent(bool keep) { m_keep_current = keep; }

    /// The rows and columns that hold a selected cell, in order; both count from 1.
    QList<int> Rows() const;
    QList<int> Rows(int column) const;  ///< with a selected cell in `column`
    QList<int> Columns() const;

    /// Selects all cells of `rows`, which rise, and nothing else.
    void SelectRows(const QList<int>& rows);

    /// True when a press on a column's header made it.
    bool isWholeColumn() const { return m_whole_column; }
    void SetWholeColumn(bool whole) { m_whole_column = whole; }

    void setCurrentIndex(const QModelIndex& index, SelectionFlags command) override;

private:
    bool m_keep_current = false;
    bool m_whole_column = false;
};
