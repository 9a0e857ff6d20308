// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

/// The state of one row in a step: its place and its very texts.
struct RowState {
    int row = 0;    ///< 0-based
    QString label;  ///< column 1: the time of a point
    QString value;  ///< column 2
    QString name;   ///< column 3

    friend bool operator==(const RowState&, const RowState&) = default;
};

/// All texts of a table, a list a column.
using TableTexts = QList<QStringList>;

/// All rows before and after an action that replaced them. The lists share their texts with those
/// of the table.
struct TableStep {
    TableTexts before;
    TableTexts after;

    friend bool operator==(const TableStep&, const TableStep&) = default;
};

/// One user action on one row, or on all of them. `before.row` and `after.row` differ when a new
/// time moved the row.
struct HistoryStep {
    RowState before;
    RowState after;
    std::optional<TableStep> table = {};  ///< there: the two rows mean nothing

    friend bool operator==(const HistoryStep&, const HistoryStep&) = default;
};

/// The dialog's undo store. Kinds with coefficients keep up to six snapshots of the value column,
/// the others up to twelve steps. Undo and redo are inverse to each other in every sequence, and a
/// cell that comes back gets its very text again.
///
/// For the given interface the history is a table of 6 x 24 floats with a position and a redo
/// limit: a snapshot a row, or two banks of three rows (before, after). `Table` shows it that way;
/// it is part of the given interface and not used by the dialog.
class EditHistory {
public:
    explicit EditHistory(ProfileKind kind = ProfileKind::Function);

    /// Older steps are dropped.
    static constexpr qsizetype kMaxSteps = 12;

    /// A table step whose texts take more, before and after together, drops the steps before it.
    static constexpr qsizetype kMaxTableBytes = qsizetype{64} << 20;

    /// Forgets everything.
    void Reset();

    bool CanUndo() const;
    bool CanRedo() const;

    /// Records `column`, the value column as it was before an edit. For kinds with coefficients.
    void PushSnapshot(const QStringList& column);

    /// The column to restore, given the one shown now; nothing when there is no step to undo.
    std::optional<QStringList> UndoSnapshot(const QStringList& shown);
    std::optional<QStringList> RedoSnapshot();

    /// Records one action; one that changed nothing is left out. For kinds without coefficients.
    void PushStep(const HistoryStep& step);

    /// The step whose `before` is to be restored, or whose `after` is to be made again.
    std::optional<HistoryStep> UndoStep();
    std::optional<HistoryStep> RedoStep();

    static constexpr int kTableRows = 6;
    static constexpr int kTableSlots = 24;
    static constexpr float kEmptySlot = -1.0F;
    using FloatTable = std::array<std::array<float, kTableSlots>, kTableRows>;

    /// The recorded numbers. A step takes one slot of each bank: the row's index; the time of a
    /// point, or the index of the row's name in `daily_profiles` (-1 for a name that is not
    /// listed); the value. The column kept for the redo of the newest snapshot is not among the
    /// six. A table step leaves its slots empty.
    FloatTable Table(const QStringList& daily_profiles = {}) const;

private:
    // Indices of records: `position` is the next one to undo, -1 when there is none; `limit` is the
    // newest one. The records between them have been undone.
    struct Store {
        QList<QStringList> snapshots;
        QStringList shown;  // the column after the newest snapshot, known from its undo on
        QList<HistoryStep> steps;
        int position = -1;
        int limit = -1;
    };

    template <typename Record>
    void Push(QList<Record>& records, const Record& record, qsizetype most);

    ProfileKind m_kind;
    Store m_store;
};
