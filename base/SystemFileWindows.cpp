// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/FileReplace.h"
#include "base/SystemFile.h"

#include <QElapsedTimer>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <windows.h>

#include <fcntl.h>
#include <io.h>

namespace {

// Scanners hold a file for a moment only.
constexpr qint64 kPatience = 500;  // ms
constexpr DWORD kPause = 20;       // ms

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Attributes that a new file cannot have at once: it would be another kind of file.
constexpr DWORD kOwnKind = FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_COMPRESSED |
                           FILE_ATTRIBUTE_ENCRYPTED | FILE_ATTRIBUTE_SPARSE_FILE |
                           FILE_ATTRIBUTE_OFFLINE | FILE_ATTRIBUTE_DIRECTORY;

class Handle {
public:
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    ~Handle() {
        if (IsOpen())
            CloseHandle(m_handle);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return m_handle; }
    HANDLE Release() { return std::exchange(m_handle, INVALID_HANDLE_VALUE); }

private:
    HANDLE m_handle;
};

std::wstring FullName(const QString& path) {
    const std::wstring given = path.toStdWString();
    std::wstring name(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetFullPathNameW(given.c_str(), static_cast<DWORD>(name.size()), name.data(), nullptr);
        if (length == 0)
            return given;
        const bool fits = length < name.size();
        name.resize(length);
        if (fits)
            return name;
    }
}

// The form in which the system takes paths of any length.
std::wstring LongName(const QString& path) {
    const std::wstring name = FullName(path);
    const std::wstring_view start = std::wstring_view(name).substr(0, 4);
    if (name.size() < MAX_PATH || start == L"\\\\?\\" || start == L"\\\\.\\")
        return name;
    return start.substr(0, 2) == L"\\\\" ? L"\\\\?\\UNC" + name.substr(1) : L"\\\\?\\" + name;
}

HANDLE Open(const QString& path, DWORD access) {
    return CreateFileW(LongName(path).c_str(), access, kShareAll, nullptr, OPEN_EXISTING, 0,
                       nullptr);
}

bool HasMoreStreams(const QString& path) {
    WIN32_FIND_STREAM_DATA stream;
    const HANDLE search =
        FindFirstStreamW(LongName(path).c_str(), FindStreamInfoStandard, &stream, 0);
    if (search == INVALID_HANDLE_VALUE)
        return false;
    const bool more = FindNextStreamW(search, &stream) != 0;
    FindClose(search);
    return more;
}

// Owner and access list; empty when the system keeps none or does not tell.
std::vector<std::byte> SecurityOf(HANDLE file) {
    constexpr SECURITY_INFORMATION kWanted = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
    DWORD size = 0;
    GetKernelObjectSecurity(file, kWanted, nullptr, 0, &size);
    std::vector<std::byte> bytes(size);
    if (size == 0 || GetKernelObjectSecurity(file, kWanted, bytes.data(), size, &size) == 0)
        bytes.clear();
    return bytes;
}

// The entries of an access list, whether they were inherited or not; empty without a list.
std::vector<std::string> EntriesOf(PSECURITY_DESCRIPTOR security) {
    BOOL present = FALSE;
    BOOL by_default = FALSE;
    PACL list = nullptr;
    std::vector<std::string> entries;
    if (GetSecurityDescriptorDacl(security, &present, &list, &by_default) == 0 || present == 0 ||
        list == nullptr)
        return entries;
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* entry = nullptr;
        if (GetAce(list, i, &entry) == 0)
            continue;
        auto* const header = static_cast<ACE_HEADER*>(entry);
        header->AceFlags = static_cast<BYTE>(header->AceFlags & ~INHERITED_ACE);
        entries.emplace_back(static_cast<const char*>(entry), header->AceSize);
    }
    return entries;
}

