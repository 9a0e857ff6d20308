// SPDX-License-Identifier: GPL-3.0-or-later
#include "Rules.h"
#include "TestFiles.h"
#include "app/FileCheck.h"
#include "profiles/Calculation.h"
#include "profiles/InsertPoints.h"
#include "profiles/PointFile.h"
#include "profiles/PointSeries.h"
#include "profiles/ProfileTable.h"
#include "profiles/TableText.h"

#include <QTemporaryDir>
#include <array>
#include <optional>
#include <utility>
#include <variant>

using namespace Qt::StringLiterals;

namespace {

using enum ProfileKind;

// Rows as a text: "time value|time value".
PointTexts RowsFrom(const QJsonValue& value) {
    PointTexts rows;
    for (const QString& row : value.toString().split(u'|', Qt::SkipEmptyParts)) {
        rows.times.append(row.section(u' ', 0, 0));
        rows.values.append(row.section(u' ', 1));
    }
    return rows;
}

QString RowsText(const PointTexts& points) {
    QStringList rows;
    for (qsizetype i = 0; i < points.times.size(); ++i)
        rows.append(points.times[i] + u' ' + points.values.value(i));
    return rows.join(u'|');
}

QJsonValue FaultOf(const PointReading& reading, PointTask task) {
    return reading.fault ? FaultMessage(*reading.fault, task) : QJsonValue();
}

QJsonValue Pasted(const QJsonValue& text, const QJsonObject& input) {
    const PointTexts present = RowsFrom(input[u"rows"]);
    const PointReading reading = ReadPastedPoints(text.toString(), present.times);
    const InsertedPoints all = InsertPoints(present, reading.points);
    QJsonArray added;
    for (const int row : all.rows)
        added.append(row);
    return QJsonObject{{u"rows"_s, RowsText(all.points)},
                       {u"added"_s, added},
                       {u"message"_s, FaultOf(reading, PointTask::Insert)}};
}

// Reads with the columns that the file itself shows, unless a case names others.
QJsonValue Imported(const QJsonValue& content, const QJsonObject& input) {
    const std::array separators = {u"tab"_s,  u"semicolon"_s, u"comma"_s,
                                   u"wide"_s, u"blanks"_s,    u"none"_s};
    const PointFile file(input.contains(u"utf8"_s) ? input[u"utf8"].toString().toUtf8()
                                                   : VectorBytes(content));
    QStringList layouts;
    for (const PointLayout& layout : file.layouts())
        layouts.append(separators[static_cast<size_t>(layout.separator)] +
                       QString::number(layout.columns));
    PointColumns columns = file.likelyColumns();
    if (input.contains(u"columns"_s)) {
        columns.time = input[u"columns"][0].toInt();
        columns.value = input[u"columns"][1].toInt();
    }
    const PointReading reading = file.Read(columns);
    return QJsonObject{{u"points"_s, RowsText(reading.points)},
                       {u"layouts"_s, layouts.join(u' ')},
                       {u"asks"_s, file.needsChoice()},
                       {u"message"_s, FaultOf(reading, PointTask::Import)}};
}

QJsonValue Exported(const QJsonValue& rows, const QJsonObject&) {
    ProfileTable table(Function);
    const auto [times, values] = RowsFrom(rows);
    table.ResetRows(times, values);
    return QJsonObject{{u"copied"_s, TableText(table, kCopiedTable, {2, 1})},
                       {u"commas"_s, TableText(table, kCopiedTableWithCommas)},
                       {u"semicolon_file"_s, TableText(table, kSemicolonFile, {}, u"\r\n")},
                       {u"comma_file"_s, TableText(table, kCommaFile)},
                       {u"tab_file"_s, TableText(table, kTabFile)}};
}

// The place of `name` in `names`.
template <typename Enum>
Enum EnumOf(const QJsonValue& name, const QStringList& names) {
    return static_cast<Enum>(names.indexOf(name.toString(names.first())));
}

QJsonValue Calculated(const QJsonValue&, const QJsonObject& input) {
    const Calculation calculation = {
        EnumOf<Operation>(input[u"operation"],
                          {u"multiply"_s, u"add"_s, u"set"_s, u"linear"_s, u"limit"_s, u"round"_s}),
        input[u"a"].toDouble(), input[u"b"].toDouble()};
    const QList<int> numbers = Numbers(input[u"rows"]);
    const auto result = Calculate(calculation, VectorStrings(input[u"column"]),
                                  {numbers.begin(), numbers.end()}, VectorStrings(input[u"times"]));
    if (const auto* column = std::get_if<QStringList>(&result))
        return QJsonObject{{u"column"_s, Array(*column)}};
    const auto& [reason, row] = std::get<CalculationFault>(result);
    const QStringList reasons = {u"wrong field"_s, u"no number"_s, u"not finite"_s};
    return QJsonObject{{u"fault"_s, reasons[static_cast<int>(reason)]}, {u"row"_s, row}};
}

QJsonValue Series(const QJsonValue&, const QJsonObject& input) {
    const QJsonObject fields = input[u"plan"].toObject();
    SeriesPlan plan;
    plan.shape = EnumOf<SeriesShape>(
        fields[u"shape"], {u"constant"_s, u"linear"_s, u"sine"_s, u"pulse"_s, u"interpolated"_s});
    plan.count = fields[u"count"].toInt(plan.count);
    for (const auto& [name, number] : {std::pair{"start", &plan.start},
                                       {"step", &plan.step},
                                       {"a", &plan.a},
                                       {"b", &plan.b},
                                       {"period", &plan.period},
                                       {"phase", &plan.phase},
                                       {"share", &plan.share}})
        *number = fields[QLatin1StringView(name)].toDouble(*number);
    const auto points = MakeSeries(plan, {VectorStrings(input[u"function"][u"times"]),
                                          VectorStrings(input[u"function"][u"values"])});
    return points ? QJsonObject{{u"times"_s, Array(points->times)},
                                {u"values"_s, Array(points->values)}}
                  : QJsonValue();
}

// The sample with some lines replaced, and those from "end" on gone. "%" stands for a byte.
QJsonValue FileChecked(const QJsonValue&, const QJsonObject& input) {
    QList<QByteArray> lines = ReadAll(QStringLiteral(SAMPLES_DIR "pump-start.txt")).split('\n');
    lines.resize(input[u"end"].toInt(static_cast<int>(lines.size()) + 1) - 1);
    const QJsonObject edits = input[u"edits"].toObject();
    for (auto edit = edits.begin(); edit != edits.end(); ++edit)
        lines[edit.key().toInt() - 1] =
            QByteArray::fromPercentEncoding(edit.value().toString().toLatin1());
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"file.txt"_s);
    WriteAll(path, lines.join(input[u"crlf"].toBool() ? "\r\n" : "\n"));
    QJsonArray found;
    const FileCheck check = CheckExchangeFile(path, [&](qsizetype line, const QString& text) {
        found.append(u"%1: %2"_s.arg(QString::number(line), text));
    });
    const FileSummary& summary = check.summary;
    if (check.faults == 0)
        found = {check.readable, summary.points, summary.first_time, summary.last_time};
    return QJsonObject{{u"found"_s, found}};
}

using Value = const QJsonValue&;
using All = const QJsonObject&;

}  // namespace

QList<Rule> PointRules() {
    return {{"points", "number",
             [](Value in, All) -> QJsonValue {
                 const std::optional<QString> number = PointNumber(in.toString());
                 return number ? *number : QJsonValue();
             }},
            {"points", "pasted", [](Value, All all) { return Pasted(all[u"pasted"], all); }},
            {"points", "file", [](Value, All all) { return Imported(all[u"file"], all); }},
            {"points", "utf8", [](Value, All all) { return Imported({}, all); }},
            {"points", "table", [](Value, All all) { return Exported(all[u"table"], all); }},
            {"file_checks", nullptr, FileChecked},
            {"calculations", "operation", Calculated},
            {"calculations", "orders",
             [](Value in, All) -> QJsonValue {
                 return KeepsTimeOrder(VectorStrings(in[0]), VectorStrings(in[1]));
             }},
            {"series", nullptr, Series}};
}
