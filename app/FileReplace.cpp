#include "app/FileReplace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace {

#ifdef Q_OS_UNIX

// A disk may refuse only now what it took before. File systems that cannot flush are no error.
bool FlushToDisk(int handle) {
    return fsync(handle) == 0 || errno == EINVAL || errno == ENOTSUP;
}

// The rename itself reaches the disk with the folder. The new content stands whatever comes of it.
void FlushFolder(const QString& folder) {
    const QByteArray path = QFile::encodeName(folder);
    const int handle = open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return;
    (void)fsync(handle);
    close(handle);
}

// Only an administrator may give a file away; others may at least choose one of their groups. The
// special bits come back only together with the owner they were meant for.
void TakeOver(int handle, const QString& old_path) {
    const QByteArray path = QFile::encodeName(old_path);
    struct stat old = {};
    if (stat(path.constData(), &old) != 0)
        return;
    constexpr uid_t kSameOwner = static_cast<uid_t>(-1);
    const bool kept = fchown(handle, old.st_uid, old.st_gid) == 0;
    if (!kept)
        (void)!fchown(handle, kSameOwner, old.st_gid);
    (void)fchmod(handle, old.st_mode & (kept ? 07777U : 0777U));
}

bool ForbidsNewFiles(const QString& folder) {
    return !QFileInfo(folder).isWritable();
}

#else

bool FlushToDisk(int) {
    return true;
}
void FlushFolder(const QString&) {
}
void TakeOver(int, const QString&) {
}

bool ForbidsNewFiles(const QString&) {
    return true;  // cannot be told
}

#endif

bool Write(QFileDevice& file, QByteArrayView bytes) {
    return file.write(bytes.data(), bytes.size()) == bytes.size() && file.flush();
}

// The file is not truncated before the new content stands, so the old content still has its room on
// the disk when it must be put back.
bool OverwriteInPlace(const QString& path, QByteArrayView bytes) {
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered))
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

QString AbsolutePath(const QString& path) {
    return path.isEmpty() || path.startsWith(u'/') ? path : QDir::currentPath() + u'/' + path;
}

bool ReplaceFile(const QString& path, QByteArrayView bytes) {
    const QFileInfo old(path);
    if (old.exists() && !old.isFile())
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.error() == QFileDevice::OpenError && old.exists() &&
               ForbidsNewFiles(QFileInfo(old.canonicalFilePath()).path()) &&
               OverwriteInPlace(path, bytes);
    TakeOver(file.handle(), path);
    if (!Write(file, bytes) || !FlushToDisk(file.handle())) {
        file.cancelWriting();
        return false;
    }
    if (!file.commit())
        return false;
    FlushFolder(QFileInfo(QFileInfo(path).canonicalFilePath()).path());
    return true;
}
