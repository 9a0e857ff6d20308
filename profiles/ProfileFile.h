// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

/// A profile file's content as cell texts. `labels` are the times of a function; the other kinds
/// take their labels from the grid and leave it empty when read.
struct ProfileContent {
    QStringList labels;
    QStringList values;  ///< empty when the file's value line holds nothing
    QStringList names;   ///< likewise
    float sum = 0.0F;    ///< of the values as the file gives them, before they were cut to decimals
};

enum class ProfileFileStatus {
    Read,
    CannotOpen,   ///< not there, not a regular file or not readable
    WrongHeader,  ///< not a file of this kind
    WrongLine,    ///< a line holds another count of items, or something that cannot be read
};

struct ProfileReading {
    ProfileFileStatus status = ProfileFileStatus::Read;
    ProfileContent content;
    QByteArray line_end;  ///< "\r\n" when the first line ends so; else "", the platform's own
};

/// Parses the bytes of a profile file of `kind` whole: content, or why not.
ProfileReading ParseProfile(ProfileKind kind, QByteArrayView bytes);

/// Reads and parses the file at `path`, which may be relative to the working folder; its messages
/// quote it as it stands. A failure shows its message. A file of more than 64 MiB counts as one
/// with a wrong header.
ProfileReading ReadProfile(ProfileKind kind, const QString& path);

/// Whether a file of `content` would give the very same items again: no name that ends the line or
/// its quotes, no time or value that is more or less than one number.
bool CanBeReadBack(ProfileKind kind, const ProfileContent& content);

/// The bytes of a profile file of `kind`; nothing for a kind without files. An empty `line_end` is
/// the platform's own.
QByteArray WriteProfile(ProfileKind kind, const ProfileContent& content,
                        QByteArrayView line_end = {});

/// `chosen` with ".dat" appended when its last component has no ".".
QString WithExtension(const QString& chosen);

/// The last path component cut at its last ".".
QString FileTitle(const QString& path);

/// The name handed back after a save of `kind` to `path`, given the name before it. "BAD_PATH"
/// stands for a coefficient profile that was saved outside its folder.
QString NameAfterSave(ProfileKind kind, const QString& path, const QString& old_name,
                      bool in_default_folder);
