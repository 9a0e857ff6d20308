// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

#include <algorithm>
#include <limits>
#include <optional>

/// The separator between the columns of a text. `WideBlanks` are two or more blanks: a single one
/// may then stand within a cell. `Blanks` are blanks and tabs, one or more. With `None` a line is
/// one cell.
enum class ColumnSeparator { Tab, Semicolon, Comma, WideBlanks, Blanks, None };

using PointCells = QVarLengthArray<QStringView, 8>;

/// The first `most` cells of `line`, without white space around them. A cell in double quotes may
/// hold separators. Empty cells at the end are left out, so that a blank line has none.
PointCells SplitCells(QStringView line, ColumnSeparator separator,
                      qsizetype most = std::numeric_limits<qsizetype>::max());

/// `cell` without its double quotes; two of them inside stand for one.
QString Unquoted(QStringView cell);

/// The text that the editor keeps of a number: decimal point, no thousands separators, every digit
/// as it was. Thousands may be separated by a blank, a no-break blank, a narrow no-break blank or
/// an apostrophe, the same one throughout, with three digits behind each. Nothing for a text that
/// could not be typed into a cell.
std::optional<QString> PointNumber(QStringView cell);

/// Whether `cell` starts with a digit, perhaps behind a sign and a decimal sign. A cell that does
/// and is no number is a mistake rather than a heading.
bool BeginsLikeNumber(QStringView cell);

/// Takes the first line off `rest`, a view of bytes or of characters, and returns it without its
/// line end: LF, CR LF or CR.
template <typename View>
View TakeLine(View& rest) {
    using Unit = std::decay_t<decltype(rest.front())>;
    const auto end = std::find_if(rest.begin(), rest.end(),
                                  [](Unit c) { return c == Unit('\n') || c == Unit('\r'); });
    const View line(rest.begin(), end);
    const View tail(end, rest.end());
    const bool is_pair = tail.size() > 1 && tail[0] == Unit('\r') && tail[1] == Unit('\n');
    rest = tail.sliced(std::min<qsizetype>(tail.size(), is_pair ? 2 : 1));
    return line;
}
