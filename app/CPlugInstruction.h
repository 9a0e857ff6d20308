// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <memory>

class TraceLog;

/// One line of the exchange file: blank-separated values and a comment behind "!".
///
/// The line keeps its bytes and is split when a value is asked for. So a file of a million lines
/// takes little more memory than its bytes. Values are numbered from 0.
class CPlugInstruction {
public:
    /// `line` without its line end. It may be a view made by QByteArray::fromRawData, whose bytes
    /// must then outlive the instruction. `trace` gets one line for every value.
    explicit CPlugInstruction(QByteArray line, TraceLog* trace = nullptr);

    /// The line put together again: each value followed by one blank, then the comment with its
    /// "!".
    QByteArray getLine() const;

    /// Appends what `getLine` returns to `out`.
    void appendLine(QByteArray& out) const;

    QList<QByteArray> values() const;

    /// Empty without a comment; the whole line with its "!" for a comment line; else what stands
    /// between the first "!" and the next one or the end of the line.
    QByteArray comment() const;

    /// @throws std::invalid_argument when n is negative
    bool hasValue(int n) const;

    /// Value `n` as its leading integer, 0 if it has none; beyond the range of int the nearest end
    /// of the range. A missing value shows a message and gives 0.
    /// @throws std::invalid_argument when n is negative
    int getIntValue(int n) const;

    /// Value `n` as text. A missing value shows a message and gives "".
    /// @throws std::invalid_argument when n is negative
    QString getCStringValue(int n) const;

    /// Replaces value `n`, after filling up with "0" values when there are fewer. The other values
    /// and the comment stay.
    /// @throws std::invalid_argument when n is negative
    void setCStringValue(int n, const QString& text);

    /// `setCStringValue` with the decimal text of `number`.
    void setIntValue(int n, int number);

private:
    // Values and comment once a value was set: from then on the line itself no longer counts.
    struct Parts {
        QList<QByteArray> values;
        QByteArray comment;
    };

    void parse(TraceLog* trace) const;
    bool findValue(int n, QByteArrayView& value) const;
    QString shownComment() const;

    QByteArray m_line;
    std::unique_ptr<Parts> m_parts;
};
