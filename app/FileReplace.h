#pragma once

#include <QByteArrayView>
#include <QString>

/// Replaces the content of the file at `path` by `bytes` in one step: either the whole new content
/// stands there afterwards (true) or the whole old one (false). A symbolic link stays a link, the
/// permissions stay. Where the folder forbids a new file, the file itself is written in place and
/// put back if that fails.
bool ReplaceFile(const QString& path, QByteArrayView bytes);
