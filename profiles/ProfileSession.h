// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileFile.h"
#include "profiles/ProfileFolders.h"
#include "profiles/ProfilePlace.h"
#include "profiles/RowEdits.h"

#include <QString>
#include <QStringList>

#include <optional>

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

/// The editing state behind the dialog: the edits of the rows, the profile's name, and the file
/// that it is read from and saved to.
class ProfileSession : public RowEdits {
    Q_OBJECT

public:
    explicit ProfileSession(SessionSetup setup, QObject* parent = nullptr);

    const QString& name() const { return m_name; }  ///< as shown

    /// The name that was handed over, or the one that the last save gave it instead.
    const QString& nameForCaller() const { return m_setup.name; }

    QString caption() const;     ///< of the window, one line
    QString chartTitle() const;  ///< prefix and name; may hold a line break

    // Shown nowhere yet; hosts' tests rely on it.
    bool isSaved() const { return m_saved; }
    void ClearSaved() { m_saved = false; }

    /// Absolute; "" before a file was used.
    QString path() const { return m_place ? m_place->path : QString(); }
    QString savedName() const { return m_place ? m_place->saved_name : QString(); }

    bool canOpen() const { return facts().hasFiles(); }
    bool canSave() const { return canSaveAs() && m_place.has_value(); }
    bool canSaveAs() const { return facts().hasFiles() && !isViewOnly(); }

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

    const ProfileFolders& folders() const { return m_setup.folders; }

    /// The rows of the table as the caller's lists.
    void CopyRowsTo(QStringList& times, QStringList& values) const;

private:
    void FillFromLists();
    bool FillFromFile();
    bool CheckCoefficients();
    void WriteFile(const QString& path);

    SessionSetup m_setup;
    QString m_name;  // as shown
    std::optional<ProfilePlace> m_place;
    std::optional<ProfileContent> m_last_read;
    bool m_saved = false;
};
