// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/EditHistory.h"
#include "profiles/ProfileFile.h"
#include "profiles/ProfileFolders.h"
#include "profiles/ProfileKind.h"
#include "profiles/ProfileTable.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

/// How the dialog was asked to start. Any other number fills nothing.
enum class DisplayMode : int { OpenFile = 1, View = 2, Edit = 3 };

/// What a caller hands to a session. The lists are taken over: once the rows are filled, each text
/// is held by the table alone.
struct SessionSetup {
    ProfileKind kind = ProfileKind::Function;
    DisplayMode mode = DisplayMode::Edit;
    QString text;  ///< modes 1 and 2: the path of the file to open, "" to ask for one
    QString name;
    QStringList times;
    QStringList values;
    QStringList names;
    ProfileFolders folders = ProfileFolders(ProfileFolders::ProgramFolder());
};

/// The editing state behind the dialog, and all that can be done to it. The rows live in `table()`;
/// grid and chart listen to that. Rows are grid rows, counted from 1.
class ProfileSession : public QObject {
    Q_OBJECT

public:
    explicit ProfileSession(SessionSetup setup, QObject* parent = nullptr);

    ProfileKind kind() const { return m_setup.kind; }
    const KindDescriptor& facts() const { return Describe(m_setup.kind); }
    bool isViewOnly() const { return m_setup.mode == DisplayMode::View; }
    ProfileTable& table() { return m_table; }
    const ProfileTable& table() const { return m_table; }
    const EditHistory& history() const { return m_history; }

    const QString& name() const { return m_name; }  ///< as shown

    /// The name that was handed over, or the one that the last save gave it instead.
    const QString& nameForCaller() const { return m_setup.name; }

    QString caption() const;     ///< of the window, one line
    QString chartTitle() const;  ///< prefix and name; may hold a line break

    bool isModified() const { return m_modified; }
    void SetModified() { m_modified = true; }
    bool isSaved() const { return m_saved; }
    void ClearSaved() { m_saved = false; }
    bool isEdition() const { return m_edition; }
    const QString& path() const { return m_path; }  ///< absolute; "" before a file was used

    /// The name under which the last successful save can be found again; "" before one, and after
    /// one that cannot be found by name.
    const QString& savedName() const { return m_saved_name; }

    bool canUndo() const { return !isViewOnly() && m_history.CanUndo(); }
    bool canRedo() const { return !isViewOnly() && m_history.CanRedo(); }
    bool canRemove() const;
    bool canAdd() const;
    bool canOpen() const { return facts().hasFiles(); }
    bool canSave() const { return canSaveAs() && !m_path.isEmpty(); }
    bool canSaveAs() const { return facts().hasFiles() && !isViewOnly(); }
    bool canCopy() const { return canPaste(); }
    bool canPaste() const { return facts().columns > 0 && !isViewOnly(); }
    bool canEditCoefficients() const;

    /// Fills the table as the mode asks. False when the dialog is to end with 0 at once.
    bool InitialFill();

    /// Asks for a file and reads it.
    void Open();

    /// Reads the file at `path` into the table. A refused file shows its message and changes
    /// nothing.
    ProfileFileStatus ReadFile(const QString& path);

    /// The texts of the file that was read last, before any rescaling; nothing before one.
    const std::optional<ProfileContent>& lastRead() const { return m_last_read; }

    void Save();
    void SaveAs();

    /// Rescales coefficients whose rounded sum is not right.
    void Adjust();

    /// Edition mode on: coefficients are edited freely. Off: they are rescaled at once.
    void SetEdition(bool on);

    /// Undo and redo write the table directly and say where. False when there was nothing to do.
    bool Undo();
    bool Redo();

    /// Removes the selected rows of a function. A selection that would leave fewer than two is
    /// refused with a message. False when nothing went.
    bool RemoveRows(const QList<int>& rows);

    /// Inserts a point at `row`. Records no step; see `ForgetHistory`.
    void InsertPoint(int row, const QString& time, const QString& value);

    void ForgetHistory();

    /// Stores an accepted value, one step; the other coefficients follow while edition mode is off.
    void EnterValue(int row, const QString& text);

    /// Stores an accepted time and moves the row to `target`, one step. A row that would only pass
    /// rows with its own texts stays.
    void EnterTime(int row, int target, const QString& text);

    /// Stores the chosen daily profile, one step.
    void EnterName(int row, const QString& name);

    /// Stores a whole value column after a bulk paste, one step, and rebalances around `row`.
    void EnterColumn(const QStringList& column, int row);

    /// Stores what a series of accepted entries has led to, at once: from `row` on the columns
    /// hold the given texts. `steps` are those of the entries that changed something, as far as
    /// the history keeps them.
    void EnterSeries(int row, const QList<std::pair<int, QStringList>>& columns,
                     const QList<HistoryStep>& steps);

    /// A drag of one value: begin, any number of values, end. One step when anything changed.
    void BeginDrag(int row);
    void DragTo(const QString& text);
    void EndDrag();
    bool isDragging() const { return m_drag.has_value(); }

    /// Adds a daily profile's name to the list, unless it is listed already or cannot be chosen.
    void AddDailyProfile(const QString& name);
    const QStringList& dailyProfiles() const { return m_daily_profiles; }
    const ProfileFolders& folders() const { return m_setup.folders; }

    /// The rows of the table as the caller's lists.
    void CopyRowsTo(QStringList& times, QStringList& values) const;

signals:
    /// Something that captions, buttons or menu entries depend on has changed.
    void StateChanged();

    /// An undo or a redo has changed this cell; where it changed more than one, the one that the
    /// user had changed.
    void CellRestored(int row, int column);

private:
    struct Drag {
        RowState before;
        QStringList column_before;
    };

    RowState RowStateOf(int row) const;
    void RestoreRow(const RowState& from, const RowState& to);
    void RestoreColumn(const QStringList& column);
    void FillDefaults();
    void FillFromLists();
    bool FillFromFile();
    void Rebalance(int row);
    void Rescale(float sum);
    bool CheckCoefficients();
    bool PassesTwinsOnly(int row, int target, const QString& text) const;
    QStringList SnapshotColumn() const;
    void RecordChange(const RowState& before, int row_after, const QStringList& column_before);
    void WriteFile(const QString& path);
    void Changed();

    SessionSetup m_setup;
    QString m_name;  // as shown
    ProfileTable m_table;
    EditHistory m_history;
    QString m_path;
    QString m_saved_name;
    QByteArray m_line_end;  // of the file read last; empty for the platform's own
    std::optional<ProfileContent> m_last_read;
    QStringList m_daily_profiles;
    std::optional<Drag> m_drag;
    // Shown nowhere yet; hosts' tests rely on both.
    bool m_modified = false;
    bool m_saved = false;
    bool m_edition = false;
};
