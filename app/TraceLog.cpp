// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TraceLog.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace {

constexpr qsizetype kFlushSize = 64 * 1024;
constexpr QByteArrayView kStart = "Resulting token: ";

#ifdef Q_OS_UNIX
bool IsWanted() {
    struct stat facts = {};
    return fstat(STDOUT_FILENO, &facts) == 0 && (S_ISFIFO(facts.st_mode) || S_ISREG(facts.st_mode));
}

// Waits for room in a full pipe no longer than `patience`, in ms, which it uses up.
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
#else
bool IsWanted() {
    return true;
}

bool WriteToOutput(QByteArrayView bytes, qint64&) {
    return std::fwrite(bytes.data(), 1, static_cast<size_t>(bytes.size()), stdout) ==
           static_cast<size_t>(bytes.size());
}
#endif

}  // namespace

TraceLog::TraceLog() : m_ended(!IsWanted()) {
}

TraceLog::~TraceLog() {
    Flush();
}

void TraceLog::Token(QByteArrayView word) {
    if (m_ended)
        return;
    // Grows once for each word: a line may hold a hundred million words.
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
    if (!m_ended)
        m_ended = !WriteToOutput(bytes, m_patience);
}
