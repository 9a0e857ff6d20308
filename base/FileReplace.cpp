// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileReplace.h"

#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <filesystem>
#include <optional>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif
#ifdef Q_OS_LINUX
#include <sys/xattr.h>
#endif

namespace fs = std::filesystem;

#ifdef Q_OS_UNIX

namespace {

// A path keeps bytes that are not UTF-8 as lone surrogates, U+DC80 to U+DCFF. All other characters
// of such a path are ASCII.
QByteArray BytesOf(const QString& path) {
    if (path.isValidUtf16())
        return QFile::encodeName(path);
    QByteArray bytes;
    for (const QChar c : path)
        bytes.append(static_cast<char>(c.unicode()));
    return bytes;
}

fs::path NativePath(const QString& path) {
    return BytesOf(path).toStdString();
}

QString TextOf(const fs::path& path) {
    return PathFromBytes(QByteArrayView(path.native()));
}

// Some disks report a failed write only here. A file system that cannot flush is no error.
bool FlushToDisk(int handle) {
    return fsync(handle) == 0 || errno == EINVAL || errno == ENOTSUP;
}

// Flushing the folder writes the rename to the disk. The new content is in place even if this
// fails.
void FlushFolder(const fs::path& folder) {
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return;
    (void)fsync(handle);
    close(handle);
}

// With further hard links the other names would keep the old content.
bool HasOneName(const fs::path& path) {
    struct stat old = {};
    return stat(path.c_str(), &old) != 0 || (S_ISREG(old.st_mode) && old.st_nlink == 1);
}

#ifdef Q_OS_LINUX

// The bytes that a system call writes into a buffer of unknown length; nothing after an error.
template <typename Call>
std::optional<QByteArray> Fetch(const Call& call) {
    const ssize_t size = call(nullptr, 0);
    if (size < 0)
        return std::nullopt;
    QByteArray bytes(size, Qt::Uninitialized);
    if (call(bytes.data(), static_cast<size_t>(size)) != size)
        return std::nullopt;
    return bytes;
}

// The access list is an extended attribute. A new file may have inherited some from its folder.
bool TakeOverAttributes(int handle, const char* old_path) {
    const auto listed = [](ssize_t size) { return size < 0 && errno == ENOTSUP ? 0 : size; };
    const auto names =
        Fetch([&](char* to, size_t size) { return listed(listxattr(old_path, to, size)); });
    const auto own =
        Fetch([&](char* to, size_t size) { return listed(flistxattr(handle, to, size)); });
    if (!names || !own)
        return false;
    const QByteArrayList wanted = names->split('\0');
    for (const QByteArray& name : own->split('\0')) {
        if (!wanted.contains(name) && fremovexattr(handle, name.constData()) != 0)
            return false;
    }
    return std::all_of(wanted.cbegin(), wanted.cend(), [&](const QByteArray& name) {
        const char* const key = name.constData();
        const auto value =
            Fetch([&](char* to, size_t size) { return getxattr(old_path, key, to, size); });
        const auto now =
            Fetch([&](char* to, size_t size) { return fgetxattr(handle, key, to, size); });
        return name.isEmpty() ||
               (value && (value == now || fsetxattr(handle, key, value->constData(),
                                                    static_cast<size_t>(value->size()), 0) == 0));
    });
}

#else

bool TakeOverAttributes(int, const char*) {
    return true;
}

#endif

// Copies owner, rights and attributes of the old file to the new one. False where the system
// forbids it: only an administrator may give a file away.
bool TakeOver(int handle, const fs::path& old_path) {
    struct stat old = {};
    struct stat now = {};
    if (stat(old_path.c_str(), &old) != 0)
        return errno == ENOENT;
    if (fstat(handle, &now) != 0)
        return false;
    if ((now.st_uid != old.st_uid || now.st_gid != old.st_gid) &&
        fchown(handle, old.st_uid, old.st_gid) != 0)
        return false;
    constexpr mode_t kBits = 07777;
    if ((fstat(handle, &now) != 0 || (now.st_mode & kBits) != (old.st_mode & kBits)) &&
        fchmod(handle, old.st_mode & kBits) != 0)
        return false;
    return TakeOverAttributes(handle, old_path.c_str());
}

}  // namespace

