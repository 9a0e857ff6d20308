#pragma once

#include "app/CPlugInstruction.h"

#include <QByteArray>
#include <QString>

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

    qsizetype instructionCount() const { return static_cast<qsizetype>(m_instructions.size()); }

    /// Line `index`; past the end shows a message and returns nullptr.
    /// @throws std::invalid_argument when index is negative
    CPlugInstruction* getInstruction(qsizetype index);

    /// Replaces `count` lines from `index` on by `lines`.
    /// @throws std::invalid_argument when count is negative or the range is not inside the file;
    /// nothing has changed then
    void replaceInstructions(qsizetype index, qsizetype count, std::vector<CPlugInstruction> lines);

    /// Throws what `replaceInstructions` would throw for the same range.
    void requireRange(qsizetype index, qsizetype count) const;

    /// Writes all lines to the same path in one step, each with the line end the file had. A
    /// refused write shows a message and leaves the file as it was.
    void writeFile() const;

private:
    QString m_file_name;
    QString m_path;
    QByteArray m_content;  // the bytes that the instructions point into
    QByteArray m_line_end = "\n";
    std::vector<CPlugInstruction> m_instructions;
    bool m_loaded = false;
};
