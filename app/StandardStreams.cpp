// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StandardStreams.h"

#include <QByteArray>

#include <cstdio>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#endif

#ifdef Q_OS_UNIX

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

void WriteError(const QString& text) {
    const QByteArray line = "function-editor: " + text.toLocal8Bit() + '\n';
    const auto size = static_cast<size_t>(line.size());
    if (send(error_output, line.constData(), size, MSG_DONTWAIT | MSG_NOSIGNAL) < 0)
        (void)!write(error_output, line.constData(), size);
}

#else

void PrepareStandardStreams() {
}

void WriteError(const QString& text) {
    std::fprintf(stderr, "function-editor: %s\n", text.toLocal8Bit().constData());
}

#endif
