// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StandardStreams.h"

#include <QByteArray>
#include <QElapsedTimer>

#ifdef Q_OS_WIN
#include <chrono>
#include <future>
#include <system_error>
#include <thread>
#include <utility>

#include <windows.h>
#else
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#endif

namespace {

QByteArray ErrorLine(const QString& text) {
    return "function-editor: " + text.toLocal8Bit() + '\n';
}

}  // namespace

#ifndef Q_OS_WIN

namespace {

constexpr const char* kNullDevice = "/dev/null";

// Where WriteError writes: standard error, or the socket that it was.
int error_output = STDERR_FILENO;

// The host shares the open file description, and with it the setting whether a write waits. So the
// stream is opened once more. A socket, a pipe that nobody reads and a pipe of another user cannot
// be opened: the null device takes their place.
void NeverWait(int stream) {
    struct stat facts = {};
    if (fstat(stream, &facts) != 0 ||
        !(S_ISFIFO(facts.st_mode) || S_ISSOCK(facts.st_mode) || isatty(stream) != 0))
        return;
    if (S_ISSOCK(facts.st_mode) && stream == STDERR_FILENO)
        error_output = fcntl(stream, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const std::string path = "/proc/self/fd/" + std::to_string(stream);
    const int access = fcntl(stream, F_GETFL) & O_ACCMODE;
    int again = open(path.c_str(), access | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (again < 0)
        again = open(kNullDevice, O_RDWR | O_CLOEXEC);
    dup2(again, stream);
    close(again);
}

}  // namespace

void PrepareStandardStreams() {
    int lowest = 0;
    do {
        lowest = open(kNullDevice, O_RDWR);
    } while (lowest >= 0 && lowest <= STDERR_FILENO);
    close(lowest);
    NeverWait(STDOUT_FILENO);
    NeverWait(STDERR_FILENO);
}

bool OutputIsPipeOrFile() {
    struct stat facts = {};
    return fstat(STDOUT_FILENO, &facts) == 0 && (S_ISFIFO(facts.st_mode) || S_ISREG(facts.st_mode));
}

bool WriteToOutput(QByteArrayView bytes, qint64& patience) {
    while (!bytes.isEmpty()) {
        const ssize_t written =
            write(STDOUT_FILENO, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written >= 0) {
            bytes = bytes.sliced(written);
        } else if (errno == EAGAIN && patience > 0) {
            QElapsedTimer timer;
            timer.start();
            pollfd out{STDOUT_FILENO, POLLOUT, 0};
            if (poll(&out, 1, static_cast<int>(patience)) <= 0)
                return false;
            patience -= timer.elapsed();
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

void Print(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
}

void WriteError(const QString& text) {
    const QByteArray line = ErrorLine(text);
    const auto size = static_cast<size_t>(line.size());
    if (send(error_output, line.constData(), size, MSG_DONTWAIT | MSG_NOSIGNAL) < 0)
        (void)!write(error_output, line.constData(), size);
}

#else

namespace {

constexpr qint64 kErrorPatience = 50;  // ms

// Whether the handle of a stream leads anywhere. A host without a console may hand over a number
// that means nothing here.
bool IsOpen(DWORD stream) {
    const HANDLE handle = GetStdHandle(stream);
    return handle != nullptr && handle != INVALID_HANDLE_VALUE &&
           (GetFileType(handle) != FILE_TYPE_UNKNOWN || GetLastError() == NO_ERROR);
}

bool WriteWhole(HANDLE handle, QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        DWORD written = 0;
        if (WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ==
            0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

// No setting of a pipe, which the host shares, makes a write give up. So a thread of its own
// writes; while the pipe is full it waits there until the process ends.
bool WriteInTime(DWORD stream, const QByteArray& bytes, qint64& patience) {
    QElapsedTimer timer;
    timer.start();
    std::packaged_task<bool()> write(
        [handle = GetStdHandle(stream), bytes] { return WriteWhole(handle, bytes); });
    std::future<bool> result = write.get_future();
    try {
        std::thread(std::move(write)).detach();
    } catch (const std::system_error&) {
        return false;
    }
    const bool in_time =
        result.wait_for(std::chrono::milliseconds(patience)) == std::future_status::ready;
    patience -= timer.elapsed();
    return in_time && result.get();
}

// On the console from which the program was started.
void ShowOnConsole(const QString& text) {
    AttachConsole(ATTACH_PARENT_PROCESS);
    const HANDLE console = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_WRITE,
                                       nullptr, OPEN_EXISTING, 0, nullptr);
    if (console == INVALID_HANDLE_VALUE)
        return;
    const std::wstring wide = text.toStdWString();
    DWORD written = 0;
    WriteConsoleW(console, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
    CloseHandle(console);
}

}  // namespace

// The number of a closed stream would be that of the next file.
void PrepareStandardStreams() {
    for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        if (!IsOpen(stream))
            SetStdHandle(stream, nullptr);
    }
}

bool OutputIsPipeOrFile() {
    const DWORD type = IsOpen(STD_OUTPUT_HANDLE) ? GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) : 0;
    return type == FILE_TYPE_PIPE || type == FILE_TYPE_DISK;
}

bool WriteToOutput(QByteArrayView bytes, qint64& patience) {
    return WriteInTime(STD_OUTPUT_HANDLE, bytes.toByteArray(), patience);
}

void Print(const QString& text) {
    QString lines = text;
    lines.replace(u'\n', QStringLiteral("\r\n"));
    if (!IsOpen(STD_OUTPUT_HANDLE) || !WriteWhole(GetStdHandle(STD_OUTPUT_HANDLE), lines.toUtf8()))
        ShowOnConsole(lines);
}

void WriteError(const QString& text) {
    qint64 patience = kErrorPatience;
    if (IsOpen(STD_ERROR_HANDLE))
        WriteInTime(STD_ERROR_HANDLE, ErrorLine(text), patience);
    else
        ShowOnConsole(QString::fromLocal8Bit(ErrorLine(text)));
}

#endif
