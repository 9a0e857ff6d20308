// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/EditHistory.h"
#include "profiles/ProfileKind.h"
#include "profiles/ProfileTable.h"
#include "profiles/StartRows.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

/// How the dialog was asked to start. Any other number fills nothing.
enum class DisplayMode : int { OpenFile = 1, View = 2, Edit = 3 };

/// The rows of a profile and every edit of them. It alone writes the table: others read `table()`
/// and listen to it, and what they enter into `model()` comes here. An operation that says "one
/// step" can be undone; it is no step when it changed nothing. Every operation ends a drag that is
/// still open. Rows and columns count from 1.
class RowEdits : public QObject {
    Q_OBJECT

public:
    RowEdits(ProfileKind kind, DisplayMode mode, QObject* parent = nullptr);

    ProfileKind kind() const { return m_kind; }
    const KindDescriptor& facts() const { return Describe(m_kind); }
    DisplayMode mode() const { return m_mode; }
    bool isViewOnly() const { return m_mode == DisplayMode::View; }
    const ProfileTable& table() const { return m_table; }
    QAbstractItemModel* model() { return &m_table; }
    const EditHistory& history() const { return m_history; }

    // Shown nowhere yet; hosts' tests rely on it.
    bool isModified() const { return m_modified; }
    void SetModified() { m_modified = true; }
    bool isEdition() const { return m_edition; }

    bool canUndo() const { return !isViewOnly() && (m_history.CanUndo() || hasDragged()); }
    bool canRedo() const { return !isViewOnly() && m_history.CanRedo(); }
    bool canAdd() const { return facts().hasTimes() && !isViewOnly(); }
    bool canRemove() const;
    bool canCopy() const { return canPaste(); }
    bool canPaste() const { return facts().columns > 0 && !isViewOnly(); }
    bool canEditCoefficients() const { return facts().coefficients && !isViewOnly(); }

    /// The names that a daily-profile cell can take.
    const QStringList& dailyProfiles() const { return m_daily_profiles; }

    /// Adds a daily profile's name, unless it is there already or cannot be chosen.
    void AddDailyProfile(const QString& name);

    /// Checks the typed `text` for a cell and stores it, one step: a value within its bound, a time
    /// in its place in time order, a daily profile as it is. Returns the row where the entry stands
    /// now; nothing when it was refused: its message was shown, and the table is as it was.
    std::optional<int> Enter(int row, int column, const QString& text);

    /// Stores an accepted value, one step; the other coefficients follow while edition mode is off.
    void EnterValue(int row, const QString& text);

    /// Stores an accepted time and moves the row to `target`, one step. A row that would only pass
    /// rows with its own texts stays.
    void EnterTime(int row, int target, const QString& text);

    /// Stores the chosen daily profile, one step.
    void EnterName(int row, const QString& name);

    /// Stores a whole value column, one step, and rebalances around `row`.
    void EnterColumn(const QStringList& column, int row);

    /// Stores what a series of accepted entries has led to, at once: from `row` on the columns
    /// hold the given texts. `steps` are those of the entries that changed something, as far as
    /// the history keeps them.
    void EnterSeries(int row, const QList<std::pair<int, QStringList>>& columns,
                     const QList<HistoryStep>& steps);

    /// Replaces all rows of a function, or the values and names of the other kinds, one step.
    /// Nothing is checked or rescaled. A step whose texts take more than 64 MiB drops
    /// the steps before it.
    void ReplaceRows(const QStringList& times, const QStringList& values,
                     const QStringList& names = {});

    /// Back to the rows as the host or the last opened file gave them, one step.
    void ReturnToStart();
    bool canReturnToStart() const { return !isViewOnly() && m_start.Differ(m_table); }

    /// Gives the columns the headers that stand over a pasted column.
    void RewriteHeaders();

    /// Rescales coefficients whose rounded sum is not right, one step.
    void Adjust();

    /// Edition mode on: coefficients are edited freely. Off: they are rescaled at once.
    void SetEdition(bool on);

    /// Undo and redo write the table directly and say where. False when there was nothing to do.
    bool Undo();
    bool Redo();

    /// Removes the selected rows of a function and forgets all steps. A selection that would leave
    /// fewer than two is refused with a message. False when nothing went.
    bool RemoveRows(const QList<int>& rows);

    /// Inserts a point at `row`. Records no step; see `ForgetHistory`.
    void InsertPoint(int row, const QString& time, const QString& value);

    void ForgetHistory();

    /// A drag of one value: begin, any number of values, end. One step. The drag of a point gives
    /// it a `time` too, which keeps the order of the rows; "" is the time that it began with.
    void BeginDrag(int row);
    void DragTo(const QString& text, const QString& time = {});
    void EndDrag();
    bool isDragging() const { return m_drag.has_value(); }

signals:
    /// Something that captions, buttons or menu entries depend on has changed.
    void StateChanged();

    /// An undo or a redo has changed this cell; where it changed more than one, the one that the
    /// user had changed, or the first one of a whole table.
    void CellRestored(int row, int column);

protected:
    /// Fills the table as a file or a caller gives the rows; shorter lists leave the other rows of
    /// a fixed kind alone. All steps are forgotten, and the rows count as unmodified.
    void Fill(const QStringList& times, const QStringList& values, const QStringList& names);

    void SetDailyProfiles(const QStringList& names);
    void Rescale();
    void ResetHistory() { m_history.Reset(); }
    void KeepStart() { m_start.Keep(m_table); }
    void ClearModified() { m_modified = false; }

private:
    enum class Scope { Row, Table };
    enum class Direction { Back, Forth };

    // What a step has to restore.
    struct Before {
        RowState row;
        TableTexts table;  // empty where the row is all that changes
    };

    bool hasDragged() const;
    RowState RowStateOf(int row) const;
    Before StateBefore(int row, Scope scope) const;
    template <typename Edit>
    void Record(int row, const Edit& edit, Scope scope = Scope::Row);
    void RecordSince(const Before& before, int row_after);
    void WriteRows(const QStringList& times, const QStringList& values, const QStringList& names);
    void Rebalance(int row);
    bool PassesTwinsOnly(int row, int target, const QString& text) const;
    bool Travel(Direction direction);
    void RestoreRow(const RowState& from, const RowState& to);
    void RestoreColumn(const QStringList& column);
    void RestoreTable(const TableTexts& texts);
    void Changed();

    ProfileKind m_kind;
    DisplayMode m_mode;
    ProfileTable m_table;
    EditHistory m_history;
    StartRows m_start;
    QStringList m_daily_profiles;
    std::optional<Before> m_drag;
    bool m_modified = false;
    bool m_edition = false;
};
