#include "app/TraceLog.h"

#include <QtGlobal>

#include <cstdio>

#ifdef Q_OS_UNIX
#include <limits.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#endif

namespace {

constexpr qsizetype kFlushSize = 64 * 1024;

#ifdef Q_OS_UNIX
constexpr int kPatienceMs = 200;

// A write of at most PIPE_BUF bytes to a descriptor that polls as writable does not block.
bool WriteWithoutBlocking(QByteArrayView bytes) {
    std::fflush(stdout);
    while (!bytes.isEmpty()) {
        pollfd out{STDOUT_FILENO, POLLOUT, 0};
        if (poll(&out, 1, kPatienceMs) <= 0 || (out.revents & POLLOUT) == 0)
            return false;
        const qsizetype piece = std::min<qsizetype>(bytes.size(), PIPE_BUF);
        const ssize_t written = write(STDOUT_FILENO, bytes.data(), static_cast<size_t>(piece));
        if (written < 0 && errno != EINTR)
            return false;
        bytes = bytes.sliced(std::max<qsizetype>(written, 0));
    }
    return true;
}
#else
bool WriteWithoutBlocking(QByteArrayView bytes) {
    return std::fwrite(bytes.data(), 1, static_cast<size_t>(bytes.size()), stdout) ==
           static_cast<size_t>(bytes.size());
}
#endif

}  // namespace

TraceLog::~TraceLog() {
    Flush();
}

void TraceLog::Token(QByteArrayView word) {
    if (m_stalled)
        return;
    m_pending.append("Resulting token: ");
    if (word.size() >= kFlushSize) {
        Flush();
        Write(word);
    } else {
        m_pending.append(word);
    }
    m_pending.append('\n');
    if (m_pending.size() >= kFlushSize)
        Flush();
}

void TraceLog::Flush() {
    Write(m_pending);
    m_pending.clear();
}

void TraceLog::Write(QByteArrayView bytes) {
    if (!m_stalled)
        m_stalled = !WriteWithoutBlocking(bytes);
}