bool SameSecurity(HANDLE one, HANDLE other) {
    std::vector<std::byte> first = SecurityOf(one);
    std::vector<std::byte> second = SecurityOf(other);
    if (first.empty() || second.empty())
        return first.empty() && second.empty();
    PSID owners[] = {nullptr, nullptr};
    BOOL by_default = FALSE;
    GetSecurityDescriptorOwner(first.data(), &owners[0], &by_default);
    GetSecurityDescriptorOwner(second.data(), &owners[1], &by_default);
    const bool same_owner = owners[0] != nullptr && owners[1] != nullptr
                                ? EqualSid(owners[0], owners[1]) != 0
                                : owners[0] == owners[1];
    return same_owner && EntriesOf(first.data()) == EntriesOf(second.data());
}

}  // namespace

// Written in place, a link stays a link.
QString LinkTarget(const QString& path) {
    return path;
}

bool MayBeReplaced(const QString& path) {
    const Handle file(Open(path, FILE_READ_ATTRIBUTES));
    if (!file.IsOpen())
        return true;
    BY_HANDLE_FILE_INFORMATION facts;
    return (GetFileAttributesW(LongName(path).c_str()) & kOwnKind) == 0 &&
           GetFileInformationByHandle(file.Get(), &facts) != 0 && facts.nNumberOfLinks == 1 &&
           !HasMoreStreams(path);
}

// Attributes and the time of creation are copied. Owner and access list must be those that the
// folder gave the new file: others are kept in place.
bool TakeOver(int handle, const QString& old_path) {
    const Handle old(Open(old_path, FILE_READ_ATTRIBUTES | READ_CONTROL));
    if (!old.IsOpen())
        return GetLastError() == ERROR_FILE_NOT_FOUND;
    const auto file = reinterpret_cast<HANDLE>(_get_osfhandle(handle));
    FILE_BASIC_INFO facts = {};
    FILE_BASIC_INFO wanted = {};
    if (GetFileInformationByHandleEx(old.Get(), FileBasicInfo, &facts, sizeof facts) == 0)
        return false;
    wanted.CreationTime = facts.CreationTime;
    wanted.FileAttributes = facts.FileAttributes;
    return SetFileInformationByHandle(file, FileBasicInfo, &wanted, sizeof wanted) != 0 &&
           SameSecurity(old.Get(), file);
}

bool FlushToDisk(int handle) {
    return FlushFileBuffers(reinterpret_cast<HANDLE>(_get_osfhandle(handle))) != 0;
}

// The system's journal keeps a rename whole.
void FlushFolderOf(const QString&) {
}

QString PathFromBytes(QByteArrayView bytes) {
    return QString::fromLocal8Bit(bytes);
}

QString ShownPath(const QString& path) {
    return path;
}

QString AbsolutePath(const QString& path) {
    return path.isEmpty() ? path : QString::fromStdWString(FullName(path));
}

bool IsHeldByOthers(const QString& path) {
    return !Handle(Open(path, GENERIC_READ)).IsOpen() && GetLastError() == ERROR_SHARING_VIOLATION;
}

// Opened by its number, a file is read and written as it is.
bool OpenRegularFile(QFile& file, const QString& path, QIODevice::OpenMode mode) {
    if (path.contains(QChar::Null))
        return false;
    const bool writes = mode.testFlag(QIODevice::WriteOnly);
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        Handle opened(Open(path, writes ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ));
        if (opened.IsOpen()) {
            if (GetFileType(opened.Get()) != FILE_TYPE_DISK)
                return false;
            const int number = _open_osfhandle(reinterpret_cast<intptr_t>(opened.Get()),
                                               writes ? _O_RDWR : _O_RDONLY);
            if (number < 0)
                return false;
            opened.Release();
            if (file.open(number, mode, QFileDevice::AutoCloseHandle))
                return true;
            _close(number);
            return false;
        }
        if (GetLastError() != ERROR_SHARING_VIOLATION || timer.elapsed() >= kPatience)
            return false;
        Sleep(kPause);
    }
}
