// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>

#include <limits>
#include <optional>

// A path means what the system means by it: no function here shortens it, and ":x" is an ordinary
// file.

/// The path that the system wrote as these bytes. Bytes that are not UTF-8 are kept, so that the
/// functions below find the file. For messages see `ShownPath`.
QString PathFromBytes(QByteArrayView bytes);

/// The path for display: bytes that are not UTF-8 become U+FFFD.
QString ShownPath(const QString& path);

/// `path` with the working folder in front unless it is absolute or empty.
QString AbsolutePath(const QString& path);

/// Opens an existing regular file. Returns false at once for anything else, such as a pipe. Waits
/// half a second at most while another program lets nobody open the file, as Windows allows.
bool OpenRegularFile(QFile& file, const QString& path, QIODevice::OpenMode mode);

/// The bytes of a regular file, the first `most` of them; nothing when it cannot be read.
std::optional<QByteArray> ReadRegularFile(const QString& path,
                                          qint64 most = std::numeric_limits<qint64>::max());

/// Whether another program lets nobody read the file now. Only Windows knows that.
bool IsHeldByOthers(const QString& path);

/// How lines of text files end on this system.
#ifdef Q_OS_WIN
inline constexpr QByteArrayView kPlatformLineEnd = "\r\n";
#else
inline constexpr QByteArrayView kPlatformLineEnd = "\n";
#endif

/// Replaces the content of the file at `path` by `bytes` in one step: either the whole new content
/// stands there afterwards (true) or the whole old one (false), also after a crash. A symbolic link
/// stays a link. Owner, group, permissions, access list and attributes stay.
///
/// The file is written in place instead, and the old content put back if a write fails, where a new
/// file cannot take over all of these or has further hard links, where the system refuses the new
/// file or the rename, as Windows does while another program keeps the file open, and where the
/// name is not UTF-8. Only there a process killed in the middle
/// leaves a part of each content.
bool ReplaceFile(const QString& path, QByteArrayView bytes);
