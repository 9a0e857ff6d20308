// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <QAbstractTableModel>
#include <QList>
#include <QStringList>

#include <functional>

/// The live rows: column 1 holds the row's label or time, column 2 its value, column 3 the name of
/// a daily profile. Everything that shows or keeps rows listens to this model; `RowEdits` alone
/// writes into it.
///
/// Grid numbers are used throughout the own operations: data rows and columns count from 1, row 0
/// is the header row, column 0 the row headers. Writing to a header or outside the table does
/// nothing, reading there gives the header text or "". Cells are texts and come back as they were
/// put in.
class ProfileTable : public QAbstractTableModel {
    Q_OBJECT

public:
    static constexpr int kLabelColumn = 1;
    static constexpr int kValueColumn = 2;
    static constexpr int kNameColumn = 3;

    /// The choices of a cell with a drop-down list, as QStringList.
    static constexpr int kChoicesRole = Qt::UserRole + 1;

    /// Stores an entry of the user (1-based row and column). Returns false to refuse it.
    using EntryHook = std::function<bool(int row, int column, const QString& text)>;

    using CellRewrite = std::function<QString(const QString& text)>;

    explicit ProfileTable(ProfileKind kind, QObject* parent = nullptr);

    int RowCount() const { return static_cast<int>(m_columns.first().size()); }
    int ColumnCount() const { return static_cast<int>(m_headers.size()); }

    QString CellText(int row, int column) const;
    void SetCellText(int row, int column, const QString& text);

    /// All texts of a column, one a data row; empty for a column that is not there.
    QStringList Column(int column) const;

    /// Puts `texts` into the column from row `row` on, as many as there is room for. Tells of the
    /// rows between the first and the last one that changed.
    void SetColumn(int column, const QStringList& texts, int row = 1);

    /// All columns, one or more; they share their texts with the table.
    const QList<QStringList>& Columns() const { return m_columns; }

    /// Replaces all rows by what `Columns` gave. The rows stay where their number is the same.
    void SetColumns(const QList<QStringList>& columns);

    QString HeaderText(int column) const;
    void SetHeaderText(int column, const QString& text);

    /// Replaces all rows: one row an entry of `labels`. Shorter lists leave cells empty.
    void ResetRows(const QStringList& labels, const QStringList& values,
                   const QStringList& names = {});

    /// Inserts one row so that it becomes row `row` (1 .. RowCount() + 1).
    void InsertRow(int row, const QString& label, const QString& value);

    /// Those of `rows` that are data rows, each once, in ascending order.
    QList<int> DataRows(const QList<int>& rows) const;

    /// Removes the given rows; numbers that are no data rows are passed over. Many rows that are
    /// not neighbours go in one reset of the model.
    void RemoveRows(const QList<int>& rows);

    /// Rotates the rows between `from` and `to` so that row `from` becomes row `to`. With `rewrite`
    /// every cell of these rows is replaced by what it gives for the cell's text.
    void MoveRow(int from, int to, const CellRewrite& rewrite = {});

    /// A locked column cannot be edited by the user; label columns of fixed kinds always are.
    void SetLocked(int column, bool locked);
    bool IsLocked(int column) const;

    void SetChoices(const QStringList& choices);
    const QStringList& Choices() const { return m_choices; }

    /// `setData` hands entries to `hook`; before there is one it refuses them.
    void SetEntryHook(EntryHook hook) { m_entry_hook = std::move(hook); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void RemoveScattered(const QList<int>& rows);
    bool IsDataCell(int row, int column) const;

    bool m_labels_fixed;
    QStringList m_headers;
    QList<QStringList> m_columns;  // never empty: a kind without columns keeps one without rows
    QList<bool> m_locked;
    QStringList m_choices;
    EntryHook m_entry_hook;
};
