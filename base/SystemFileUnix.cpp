// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileReplace.h"
#include "base/SystemFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>

#ifdef Q_OS_LINUX
#include <sys/xattr.h>
#endif

namespace fs = std::filesystem;

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

}  // namespace

QString LinkTarget(const QString& path) {
    constexpr int kMaxLinks = 40;
    fs::path target = NativePath(path);
    std::error_code error;
    for (int i = 0; i < kMaxLinks && fs::is_symlink(fs::symlink_status(target, error)); ++i) {
        const fs::path next = fs::read_symlink(target, error);
        if (error)
            break;
        target = target.parent_path() / next;
    }
    return TextOf(target);
}

// The name of a new file must be UTF-8.
bool MayBeReplaced(const QString& path) {
    struct stat old = {};
    return path.isValidUtf16() && (stat(BytesOf(path).constData(), &old) != 0 ||
                                   (S_ISREG(old.st_mode) && old.st_nlink == 1));
}

// Owner, rights and attributes. Only an administrator may give a file away.
bool TakeOver(int handle, const QString& old_path) {
    const QByteArray old_name = BytesOf(old_path);
    struct stat old = {};
    struct stat now = {};
    if (stat(old_name.constData(), &old) != 0)
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
    return TakeOverAttributes(handle, old_name.constData());
}

// A file system that cannot flush is no error.
bool FlushToDisk(int handle) {
    return fsync(handle) == 0 || errno == EINVAL || errno == ENOTSUP;
}

void FlushFolderOf(const QString& path) {
    const fs::path folder = NativePath(path).parent_path();
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return;
    (void)fsync(handle);
    close(handle);
}

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

QString AbsolutePath(const QString& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(NativePath(path), error);
    return error ? path : TextOf(absolute);
}

bool IsHeldByOthers(const QString&) {
    return false;
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
