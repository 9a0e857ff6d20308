// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <QString>
#include <QStringList>

/// The folders of profile files under the "Data" folder that stands beside the program. Paths are
/// absolute, with the platform's separators where they are shown to the user.
class ProfileFolders {
public:
    /// `program_folder` holds "Data". A relative path is one from the working folder of this
    /// moment.
    explicit ProfileFolders(const QString& program_folder);

    /// The folder of the running program's file.
    static QString ProgramFolder();

    /// Where files of `kind` are kept; "" for a kind without files. The folder need not exist.
    QString KindFolder(ProfileKind kind) const;

    /// The titles of the files in the folder of daily profiles whose names end in "dat", sorted
    /// without regard to case. Names that cannot be stored or chosen are left out.
    QStringList DailyProfileList() const;

    /// The path of the daily profile `name`.
    QString DailyProfilePath(const QString& name) const;

    /// Whether `file` stands directly in the folder of `kind`, compared without regard to case.
    bool IsInKindFolder(ProfileKind kind, const QString& file) const;

private:
    QString m_program_folder;
};

/// The two commands in the list of a daily-profile cell.
inline constexpr QStringView kAddProfileChoice = u"AJOUTER";
inline constexpr QStringView kViewProfileChoice = u"VOIR";

/// `choice` is one of the two commands.
bool IsProfileCommand(const QString& choice);

/// The choices of a daily-profile cell: the two commands, then the names.
QStringList DailyProfileChoices(const QStringList& names);

/// `name` can stand in a monthly or weekly file: no double quote, no line break, no character
/// outside the code page of files.
bool IsStorableName(const QString& name);

/// The user can choose `name` in a daily-profile cell: it is storable and none of the commands.
bool IsChoosableName(const QString& name);
