#pragma once

#include <QByteArrayView>
#include <QString>

/// `path` with the working folder in front unless it is absolute or empty. Nothing is cleaned.
QString AbsolutePath(const QString& path);

/// Replaces the content of the file at `path` by `bytes` in one step: either the whole new content
/// stands there afterwards (true) or the whole old one (false), also after a crash. A symbolic link
/// stays a link, the permissions stay, owner and group stay where the system permits it.
///
/// Where the folder forbids a new file, the file itself is written in place and put back if a write
/// fails. Only there a process killed in the middle leaves a part of each content.
bool ReplaceFile(const QString& path, QByteArrayView bytes);
