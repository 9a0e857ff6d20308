// SPDX-License-Identifier: GPL-3.0-or-later
// Rules without a state of their own: numbers, coefficients, entries, names of files, copy and
// paste, the mouse on the chart and the parts of a button. All under a locale with a decimal comma
// where the machine has one.

#include "TestFiles.h"
#include "VectorFile.h"
#include "app/FileCheck.h"
#include "base/ColourContrast.h"
#include "base/EnglishAtof.h"
#include "base/Message.h"
#include "base/NumberText.h"
#include "chart/CGraphControl.h"
#include "chart/DragRules.h"
#include "chart/ItemPicking.h"
#include "dialog/ButtonLayout.h"
#include "grid/PasteRules.h"
#include "grid/TabMoves.h"
#include "profiles/Calculation.h"
#include "profiles/Coefficients.h"
#include "profiles/EntryRules.h"
#include "profiles/InsertPoints.h"
#include "profiles/PointFile.h"
#include "profiles/PointSeries.h"
#include "profiles/ProfileFile.h"
#include "profiles/ProfileFolders.h"
#include "profiles/ProfileTable.h"
#include "profiles/TableText.h"

#include <QJsonDocument>
#include <QLocale>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <clocale>
#include <cmath>
#include <limits>
#include <random>

using namespace Qt::StringLiterals;

