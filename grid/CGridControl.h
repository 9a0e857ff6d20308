// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "grid/ColumnRoom.h"
#include "grid/GridClipboard.h"

#include <QList>
#include <QTableView>

#include <optional>
#include <utility>

class CellSelection;
class GridCellDelegate;
class ProfileSession;

/// The grid of rows beside the chart: shows the session's table, takes what the user types, and
/// tells which row is current. Rows and columns are grid numbers: 0 is a header, data counts
/// from 1.
class CGridControl : public QTableView {
    Q_OBJECT

public:
    explicit CGridControl(ProfileSession* session, QWidget* parent = nullptr);

    /// Gives the grid the layout of the session's kind.
    void InitGrid();

    /// Ends an open cell editor and stores its entry. False when the entry was refused.
    bool CommitOpenEditor();

    /// Closes an open cell editor without storing its entry.
    void DropOpenEditor();

    /// Checks the entry `text` for a cell and, if it is right, stores it through the session. False
    /// when it is refused; the cell then keeps its text.
    bool ValidateEntry(int row, int column, const QString& text);

    /// Makes the cell the current and the only selected one, and brings it into view.
    void SelectCell(int row, int column);

    /// Selects whole rows, in rising order and at least one. The first of them becomes current and
    /// comes into view.
    void SelectRows(const QList<int>& rows);

    /// The rows and columns that hold a selected cell, in order.
    QList<int> SelectedRows() const;
    /// The rows whose cell in `column` is selected, in order.
    QList<int> SelectedRows(int column) const;
    QList<int> SelectedColumns() const;

    /// Copies the selected cells, or tells why not; true when they were copied.
    bool CopySelection();

    /// Pastes the clipboard from the first selected cell on.
    void PasteSelection();

    ColumnRoom& Columns() { return m_columns; }

    /// Call after rows were inserted or removed: selects the current cell, or the first one if
    /// there is none, and tells its row again.
    void SettleCurrentCell();

signals:
    void RowEntered(int row);
    void RowLeft(int row);

    /// The user chose to add or to view a daily profile in `row`; the cell keeps its text.
    void ProfileCommandChosen(int row, const QString& choice);

protected:
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;

private:
    void OnEnterRow(int row, int column);
    void OnLeaveRow(int row, int column);
    bool OnGridKeyDown(int key, Qt::KeyboardModifiers modifiers);
    bool OnProfileChoice(int row, const QString& choice);
    GridSelection Selection() const;
    bool CannotBeginEntry(const QKeyEvent& event) const;
    void EndEditing(int key, Qt::KeyboardModifiers modifiers);
    void MoveDown();

    ProfileSession* m_session;  // not owned
    GridCellDelegate* m_delegate;
    CellSelection* m_selection;
    ColumnRoom m_columns;
    GridClipboard m_clipboard;
    bool m_entry_accepted = true;

    // While an editor is open: where its entry moved the row, from the cell to the new row.
    std::optional<std::pair<QPersistentModelIndex, int>> m_moved_entry;
};