QString PathFromBytes(QByteArrayView bytes) {
    const QString text = QFile::decodeName(bytes.toByteArray());
    if (QFile::encodeName(text) == bytes)
        return text;
    QString path;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        path.append(QChar(byte < 0x80 ? byte : 0xDC00 + byte));
    }
    return path;
}

QString ShownPath(const QString& path) {
    return QFile::decodeName(BytesOf(path));
}

bool OpenRegularFile(QFile& file, const QString& path, QIODevice::OpenMode mode) {
    if (path.contains(QChar::Null))
        return false;  // the system would take it for the end
    const int access = mode.testFlag(QIODevice::WriteOnly) ? O_RDWR : O_RDONLY;
    const int handle = open(BytesOf(path).constData(), access | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (handle < 0)
        return false;
    struct stat status = {};
    if (fstat(handle, &status) == 0 && S_ISREG(status.st_mode) &&
        file.open(handle, mode, QFileDevice::AutoCloseHandle))
        return true;
    close(handle);
    return false;
}

#else

namespace {

fs::path NativePath(const QString& path) {
    return path.toStdU16String();
}
QString TextOf(const fs::path& path) {
    return QString::fromStdU16String(path.u16string());
}

bool FlushToDisk(int) {
    return true;
}
void FlushFolder(const fs::path&) {
}

bool HasOneName(const fs::path&) {
    return true;
}
bool TakeOver(int, const fs::path&) {
    return true;
}

}  // namespace

QString PathFromBytes(QByteArrayView bytes) {
    return QString::fromLocal8Bit(bytes);
}

QString ShownPath(const QString& path) {
    return path;
}

bool OpenRegularFile(QFile& file, const QString& path, QIODevice::OpenMode mode) {
    file.setFileName(path);
    return QFileInfo(file).isFile() && file.open(mode | QIODevice::ExistingOnly);
}

#endif

namespace {

// Where a path leads when its last component is a symbolic link.
fs::path Followed(fs::path path) {
    constexpr int kMaxLinks = 40;
    std::error_code error;
    for (int i = 0; i < kMaxLinks && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
        const fs::path target = fs::read_symlink(path, error);
        if (error)
            break;
        path = path.parent_path() / target;
    }
    return path;
}

bool Write(QFileDevice& file, QByteArrayView bytes) {
    return file.write(bytes.data(), bytes.size()) == bytes.size() && file.flush();
}

enum class Replacing { Done, Failed, NotPossible };

// After `NotPossible` the file and its folder are unchanged.
Replacing ReplaceByRename(const fs::path& path, QByteArrayView bytes) {
    const QString name = TextOf(path);
    if (!name.isValidUtf16() || !HasOneName(path))
        return Replacing::NotPossible;
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || !TakeOver(file.handle(), path))
        return Replacing::NotPossible;
    if (!Write(file, bytes) || !FlushToDisk(file.handle())) {
        file.cancelWriting();
        return Replacing::Failed;
    }
    // All bytes are on the disk. Only giving the new file its name can still fail.
    if (!file.commit())
        return Replacing::NotPossible;
    FlushFolder(path.parent_path());
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

QString AbsolutePath(const QString& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(NativePath(path), error);
    return error ? path : TextOf(absolute);
}

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
    const fs::path target = Followed(NativePath(AbsolutePath(path)));
    const Replacing result = ReplaceByRename(target, bytes);
    return result == Replacing::NotPossible ? OverwriteInPlace(TextOf(target), bytes)
                                            : result == Replacing::Done;
}