namespace {

using enum ProfileKind;

const float kNaN = std::numeric_limits<float>::quiet_NaN();

QJsonArray Array(const QStringList& texts) {
    return QJsonArray::fromStringList(texts);
}

QList<int> Numbers(const QJsonValue& value) {
    QList<int> numbers;
    const QJsonArray array = value.toArray();
    for (const QJsonValue& one : array)
        numbers.append(one.toInt());
    return numbers;
}

QPointF PointOf(const QJsonValue& value) {
    return {value[0].toDouble(), value[1].toDouble()};
}

Colour ColourOf(const QJsonValue& value) {
    const auto part = [&value](int i) { return static_cast<std::uint8_t>(value[i].toInt()); };
    return {part(0), part(1), part(2)};
}

// A path with the separators of this platform.
QString PathFrom(const QJsonValue& value) {
    return value.toString().replace(u'\\', u'/');
}

QJsonValue TextOrNull(const QString& text) {
    return text.isEmpty() ? QJsonValue() : text;
}

// The result of an entry, with the message that it brought up.
template <typename Check>
QJsonObject WithMessage(MessageIcon icon, const Check& check) {
    QString message;
    const MessageHandler former =
        SetMessageHandler({[&](const QString& text, MessageIcon shown, const QString&) {
                               message += shown == icon ? text : u"wrong icon: "_s + text;
                           },
                           {}});
    QJsonObject result = check();
    SetMessageHandler(former);
    result[u"message"_s] = TextOrNull(message);
    return result;
}

QJsonValue Separator(const QJsonValue& input, const QJsonObject&) {
    return WithMessage(MessageIcon::None, [&] {
        const auto text = CheckDecimalSeparator(input.toString());
        return text ? QJsonObject{{u"accepted"_s, true}, {u"text"_s, *text}}
                    : QJsonObject{{u"accepted"_s, false}};
    });
}

// Text typed into a cell passes the separator and has to keep the cell's bound too.
QJsonValue Typed(const QJsonValue& input, const QJsonObject& all) {
    std::optional<QString> text;
    const QJsonObject separated = WithMessage(MessageIcon::None, [&] {
        text = CheckDecimalSeparator(input.toString());
        return QJsonObject{{u"value"_s, text ? EnglishAtof(*text) : QJsonValue()}};
    });
    if (separated[u"value"].isNull())
        return separated;
    bool accepted = false;
    QJsonObject result = WithMessage(MessageIcon::Information, [&] {
        accepted = CheckTypedBound(VectorKind(all[u"kind"]), EnglishAtof(*text));
        return separated;
    });
    return accepted == result[u"message"].isNull() ? result : QJsonValue();
}

// Which row stands where is told by its value.
QJsonValue TimeMove(const QJsonValue&, const QJsonObject& input) {
    QStringList times;
    QStringList values;
    const QJsonArray rows = input[u"rows"].toArray();
    for (const QJsonValue& row : rows) {
        times.append(row[0].toString());
        values.append(row[1].toString());
    }
    return WithMessage(MessageIcon::None, [&] {
        const auto checked = CheckDecimalSeparator(input[u"entry"].toString());
        if (!checked)
            return QJsonObject{{u"target"_s, QJsonValue()}};
        const QString& entry = *checked;
        const int row = input[u"row"].toInt();
        const int target = TargetRow(times, row, EnglishAtof(entry));
        ProfileTable table(Function);
        table.ResetRows(times, values);
        // What is no number counts as 0; it is left to others to keep such entries out.
        table.SetCellText(row, 1, IsNumber(entry) ? entry : NumberText13(ParseNumber(entry)));
        table.MoveRow(row, target, RewrittenNumber);
        QJsonArray order;
        QJsonObject cells;
        for (int i = 1; i <= table.RowCount(); ++i) {
            const qsizetype from = values.indexOf(table.CellText(i, 2));
            order.append(from + 1);
            if (from >= 0)
                values[from].clear();
            if (row != target && i >= std::min(row, target) && i <= std::max(row, target))
                cells[QString::number(i)] = Array({table.CellText(i, 1), table.CellText(i, 2)});
        }
        return QJsonObject{{u"target"_s, target}, {u"order"_s, order}, {u"cells"_s, cells}};
    });
}

QJsonValue AddedPoint(const QJsonValue&, const QJsonObject& input) {
    const float time = EnglishAtof(input[u"x"].toString());
    const float value = EnglishAtof(input[u"y"].toString());
    return QJsonObject{
        {u"row"_s, InsertionRow(VectorStrings(input[u"times"]), time)},
        {u"cells"_s, Array({NumberText7(double{time}), NumberText7(double{value})})}};
}

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

QJsonValue Clipboard(const QJsonValue&, const QJsonObject& input) {
    const QList<int> rows = Numbers(input[u"rows"]);
    const QList<int> columns = Numbers(input[u"columns"]);
    QString message;
    QJsonObject result;
    if (input.contains(u"copied_column"_s)) {
        const PasteRequest request = {
            input[u"copied_column"].toInt(), input[u"copied_rows"].toInt(), rows, columns,
            input[u"row_count"].toInt(),     input[u"foreign"].toBool()};
        message = PasteRefusal(request);
        result[u"filled"_s] = message.isEmpty() ? PastedRowCount(request) : QJsonValue();
    } else if (input.contains(u"kind"_s)) {
        message = BulkRefusal(VectorKind(input[u"kind"]), VectorStrings(input[u"column"]));
    } else {
        message = CopyRefusal(rows, columns);
    }
    result[u"message"_s] = TextOrNull(message);
    return result;
}

QJsonValue Adjusted(const QJsonValue&, const QJsonObject& input) {
    const ProfileKind kind = VectorKind(input[u"kind"]);
    const QStringList column = VectorStrings(input[u"column"]);
    const float sum = RoundedSum(kind, column);
    QJsonObject result = {{u"S"_s, FormatValue(sum, 2)}, {u"question"_s, QJsonValue()}};
    if (SumIsRight(kind, sum))
        return result;
    const QStringList adjusted = AdjustCoefficients(kind, column, sum);
    result[u"question"_s] = AdjustQuestion(kind, sum);
    result[u"adjusted"_s] = adjusted == column ? QJsonValue() : Array(adjusted);
    return result;
}

QJsonValue Rebalanced(const QJsonValue&, const QJsonObject& input) {
    const ProfileKind kind = VectorKind(input[u"kind"]);
    const QStringList rebalanced =
        RebalanceCoefficients(kind, VectorStrings(input[u"column"]), input[u"index"].toInt(),
                              EnglishAtof(input[u"value"].toString()));
    return QJsonObject{{u"rebalanced"_s, Array(rebalanced)},
                       {u"settled"_s, Array(SettleRemainder(kind, rebalanced))}};
}

QJsonValue Written(const QJsonValue&, const QJsonObject& input) {
    ProfileContent content;
    const QJsonArray rows = input[u"rows"].toArray();
    for (const QJsonValue& row : rows) {
        content.labels += row[0].toString();
        content.values += row[1].toString();
        content.names += row[2].toString();
    }
    const ProfileKind kind = VectorKind(input[u"kind"]);
    QByteArray bytes = WriteProfile(kind, content, "\n");
    const QString text = QString::fromLatin1(bytes);
    const QJsonObject coded = {{u"b64"_s, QString::fromLatin1(bytes.toBase64())}};
    const QJsonValue file = text.toUtf8() == bytes ? QJsonValue(text) : coded;
    const bool crlf = WriteProfile(kind, content, "\r\n") == bytes.replace("\n", "\r\n");
    return QJsonObject{{u"file"_s, crlf ? file : QJsonValue()}};
}

QJsonValue NameSaved(const QJsonValue& save, const QJsonObject&) {
    return NameAfterSave(VectorKind(save[0]), PathFrom(save[1]), save[2].toString(),
                         save[3].toBool());
}

QJsonValue Tip(const QJsonValue& row, const QJsonObject&) {
    const ProfileKind kind = VectorKind(row[0]);
    return kind == Function
               ? FunctionTip(row[1].toString().toDouble(), row[2].toString().toDouble())
               : ProfileTip(kind, row[1].toString(), row[2].toString(), row[3].toString());
}

QJsonValue Dragged(const QJsonValue& drag, const QJsonObject&) {
    const auto stored = AcceptDrag(VectorKind(drag[0]), drag[1].toString().toDouble());
    return QJsonObject{{u"accepted"_s, stored.has_value()},
                       {u"text"_s, stored ? *stored : QJsonValue()}};
}

QJsonValue Picked(const QJsonValue& press, const QJsonObject& input) {
    QList<QPointF> points;
    const QJsonArray rows = input[u"rows"].toArray();
    for (const QJsonValue& row : rows)
        points.append(PointOf(row));
    const auto picked = PickPoint(points, PointOf(press));
    return picked ? *picked + 1 : QJsonValue();
}

// Where a button puts its image and its caption.
QJsonValue Placed(const QJsonValue& parts, const QJsonObject& input) {
    const auto size_of = [&](QLatin1StringView key) {
        const QJsonValue size = parts[key];
        return size.isArray() ? std::optional(QSize(size[0].toInt(), size[1].toInt()))
                              : std::nullopt;
    };
    ButtonLayout layout;
    layout.beside_text = !input.contains(u"at"_s);
    layout.image_position = PointOf(input[u"at"][0]).toPoint();
    layout.text_position = PointOf(input[u"at"][1]).toPoint();
    const ButtonContent content = {*size_of("client"_L1), parts[u"frame"].toInt(),
                                   size_of("image"_L1), size_of("text"_L1),
                                   parts[u"pressed"].toBool()};
    const auto place = [](bool is_there, QPoint point) {
        return is_there ? QJsonArray{point.x(), point.y()} : QJsonValue();
    };
    return QJsonArray{place(content.image.has_value(), ImagePlace(layout, content)),
                      place(content.text.has_value(), TextPlace(layout, content))};
}

// What a build gives: sizes, colours of grid lines and marks, items.
QJsonValue Chart(const QJsonValue&, const QJsonObject& input) {
    const ProfileKind kind = VectorKind(input[u"kind"]);
    CGraphControl control;
    control.SetTitle(u" \nMask"_s);
    kind == Function ? control.BuildFunctionChart() : control.BuildProfileChart(kind);
    const CDocControl& chart = control.document();
    QJsonArray colours;
    for (const auto& line : chart.grid_lines)
        colours.append(QJsonArray{line.colour.red, line.colour.green, line.colour.blue});
    for (const auto& mark : chart.tick_marks)
        colours.append(QJsonArray{mark.colour.red, mark.colour.green, mark.colour.blue});
    const PercentRect& title = chart.title.rect;
    const int last = chart.items.Count() - 1;
    return QJsonObject{{u"title"_s, chart.title.text},
                       {u"title_band"_s, QJsonArray{title.top, title.bottom}},
                       {u"band"_s, QJsonArray{chart.display_rect.top, chart.display_rect.bottom}},
                       {u"step"_s, QString::number(chart.value_scale.interval)},
                       {u"colours"_s, colours},
                       {u"items"_s, last + 1},
                       {u"value_axis"_s, chart.value_label.text},
                       {u"index_axis"_s, chart.index_label.text},
                       {u"upright"_s, chart.item_style.label_turn == ItemLabelTurn::Upright},
                       {u"last_value"_s, QString::number(chart.items.Value(last, 0))},
                       {u"last_label"_s, chart.items.Label(last)}};
}

// A mouse over points or bars on 400 x 300 pixels; values go from 0 to 100, upward.
QJsonValue Hit(const QJsonValue& place, const QJsonObject& input) {
    CDocControl chart;
    PlotScale scale = {{0.0, 100.0, 0.0, 400.0}, {0.0, 100.0, 300.0, 0.0}};
    const QJsonArray points = input[u"points"].toArray();
    const QJsonArray bars = input[u"bars"].toArray();
    if (!bars.isEmpty()) {
        chart.display.form = DisplayForm::Bars;
        scale.x = {-0.5, static_cast<double>(bars.size()) - 0.5, 0.0, 400.0};
    }
    chart.items.Clear(bars.isEmpty() ? 2 : 1);
    for (int i = 0; i < points.size(); ++i) {
        for (const int group : {0, 1})
            chart.items.SetValue(i, group, points[i][group].toString().toDouble());
    }
    for (int i = 0; i < bars.size(); ++i)
        chart.items.SetValue(i, 0, bars[i].toString().toDouble());
    const auto hit = HitItem(chart, scale, PointOf(place));
    return hit ? *hit : QJsonValue();
}

QJsonValue Ratio(const QJsonValue& pair, const QJsonObject&) {
    const double contrast = Contrast(ColourOf(pair[0]), ColourOf(pair[1]));
    return contrast == Contrast(ColourOf(pair[1]), ColourOf(pair[0]))
               ? std::round(contrast * 100.0) / 100.0
               : QJsonValue();
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

// A rule and the cases that it is for.
struct Rule {
    const char* file;
    const char* key;  // of the list of inputs in a case; null where the whole case is one input
    QJsonValue (*result)(const QJsonValue& input, const QJsonObject& all);
    const char* results = nullptr;  // the key of the expected list, where that has one
};

using Value = const QJsonValue&;
using All = const QJsonObject&;

const Rule kRules[] = {
    {"numbers", "atof", [](Value in, All) -> QJsonValue { return EnglishAtof(in.toString()); }},
    {"numbers", "format",
     [](Value in, All) -> QJsonValue {
         return FormatValue(EnglishAtof(in[0].toString()), in[1].toInt());
     }},
    {"numbers", "round2",
     [](Value in, All) -> QJsonValue {
         return FormatValue(Round2(EnglishAtof(in.toString())), 2);
     }},
    {"numbers", "whole",
     [](Value in, All) -> QJsonValue {
         return FormatValue(RoundWhole(EnglishAtof(in.toString())), 0);
     }},
    {"numbers", "text13",
     [](Value in, All) -> QJsonValue { return NumberText13(ParseNumber(in.toString())); }},
    {"numbers", "text7",
     [](Value in, All) -> QJsonValue { return NumberText7(double{EnglishAtof(in.toString())}); }},
    {"numbers", "rewritten",
     [](Value in, All) -> QJsonValue { return RewrittenNumber(in.toString()); }},
    {"numbers", "separator", Separator},
    {"numbers", "typed", Typed},
    {"coefficients", nullptr, Adjusted},
    {"rebalance", nullptr, Rebalanced},
    {"time_moves", nullptr, TimeMove},
    {"add_points", nullptr, AddedPoint},
    {"clipboard", nullptr, Clipboard},
    {"dat_write", "rows", Written},
    {"dat_write", "saves", NameSaved, "names"},
    {"dat_write", "chosen",
     [](Value in, All) -> QJsonValue { return WithExtension(PathFrom(in)).replace(u'/', u'\\'); },
     "written"},
    {"dat_write", "inside",
     [](Value in, All) -> QJsonValue {
         return ProfileFolders(u"/p"_s).IsInKindFolder(VectorKind(in[0]), in[1].toString());
     },
     "inside"},
    {"points", "number",
     [](Value in, All) -> QJsonValue {
         const std::optional<QString> number = PointNumber(in.toString());
         return number ? *number : QJsonValue();
     }},
    {"points", "pasted", [](Value, All all) { return Pasted(all[u"pasted"], all); }},
    {"points", "file", [](Value, All all) { return Imported(all[u"file"], all); }},
    {"points", "utf8", [](Value, All all) { return Imported({}, all); }},
    {"points", "table", [](Value, All all) { return Exported(all[u"table"], all); }},
    {"charts", nullptr, Chart},
    {"chart", "tip", Tip},
    {"chart", "drag", Dragged},
    {"chart", "cut", [](Value in, All) -> QJsonValue { return CutToHundredths(in.toDouble()); }},
    {"chart", "pick", Picked},
    {"chart", "hit", Hit},
    {"chart", "inset",
     [](Value in, All) -> QJsonValue {
         return FocusInset({in[0].toInt(), in[1].toInt()});
     }},
    {"chart", "contrast", Ratio},
    {"buttons", "parts", Placed},
    {"file_checks", nullptr, FileChecked},
    {"calculations", "operation", Calculated},
    {"calculations", "orders",
     [](Value in, All) -> QJsonValue {
         return KeepsTimeOrder(VectorStrings(in[0]), VectorStrings(in[1]));
     }},
    {"series", nullptr, Series}};

// In a form that can be compared and printed; of an object only what `keys` has too.
QByteArray Text(const QJsonValue& value, const QJsonObject& keys) {
    QJsonObject object = value.toObject();
    for (const QString& key : value.toObject().keys()) {
        if (!keys.contains(key))
            object.remove(key);
    }
    return QJsonDocument(QJsonArray{value.isObject() ? object : value}).toJson();
}

// Where between the weakest and the strongest of its parts a colour's red, green and blue lie.
std::array<double, 3> Hue(Colour colour) {
    const auto [low, high] = std::minmax({int{colour.red}, int{colour.green}, int{colour.blue}});
    const double range = std::max(high - low, 1);
    return {(colour.red - low) / range, (colour.green - low) / range, (colour.blue - low) / range};
}

}  // namespace

class RulesTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QLocale::setDefault(QLocale(QLocale::French));
        for (const char* locale : {"fr_FR.UTF-8", "de_DE.UTF-8", "fr_FR", "French"}) {
            if (std::setlocale(LC_ALL, locale) != nullptr)
                break;
        }
    }

    void Rules_data() {
        QTest::addColumn<const Rule*>("rule");
        QTest::addColumn<QJsonObject>("vector");
        for (const Rule& rule : kRules) {
            const QList<QJsonObject> cases = VectorCases(rule.file, rule.key);
            QVERIFY2(!cases.isEmpty(), rule.file);
            for (const QJsonObject& one : cases)
                QTest::addRow("%s, %s", rule.file, qPrintable(one[u"name"].toString()))
                    << &rule << one;
        }
    }
    // A case is one input, or a list of them with a list of results.
    void Rules() {
        QFETCH(const Rule*, rule);
        QFETCH(const QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        QList<std::pair<QJsonValue, QJsonValue>> pairs = {{{}, vector[u"expected"]}};
        if (rule->results != nullptr)
            pairs = VectorPairs(input[QLatin1StringView(rule->key)],
                                vector[u"expected"][QLatin1StringView(rule->results)]);
        else if (vector[u"expected"].isArray())
            pairs = VectorPairs(input[QLatin1StringView(rule->key)], vector[u"expected"]);
        for (const auto& [one, expected] : pairs) {
            const QJsonValue result = rule->result(one, input);
            QCOMPARE(Text(result, expected.toObject()), Text(expected, result.toObject()));
        }
    }

    // Random columns against the definitions, and resampling against a search through all points.
    void CalculationsAndSeries() {
        std::mt19937 random(20261121);
        const auto number = [&] { return static_cast<int>(random() % 2001) / 8.0 - 125.0; };
        for (int round = 0; round < 200; ++round) {
            const int count = 2 + static_cast<int>(random() % 30);
            PointTexts function;
            std::vector<std::pair<double, double>> points;
            QList<qsizetype> rows;
            for (int i = 0; i < count; ++i) {
                points.emplace_back(i + static_cast<int>(random() % 4) / 4.0, number());
                function.times.append(NumberText13(points.back().first));
                function.values.append(NumberText13(points.back().second));
                if (random() % 2 == 0)
                    rows.append(i);
            }
            const double low = number();
            for (const Calculation& one : {Calculation{Operation::Multiply, low},
                                           {Operation::Add, low},
                                           {Operation::Limit, low, low + 50.0}}) {
                const auto result = std::get<QStringList>(Calculate(one, function.values, rows));
                for (int i = 0; i < count; ++i) {
                    const double x = points[static_cast<size_t>(i)].second;
                    const double y = one.operation == Operation::Multiply ? x * low
                                     : one.operation == Operation::Add
                                         ? x + low
                                         : std::min(std::max(x, low), low + 50.0);
                    QCOMPARE(ParseNumber(result[i]), rows.contains(i) ? y : x);
                }
            }
            const SeriesPlan plan = {-1.0, 0.25, 140, SeriesShape::Interpolated};
            const PointTexts resampled = MakeSeries(plan, function).value();
            for (int i = 0; i < plan.count; ++i) {
                const double time = plan.start + i * plan.step;
                double expected = points.front().second;
                for (size_t k = 0; k < points.size() && points[k].first <= time; ++k) {
                    const auto& [t0, v0] = points[k];
                    const auto& [t1, v1] = points[std::min(k + 1, points.size() - 1)];
                    expected = t1 > t0 ? v0 + (v1 - v0) * (time - t0) / (t1 - t0) : v0;
                }
                QVERIFY(std::abs(ParseNumber(resampled.values[i]) - expected) < 1e-9);
            }
        }
    }

    // What no text stands for.
    void OddNumbers() {
        QCOMPARE(FormatValue(std::copysign(kNaN, -1.0F), 2), u"nan"_s);
        QCOMPARE(FormatValue(Round2(kNaN), 0), u"nan"_s);
        QCOMPARE(NumberText7(-std::nan("")), u"nan"_s);
        QCOMPARE(NumberText13(ParseNumber(QString(400, u'1'))), u"inf"_s);
        QCOMPARE(NumberText13(ParseNumber(QString(400, u'0') + u"1.5"_s)), u"1.5"_s);
        const QStringList column = {u"1e30"_s, u"-1e30"_s};
        QCOMPARE(AdjustCoefficients(Daily, column, 1e-20F), column);
        for (const QStringList& left : {QStringList(12, u"3e38"_s), QStringList{u"13.00"_s}})
            QCOMPARE(SettleRemainder(left.size() == 12 ? Annual : Daily, left), left);
    }

    // Reading a file can be cancelled, and tells how far it is.
    void ImportGoesOnOrNot() {
        const PointFile file(QByteArray("1.5;2.5").leftJustified(1000).append('\n').repeated(1200));
        QList<int> told;
        const auto tell = [&](int percent) {
            told.append(percent);
            return told.size() < 4;
        };
        const PointReading cancelled = file.Read(file.likelyColumns(), tell);
        QVERIFY(cancelled.cancelled && cancelled.points.times.isEmpty() && !cancelled.fault);
        QVERIFY(told.size() == 4 && std::is_sorted(told.cbegin(), told.cend()));
        QCOMPARE(file.Read(file.likelyColumns()).points.values.size(), 1200);
        QCOMPARE(PointFile::Open(u"/"_s).fault()->kind, PointFault::Kind::CannotOpen);
    }

    // From headers, and from a cell that is no longer there, a move ends on a data cell.
    void StaysInTheGrid() {
        for (int kind = -1; kind <= 3; ++kind) {
            for (const TabDirection direction : {TabDirection::Forward, TabDirection::Backward}) {
                for (const CellPosition from : {CellPosition{0, 0}, {0, 2}, {3, 0}, {9, 9}}) {
                    const auto to = TabMove(static_cast<ProfileKind>(kind), 3, 2, from, direction);
                    QVERIFY(to && to->row >= 1 && to->row <= 3 && to->column >= 1 &&
                            to->column <= 2);
                }
                QVERIFY(!TabMove(static_cast<ProfileKind>(kind), 0, 2, {}, direction));
            }
        }
        QCOMPARE(TabMove(Function, 3, 2, CellPosition{0, 1}, TabDirection::Forward),
                 (CellPosition{1, 2}));
    }

    // Every colour is legible on every grey, is changed only if it was not, and keeps its hue.
    void Legible() {
        constexpr Colour kBlack = {0, 0, 0};
        constexpr Colour kWhite = {255, 255, 255};
        for (int grey = 0; grey < 256; ++grey) {
            const auto part = static_cast<std::uint8_t>(grey);
            const Colour background = {part, part, part};
            for (const Colour colour :
                 {kBlack, kWhite, {255, 0, 0}, {0, 0, 255}, {0, 128, 0}, {230, 230, 230}}) {
                const Colour legible = LegibleOn(background, colour);
                QVERIFY(Contrast(background, legible) >= 3.0);
                QCOMPARE(legible == colour, Contrast(background, colour) >= 3.0);
                for (size_t i = 0; legible != kWhite && legible != kBlack && i < 3; ++i)
                    QVERIFY(std::abs(Hue(legible)[i] - Hue(colour)[i]) < 0.02);
                const Colour line = GridLineOn(background, colour);
                const double contrast = Contrast(background, line);
                QVERIFY(IsDark(background) ? contrast >= 3.0 && contrast < 3.2 : line == colour);
            }
        }
    }
};

QTEST_APPLESS_MAIN(RulesTest)
#include "RulesTest.moc"
