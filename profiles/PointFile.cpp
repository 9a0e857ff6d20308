// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/PointFile.h"

#include "base/Cp1252.h"
#include "base/FileReplace.h"
#include "base/ShownText.h"
#include "base/Words.h"
#include "profiles/ProfileKind.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLargestFile = 256 * 1024 * 1024;
constexpr qsizetype kLongestLine = 1024 * 1024;

// What the layout is found from.
constexpr qsizetype kProbedLines = 1000;
constexpr qsizetype kProbedBytes = 1024 * 1024;

constexpr qsizetype kPreviewLines = 20;
constexpr qsizetype kMaxPreviewText = 40;

// Lines of an exchange file, from 1.
constexpr int kFourthLine = 4;
constexpr int kCyclesLine = 11;
constexpr int kPointCountLine = 12;
constexpr int kPointLineCountLine = 13;

// Asks whether to go on, once for each piece of the file.
class Pieces {
public:
    Pieces(qsizetype size, const PointProgress& progress)
        : m_size(size), m_next(size), m_progress(progress) {}

    bool GoOn(qsizetype left) {
        constexpr qsizetype kPiece = 256 * 1024;
        if (!m_progress || left > m_next)
            return true;
        m_next = left - kPiece;
        return m_progress(static_cast<int>((m_size - left) * 100 / std::max<qsizetype>(m_size, 1)));
    }

private:
    qsizetype m_size;
    qsizetype m_next;
    const PointProgress& m_progress;
};

// `line` up to a comment. No letter but that of an exponent stands before one: a mark within a text
// is part of it.
QStringView WithoutComment(QStringView line) {
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (c == u'#' || c == u'!' || (c == u'/' && line.sliced(i).startsWith(u"//")))
            return line.first(i);
        if (c.isLetter() && c != u'e' && c != u'E')
            break;
    }
    return line;
}

// What stands behind "keyword =" at the start of `line`.
std::optional<QByteArrayView> Behind(QStringView keyword, QByteArrayView line) {
    const QByteArray start = keyword.toLatin1() + " =";
    if (!line.startsWith(start))
        return std::nullopt;
    return line.sliced(start.size());
}

qsizetype CountWords(QByteArrayView line) {
    qsizetype count = 0;
    while (!TakeWord(line).isEmpty())
        ++count;
    return count;
}

// The first words of a line of an exchange file, in front of its comment.
std::array<QByteArrayView, 3> FirstWords(QByteArrayView line) {
    const qsizetype mark = line.indexOf('!');
    QByteArrayView rest = mark < 0 ? line : line.first(mark);
    std::array<QByteArrayView, 3> words;
    for (QByteArrayView& word : words)
        word = TakeWord(rest);
    return words;
}

std::optional<int> IntegerOf(QByteArrayView word) {
    int number = 0;
    const auto [end, error] = std::from_chars(word.begin(), word.end(), number);
    return error == std::errc() && end == word.end() ? std::optional(number) : std::nullopt;
}

// Takes the lines in front of the points of an exchange file off `rest`. The number of points;
// nothing when it is no such file.
std::optional<qsizetype> TakeExchangeHeader(QByteArrayView& rest) {
    std::optional<int> count_less_one;
    for (int number = 1; number <= kPointLineCountLine; ++number) {
        if (rest.isEmpty())
            return std::nullopt;
        const auto words = FirstWords(TakeLine(rest));
        const std::optional<int> integer = IntegerOf(words[0]);
        if (number == kFourthLine && (!integer || !IntegerOf(words[1]) || words[2].isEmpty()))
            return std::nullopt;
        if (number == kCyclesLine && integer != 1)
            return std::nullopt;
        if (number == kPointCountLine)
            count_less_one = integer;
        if (number == kPointLineCountLine && integer && count_less_one && *count_less_one >= 0 &&
            *integer / 2 == *count_less_one + qint64{1} && *integer % 2 == 0)
            return *integer / 2;
    }
    return std::nullopt;
}

}  // namespace

