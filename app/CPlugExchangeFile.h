// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/CPlugInstruction.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>
#include <map>
#include <vector>

/// The exchange file as a list of lines, each a `CPlugInstruction`, numbered from 0. Every physical
/// line counts; a file that ends with a line end has an empty last instruction.
class CPlugExchangeFile {
public:
    /// `file_name` is kept as given for messages; a relative path is fixed to the present working
    /// folder. No file access.
    explicit CPlugExchangeFile(const QString& file_name);

    /// Reads the whole file; `isLoaded` tells whether that worked. A file that cannot be read shows
    /// a message and leaves the lines as they were.
    void readFile();

    bool isLoaded() const { return m_loaded; }

    qsizetype instructionCount() const { return static_cast<qsizetype>(m_starts.size()); }

    /// Line `index`, for reading and changing; past the end shows a message and returns nullptr.
    /// The pointer is valid until the next `readFile`, `replaceInstructions` or `writeFile`. Each
    /// line asked for keeps an object of its own: to read many lines, use `line`.
    /// @throws std::invalid_argument when index is negative
    CPlugInstruction* getInstruction(qsizetype index);

    /// The bytes of line `index` (0 .. instructionCount() - 1) without line end, as they stood
    /// before any change through `getInstruction`. Valid as long as such a pointer is.
    QByteArrayView line(qsizetype index) const;

    /// Adds whole lines to a text, each ended by `line_end`.
    using LineAppender = std::function<void(QByteArray& text, const QByteArray& line_end)>;

    /// Replaces `count` lines from `index` on by those that `append` adds. They are written as they
    /// are added.
    /// @throws std::invalid_argument when count is negative or the range is not inside the file;
    /// nothing has changed then
    void replaceInstructions(qsizetype index, qsizetype count, const LineAppender& append);

    /// Throws the exception that `replaceInstructions` would throw for the same range.
    void requireRange(qsizetype index, qsizetype count) const;

    /// Writes all lines to the same path in one step, each rebuilt and with the line end the file
    /// had. Asks first when the file no longer holds the bytes that were read or written last. A
    /// refused write shows a message and leaves the file as it was. Nothing is written, and nothing
    /// to be tried again, when the last reading failed.
    /// False when the write was refused, by the system or by the user: it can be tried again.
    bool writeFile();

private:
    void findLines();
    void appendRebuilt(QByteArray& out, qsizetype first, qsizetype last) const;
    void setRebuilt(QByteArray content);

    QString m_shown_name;
    QString m_path;
    QByteArray m_content;                            // the lines with line ends between them
    std::vector<qsizetype> m_starts;                 // where each line begins in the content
    std::map<qsizetype, CPlugInstruction> m_opened;  // lines that may have been changed
    bool m_rebuilt = false;  // the lines that are not opened stand in the content as written
    QByteArray m_line_end;
    size_t m_hash = 0;  // of the bytes that were read or written last
    bool m_loaded = false;
};
