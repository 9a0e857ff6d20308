// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileReplace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

/// Writes the whole file and makes its folder.
inline bool WriteAll(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(bytes) == bytes.size() && file.flush();
}

/// With LF where lines end as this system ends them.
inline QByteArray WithPlainEnds(QByteArray bytes) {
    return bytes.replace(kPlatformLineEnd, "\n");
}

/// The whole file; null when there is none.
inline QByteArray ReadAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
