#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Writes the tokenizer's trace lines to standard output, many at a time. The lines carry nothing a
/// host needs, so a host that never empties its end of a pipe cannot stop the editor: once the pipe
/// stays full for a moment the rest of the trace is dropped.
class TraceLog {
public:
    TraceLog() = default;
    ~TraceLog();
    TraceLog(const TraceLog&) = delete;
    TraceLog& operator=(const TraceLog&) = delete;

    /// Adds the line "Resulting token: ", `word`.
    void Token(QByteArrayView word);

private:
    void Flush();
    void Write(QByteArrayView bytes);

    QByteArray m_pending;
    bool m_stalled = false;
};
