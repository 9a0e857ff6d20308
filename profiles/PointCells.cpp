// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/PointCells.h"

#include "profiles/EntryRules.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kGroupDigits = 3;

bool IsDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool IsThousandsMark(QChar c) {
    return c == u' ' || c == u'\u00A0' || c == u'\u202F' || c == u'\'' || c == u'\u2019';
}

bool IsSeparator(QStringView line, qsizetype at, ColumnSeparator separator) {
    const QChar c = line[at];
    switch (separator) {
        case ColumnSeparator::Tab: return c == u'\t';
        case ColumnSeparator::Semicolon: return c == u';';
        case ColumnSeparator::Comma: return c == u',';
        case ColumnSeparator::WideBlanks:
            return c == u' ' && at + 1 < line.size() && line[at + 1] == u' ';
        case ColumnSeparator::Blanks: return c == u' ' || c == u'\t';
        case ColumnSeparator::None: break;
    }
    return false;
}

bool IsOfBlanks(ColumnSeparator separator) {
    return separator == ColumnSeparator::WideBlanks || separator == ColumnSeparator::Blanks;
}

// Where the cell that begins at `at` ends. Separators between double quotes do not end it.
qsizetype CellEnd(QStringView line, qsizetype at, ColumnSeparator separator) {
    const auto is_blank = [&](QChar c) { return c == u' '; };
    const auto first = std::find_if_not(line.begin() + at, line.end(), is_blank);
    if (first != line.end() && *first == u'"') {
        const qsizetype close = line.indexOf(u'"', first - line.begin() + 1);
        at = close < 0 ? line.size() : close + 1;
        while (at < line.size() && line[at] == u'"') {  // the first of two
            const qsizetype next = line.indexOf(u'"', at + 1);
            at = next < 0 ? line.size() : next + 1;
        }
    }
    while (at < line.size() && !IsSeparator(line, at, separator))
        ++at;
    return at;
}

// `number` without the marks between its thousands, if that is what they are.
QString WithoutThousands(const QString& number) {
    const qsizetype first = number.startsWith(u'-') || number.startsWith(u'+') ? 1 : 0;
    const auto digits_from = [&](qsizetype at) {
        const auto begin = number.begin() + std::min(at, number.size());
        return std::find_if_not(begin, number.end(), IsDigit) - begin;
    };
    const qsizetype head = digits_from(first);
    qsizetype at = first + head;
    if (at >= number.size() || !IsThousandsMark(number[at]) || head < 1 || head > kGroupDigits ||
        number[first] == u'0')
        return number;
    const QChar mark = number[at];
    QString text = number.first(at);
    while (at < number.size() && number[at] == mark) {
        if (digits_from(at + 1) != kGroupDigits)
            return number;
        text += QStringView(number).sliced(at + 1, kGroupDigits);
        at += 1 + kGroupDigits;
    }
    return text += QStringView(number).sliced(at);
}

}  // namespace

PointCells SplitCells(QStringView line, ColumnSeparator separator, qsizetype most) {
    if (IsOfBlanks(separator) || separator == ColumnSeparator::None)
        line = line.trimmed();
    PointCells cells;
    qsizetype at = 0;
    while (cells.size() < most) {
        const qsizetype end = CellEnd(line, at, separator);
        cells.append(line.sliced(at, end - at).trimmed());
        at = std::min(end + 1, line.size());
        while (IsOfBlanks(separator) && at < line.size() && line[at].isSpace())
            ++at;
        if (end == line.size())
            break;
    }
    while (at < line.size() && (line[at].isSpace() || IsSeparator(line, at, separator)))
        ++at;
    while (at == line.size() && !cells.isEmpty() && cells.last().isEmpty())
        cells.removeLast();
    return cells;
}

QString Unquoted(QStringView cell) {
    if (cell.size() < 2 || !cell.startsWith(u'"') || !cell.endsWith(u'"'))
        return cell.toString();
    return cell.sliced(1, cell.size() - 2).toString().replace(u"\"\""_s, u"\""_s);
}

std::optional<QString> PointNumber(QStringView cell) {
    return NumberEntry(WithoutThousands(Unquoted(cell).trimmed()));
}

bool BeginsLikeNumber(QStringView cell) {
    const QString text = Unquoted(cell).trimmed();
    qsizetype at = text.startsWith(u'-') || text.startsWith(u'+') ? 1 : 0;
    if (at < text.size() && (text[at] == u'.' || text[at] == u','))
        ++at;
    return at < text.size() && IsDigit(text[at]);
}
