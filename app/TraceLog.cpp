#include "app/TraceLog.h"

#include <QtGlobal>

#include <algorithm>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <limits.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace {

constexpr qsizetype kFlushSize = 64 * 1024;
constexpr QByteArrayView kStart = "Resulting token: ";

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
    // One growth a word: a line may hold a hundred million of them.
    const bool is_long = word.size() >= kFlushSize;
    const qsizetype end = m_pending.size();
    m_pending.resize(end + kStart.size() + (is_long ? 0 : word.size() + 1));
    char* const to = std::copy(kStart.begin(), kStart.end(), m_pending.data() + end);
    if (is_long) {
        Flush();
        Write(word);
        m_pending.append('\n');
    } else {
        *std::copy(word.begin(), word.end(), to) = '\n';
    }
    if (m_pending.size() >= kFlushSize)
        Flush();
}

void TraceLog::Flush() {
    Write(m_pending);
    m_pending.resize(0);  // keeps its room
}

void TraceLog::Write(QByteArrayView bytes) {
    if (!m_stalled)
        m_stalled = !WriteWithoutBlocking(bytes);
}