// The lines of a table one after the other.
class PointFile::Lines {
public:
    explicit Lines(const PointFile& file) : m_file(file), m_rest(file.m_content) {}

    bool Next() {
        if (m_rest.isEmpty())
            return false;
        ++m_number;
        const QByteArrayView line = TakeLine(m_rest);
        m_is_too_long = line.size() > kLongestLine;
        m_text = m_file.Decoded(line);
        m_data = WithoutComment(m_text);
        return true;
    }

    qsizetype number() const { return m_number; }
    qsizetype left() const { return m_rest.size(); }
    QStringView data() const { return m_data; }
    bool isTooLong() const { return m_is_too_long; }

private:
    const PointFile& m_file;
    QByteArrayView m_rest;
    qsizetype m_number = 0;
    QString m_text;
    QStringView m_data;
    bool m_is_too_long = false;
};

PointFile::PointFile(QByteArray content) : m_bytes(std::move(content)), m_content(m_bytes) {
    if (m_content.startsWith("\xEF\xBB\xBF"))
        m_content = m_content.sliced(3);
    m_utf8 = m_content.isValidUtf8();
    m_format = FindFormat();
    if (m_format == Format::Table)
        FindLayout();
}

PointFile PointFile::Open(const QString& path) {
    std::optional<QByteArray> content = ReadRegularFile(AbsolutePath(path), kLargestFile + 1);
    if (content && content->size() <= kLargestFile)
        return PointFile(*std::move(content));
    PointFile none = PointFile(QByteArray());
    none.m_fault = {content ? PointFault::Kind::TooLarge : PointFault::Kind::CannotOpen, 0, {}};
    return none;
}

PointFile::Format PointFile::FindFormat() const {
    QByteArrayView rest = m_content;
    if (TakeExchangeHeader(rest))
        return Format::ExchangeFile;
    rest = m_content;
    const auto& keywords = Describe(ProfileKind::Function).write_keywords;
    const bool is_saved =
        Behind(keywords[0], TakeLine(rest)) && Behind(keywords[1], TakeLine(rest));
    return is_saved ? Format::SavedFunction : Format::Table;
}

// Of a line or word that is too long to hold anything only the start.
QString PointFile::Decoded(QByteArrayView bytes) const {
    bytes = bytes.first(std::min(bytes.size(), kLongestLine));
    return m_utf8 ? QString::fromUtf8(bytes) : FromCp1252(bytes);
}

void PointFile::FindLayout() {
    qsizetype bytes = 0;
    for (Lines lines(*this);
         m_first_lines.size() < kProbedLines && bytes < kProbedBytes && lines.Next();) {
        if (lines.data().trimmed().isEmpty())
            continue;
        if (!m_fault)
            m_fault = PointFault::At(PointFault::Kind::NoPoint, lines.number(), lines.data());
        if (!lines.isTooLong())
            m_first_lines.append(lines.data().toString());
        bytes += lines.data().size();
    }
    m_layouts = FindLayouts(m_first_lines);
    m_first_lines.resize(std::min(m_first_lines.size(), kPreviewLines));
    if (!m_layouts.isEmpty())
        m_fault.reset();
    else if (!m_fault)
        m_fault = PointFault();
}

bool PointFile::needsChoice() const {
    if (m_format != Format::Table || m_layouts.isEmpty())
        return false;
    const PointLayout& likeliest = m_layouts.first();
    return m_layouts.size() > 1 || likeliest.columns != 2 || likeliest.numeric.size() != 2;
}

PointColumns PointFile::ColumnsOf(const PointLayout& layout) {
    const QList<qsizetype>& numeric = layout.numeric;
    if (numeric.size() < 2)
        return {layout.separator, PointColumns::kCounted, numeric.value(0)};
    return {layout.separator, numeric[0], numeric[1]};
}

PointColumns PointFile::likelyColumns() const {
    return m_layouts.isEmpty() ? PointColumns() : ColumnsOf(m_layouts.first());
}

