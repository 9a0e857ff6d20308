// SPDX-License-Identifier: GPL-3.0-or-later
// A text is inserted as points, and read as a file with points. What is accepted is exported and
// read again.
// Input: numbers to start with, a line end; then the text.

#include "base/EnglishAtof.h"
#include "fuzz/Harness.h"
#include "profiles/InsertPoints.h"
#include "profiles/PointFile.h"
#include "profiles/TableText.h"

#include <algorithm>

namespace {

bool Same(const PointTexts& left, const PointTexts& right) {
    return left.times == right.times && left.values == right.values;
}

// All or nothing; a fault names a line that is there.
void CheckReading(const PointReading& reading, QByteArrayView text) {
    const PointTexts& points = reading.points;
    Require(points.times.size() == points.values.size(), "as many times as values");
    Require(reading.fault.has_value() == points.times.isEmpty(), "points or a fault");
    const qsizetype lines = text.count('\n') + text.count('\r') + 1;
    // An exchange file may end before its last point.
    Require(!reading.fault || reading.fault->line <= lines + 1, "a fault is in a line of the text");
}

void CheckExport(const PointTexts& points) {
    ProfileTable table(ProfileKind::Function);
    table.ResetRows(points.times, points.values);
    const std::pair<TableFormat, ColumnSeparator> formats[] = {
        {kSemicolonFile, ColumnSeparator::Semicolon},
        {kCommaFile, ColumnSeparator::Comma},
        {kTabFile, ColumnSeparator::Tab}};
    for (const auto& [format, separator] : formats) {
        const PointFile again(TableText(table, format).toUtf8());
        Require(Same(again.Read({separator, 0, 1}).points, points), "an exported file reads back");
        Require(again.likelyColumns().separator == separator, "an exported file shows its columns");
    }
    const PointReading pasted = ReadPastedPoints(TableText(table, kCopiedTableWithCommas), {});
    Require(Same(pasted.points, points), "a copied table can be inserted");
}

// As if the points were added one after the other.
void CheckOrder(PointTexts rows, const PointTexts& added, const InsertedPoints& all) {
    for (qsizetype i = 0; i < added.times.size(); ++i) {
        const double time = ParseNumber(added.times[i]);
        const auto later =
            std::find_if(rows.times.cbegin(), rows.times.cend(),
                         [time](const QString& text) { return ParseNumber(text) > time; });
        rows.values.insert(later - rows.times.cbegin(), added.values[i]);
        rows.times.insert(later - rows.times.cbegin(), added.times[i]);
    }
    Require(Same(all.points, rows), "points go to their places in time");
    Require(all.rows.size() == added.times.size(), "as many new rows as points");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    PointTexts rows;
    rows.times = QString::fromLatin1(input.Line()).split(u' ');
    rows.values = rows.times;
    const QByteArray text = input.rest.toByteArray();

    const PointReading pasted = ReadPastedPoints(QString::fromUtf8(text), rows.times);
    CheckReading(pasted, text);
    CheckOrder(rows, pasted.points, InsertPoints(rows, pasted.points));

    const PointFile file(text);
    QList<PointColumns> choices = {file.likelyColumns()};
    for (const PointLayout& layout : file.layouts())
        choices.append({layout.separator, layout.columns - 1, 0});
    for (const PointColumns& columns : choices) {
        const PointReading imported = file.Read(columns);
        CheckReading(imported, text);
        if (!imported.points.times.isEmpty())
            CheckExport(imported.points);
    }
    return 0;
}
