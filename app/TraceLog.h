// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Writes the tokenizer's trace lines to standard output, many at a time, if that is a pipe or a
/// file. A host does not need the lines and may never read them. So the editor waits for
/// room in a full pipe for 50 ms in all and then drops the rest of the trace.
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
