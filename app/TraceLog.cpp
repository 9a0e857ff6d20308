// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TraceLog.h"

#include "app/StandardStreams.h"

#include <algorithm>

namespace {

constexpr qsizetype kFlushSize = 64 * 1024;
constexpr QByteArrayView kStart = "Resulting token: ";

}  // namespace

TraceLog::TraceLog() : m_ended(!OutputIsPipeOrFile()) {
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
