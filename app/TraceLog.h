// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Writes the tokenizer's trace lines to standard output, many at a time, if that is a pipe or a
/// file. The lines carry nothing a host needs, so a host that never empties its end of a pipe
/// cannot stop the editor: once all waiting for room has come to a twentieth of a second the rest
/// of the trace is dropped. A pipe must be set not to wait by itself.
class TraceLog {
public:
    TraceLog();
    ~TraceLog();
    TraceLog(const TraceLog&) = delete;
    TraceLog& operator=(const TraceLog&) = delete;

    /// Adds the line "Resulting token: ", `word`.
    void Token(QByteArrayView word);

private:
    void Flush();
    void Write(QByteArrayView bytes);

    QByteArray m_pending;
    qint64 m_patience = 50;  // ms
    bool m_ended;
};