QList<QStringList> PointFile::Preview(ColumnSeparator separator) const {
    QList<QStringList> preview;
    for (const QString& line : m_first_lines) {
        QStringList texts;
        for (const QStringView cell : SplitCells(line, separator, kMaxColumns))
            texts.append(ShownText(Unquoted(cell), kMaxPreviewText));
        preview.append(texts);
    }
    return preview;
}

PointReading PointFile::Read(const PointColumns& columns, const PointProgress& progress) const {
    if (m_fault)
        return {{}, m_fault};
    switch (m_format) {
        case Format::Table: break;
        case Format::SavedFunction: return ReadSavedFunction(progress);
        case Format::ExchangeFile: return ReadExchangeFile(progress);
    }
    return ReadTable(columns, progress);
}

PointReading PointFile::ReadTable(const PointColumns& columns,
                                  const PointProgress& progress) const {
    const bool is_counted = columns.time < 0;
    const qsizetype time = is_counted ? columns.value : columns.time;
    const qsizetype count = std::max(time, columns.value) + 1;
    PointCollector points(PointCollector::DecimalSigns::Same);
    Pieces pieces(m_content.size(), progress);
    bool in_header = true;
    for (Lines lines(*this); lines.Next();) {
        if (!pieces.GoOn(lines.left())) {
            points.Cancel();
            break;
        }
        const PointCells cells = SplitCells(lines.data(), columns.separator, count);
        if (cells.isEmpty())
            continue;
        const bool is_point = cells.size() == count && !lines.isTooLong() &&
                              !cells[time].isEmpty() && !cells[columns.value].isEmpty();
        in_header = in_header && !(is_point && BeginsLikeNumber(cells[time]) &&
                                   BeginsLikeNumber(cells[columns.value]));
        if (in_header)
            continue;
        const QString counted = is_counted ? QString::number(points.count()) : QString();
        const bool is_added =
            is_point ? points.AddTime(is_counted ? counted : cells[time], lines.number()) &&
                           points.AddValue(cells[columns.value], lines.number())
                     : points.Fail(PointFault::Kind::NoPoint, lines.number(), lines.data());
        if (!is_added)
            break;
    }
    return points.Take();
}

PointReading PointFile::ReadSavedFunction(const PointProgress& progress) const {
    const auto& keywords = Describe(ProfileKind::Function).write_keywords;
    QByteArrayView rest = m_content;
    QByteArrayView times = *Behind(keywords[0], TakeLine(rest));
    const QByteArrayView second = TakeLine(rest);
    QByteArrayView values = *Behind(keywords[1], second);
    PointCollector points(PointCollector::DecimalSigns::Any);
    Pieces pieces(times.size() + values.size(), progress);
    // Counted first, so that texts are made only for what looks like a function.
    bool goes_on = CountWords(times) == CountWords(values) ||
                   points.Fail(PointFault::Kind::NoPoint, 2, Decoded(second));
    while (goes_on) {
        const QByteArrayView time = TakeWord(times);
        const QByteArrayView value = TakeWord(values);
        if (time.isEmpty())
            break;
        goes_on = points.AddTime(Decoded(time), 1) && points.AddValue(Decoded(value), 2);
        if (!pieces.GoOn(times.size() + values.size())) {
            points.Cancel();
            break;
        }
    }
    return points.Take();
}

PointReading PointFile::ReadExchangeFile(const PointProgress& progress) const {
    QByteArrayView rest = m_content;
    const qsizetype count = TakeExchangeHeader(rest).value_or(0);
    PointCollector points(PointCollector::DecimalSigns::Any);
    Pieces pieces(m_content.size(), progress);
    qsizetype line = kPointLineCountLine;
    while (points.count() < count) {
        const QString time = Decoded(FirstWords(TakeLine(rest))[0]);
        const QString value = Decoded(FirstWords(TakeLine(rest))[0]);
        if (!points.AddTime(time, line + 1) || !points.AddValue(value, line + 2))
            break;
        line += 2;
        if (!pieces.GoOn(rest.size())) {
            points.Cancel();
            break;
        }
    }
    return points.Take();
}
