// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileReplace.h"

#include "base/SystemFile.h"

#include <QSaveFile>

namespace {

bool Write(QFileDevice& file, QByteArrayView bytes) {
    return file.write(bytes.data(), bytes.size()) == bytes.size() && file.flush();
}

enum class Replacing { Done, Failed, NotPossible };

// After `NotPossible` the file and its folder are unchanged.
Replacing ReplaceByRename(const QString& path, QByteArrayView bytes) {
    if (!MayBeReplaced(path))
        return Replacing::NotPossible;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !TakeOver(file.handle(), path))
        return Replacing::NotPossible;
    if (!Write(file, bytes) || !FlushToDisk(file.handle())) {
        file.cancelWriting();
        return Replacing::Failed;
    }
    // All bytes are on the disk. Only giving the new file its name can still fail.
    if (!file.commit())
        return Replacing::NotPossible;
    FlushFolderOf(path);
    return Replacing::Done;
}

// The file is truncated last. So the old content still has its space on the disk if it must be put
// back.
bool OverwriteInPlace(const QString& path, QByteArrayView bytes) {
    QFile file;
    if (!OpenRegularFile(file, path, QIODevice::ReadWrite | QIODevice::Unbuffered))
        return false;
    const QByteArray old = file.readAll();
    if (file.error() != QFileDevice::NoError || !file.seek(0))
        return false;
    if (Write(file, bytes) && file.resize(bytes.size()) && FlushToDisk(file.handle()))
        return true;
    file.unsetError();
    if (file.seek(0))
        Write(file, old);
    file.resize(old.size());
    FlushToDisk(file.handle());
    return false;
}

}  // namespace

std::optional<QByteArray> ReadRegularFile(const QString& path, qint64 most) {
    QFile file;
    if (!OpenRegularFile(file, path, QIODevice::ReadOnly))
        return std::nullopt;
    // QFile::read(n) allocates n bytes, however small the file is.
    QByteArray bytes = file.size() <= most ? file.readAll() : file.read(most);
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    return bytes;
}

bool ReplaceFile(const QString& path, QByteArrayView bytes) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return false;
    const QString target = LinkTarget(AbsolutePath(path));
    const Replacing result = ReplaceByRename(target, bytes);
    return result == Replacing::NotPossible ? OverwriteInPlace(target, bytes)
                                            : result == Replacing::Done;
}
