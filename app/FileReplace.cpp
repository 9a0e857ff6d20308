#include "app/FileReplace.h"

#include <QFile>
#include <QSaveFile>

namespace {

bool WriteAll(QFile& file, QByteArrayView bytes) {
    return file.seek(0) && file.write(bytes.data(), bytes.size()) == bytes.size() && file.flush() &&
           file.resize(bytes.size());
}

// The file is not truncated before the new content stands, so the old content still has its room on
// the disk when it must be put back.
bool OverwriteInPlace(const QString& path, QByteArrayView bytes) {
    QFile file(path);
    if (!file.exists() || !file.open(QIODevice::ReadWrite))
        return false;
    const QByteArray old = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return false;
    if (WriteAll(file, bytes))
        return true;
    file.unsetError();
    WriteAll(file, old);
    return false;
}

}  // namespace

bool ReplaceFile(const QString& path, QByteArrayView bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.error() == QFileDevice::OpenError && OverwriteInPlace(path, bytes);
    if (file.write(bytes.data(), bytes.size()) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}
