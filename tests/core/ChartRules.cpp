// SPDX-License-Identifier: GPL-3.0-or-later
#include "Rules.h"
#include "base/ColourContrast.h"
#include "chart/CGraphControl.h"
#include "chart/DragRules.h"
#include "chart/ItemPicking.h"
#include "chart/ReadOut.h"
#include "chart/ZoomGestures.h"
#include "dialog/ButtonLayout.h"
#include "dialog/DialogTemplate.h"
#include "grid/ColumnShare.h"
#include "profiles/RowEdits.h"

#include <QPointF>
#include <QSize>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

using enum ProfileKind;

QPointF PointOf(const QJsonValue& value) {
    return {value[0].toDouble(), value[1].toDouble()};
}

Colour ColourOf(const QJsonValue& value) {
    const auto part = [&value](int i) { return static_cast<std::uint8_t>(value[i].toInt()); };
    return {part(0), part(1), part(2)};
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

// What is shown after each act on a chart: points every hour or at `times`, or bars, all of them at
// half height.
QJsonValue Zoomed(const QJsonValue&, const QJsonObject& input) {
    CDocControl chart;
    const int bars = input[u"bars"].toInt();
    const QJsonArray times = input[u"times"].toArray();
    const qsizetype count = times.isEmpty() ? input[u"hours"].toInt(bars) : times.size();
    chart.display.form = bars > 0 ? DisplayForm::Bars : DisplayForm::Points;
    chart.items.Clear(bars > 0 ? 1 : 2);
    for (int i = 0; i < count; ++i) {
        chart.items.SetValue(i, 0,
                             bars > 0 ? 5.0
                             : times.isEmpty()
                                 ? i
                                 : times[i].toDouble(std::numeric_limits<double>::quiet_NaN()));
        if (bars == 0)
            chart.items.SetValue(i, 1, 5.0);
    }
    ChartZoom zoom;
    const auto fit = [&](const std::array<double, 4>& range) {
        AxisPlan items = bars > 0 ? PlanItemAxis(bars)
                                  : AxisPlan{range[0], range[1], (range[1] - range[0]) / 10.0};
        zoom.SetFitted({{range[2], range[3], 1.0}, items});
    };
    const QJsonArray fitted = input[u"fitted"].toArray();
    fit({fitted[0].toDouble(), fitted[1].toDouble(), fitted[2].toDouble(), fitted[3].toDouble()});
    QJsonArray shown;
    for (const QString& act : VectorStrings(input[u"acts"])) {
        const QStringList words = act.split(u' ');
        const auto number = [&words](int word) { return words.value(word).toDouble(); };
        if (words[0] == u"zoom")
            ZoomByNotches(zoom, chart, words[1] == u"items" ? ChartAxis::Items : ChartAxis::Values,
                          {number(2), number(2)}, number(3));
        else if (words[0] == u"pan")
            PanWith(zoom, {}, {-number(1), -number(2)});
        else if (words[0] == u"show")
            ShowItems(zoom, chart, {words[1].toInt() - 1, words.last().toInt() - 1});
        else if (words[0] == u"view")
            BringIntoView(zoom, chart, words[1].toInt() - 1);
        else if (words[0] == u"fit")
            zoom.Fit();
        else
            fit({number(1), number(2), number(3), number(4)});
        const AxisPlans plans = zoom.Visible();
        QStringList ranges;
        for (const double end :
             {plans.items.low, plans.items.high, plans.values.low, plans.values.high})
            ranges.append(QString::number(end, 'g', 6));
        shown.append(u"%1, %2 labels"_s.arg(ranges.join(u' ')).arg(plans.items.Ticks().size()));
    }
    return QJsonObject{{u"shown"_s, shown}};
}

QJsonValue Columns(const QJsonValue& share, const QJsonObject&) {
    QJsonArray widths;
    for (const int width : ShareRoom(Numbers(share[0]), Numbers(share[1]), share[2].toInt()))
        widths.append(width);
    return widths;
}

// A mouse "at" pixels of 400 x 300, rows by keyboard, all rows.
QJsonValue ReadOuts(const QJsonValue&, const QJsonObject& input) {
    const ProfileKind kind = VectorKind(input[u"kind"]);
    RowEdits rows(kind, DisplayMode::Edit);
    rows.ReplaceRows(VectorStrings(input[u"times"]), VectorStrings(input[u"values"]),
                     VectorStrings(input[u"names"]));
    CGraphControl control;
    kind == Function ? control.BuildFunctionChart() : control.BuildProfileChart(kind);
    control.Attach(&rows.table(), kind);
    const QJsonValue axes = input[u"axes"];
    const PlotScale scale = {{axes[0].toDouble(), axes[1].toDouble(), 0.0, 400.0},
                             {axes[2].toDouble(), axes[3].toDouble(), 300.0, 0.0}};
    ReadOut read_out(kind, &control.document(), &rows.table());
    // Nothing of the straight line is kept.
    if (input[u"steps"].toBool() && !read_out.Whole(scale).isEmpty())
        control.SetLineForm(LineForm::Steps);
    QJsonArray at;
    for (const QJsonValue& place : input[u"at"].toArray())
        at.append(read_out.At(scale, PointOf(place)).text);
    QJsonArray of;
    for (const QJsonValue& row : input[u"rows"].toArray())
        of.append(read_out.Of(scale, row.toInt() - 1).text);
    return QJsonObject{{u"at"_s, at}, {u"rows"_s, of}, {u"whole"_s, read_out.Whole(scale)}};
}

QJsonValue Ratio(const QJsonValue& pair, const QJsonObject&) {
    const double contrast = Contrast(ColourOf(pair[0]), ColourOf(pair[1]));
    return contrast == Contrast(ColourOf(pair[1]), ColourOf(pair[0]))
               ? std::round(contrast * 100.0) / 100.0
               : QJsonValue();
}

using Value = const QJsonValue&;
using All = const QJsonObject&;

}  // namespace

QList<Rule> ChartRules() {
    return {{"charts", nullptr, Chart},
            {"chart_zoom", nullptr, Zoomed},
            {"read_out", nullptr, ReadOuts},
            {"chart", "tip", Tip},
            {"chart", "drag", Dragged},
            {"chart", "cut",
             [](Value in, All) -> QJsonValue { return CutToHundredths(in.toDouble()); }},
            {"chart", "time",
             [](Value in, All) -> QJsonValue {
                 const auto text =
                     AcceptDraggedTime(in[0].toDouble(), in[1].toDouble(), in[2].toDouble());
                 return text ? *text : QJsonValue();
             }},
            {"chart", "pick", Picked},
            {"chart", "hit", Hit},
            {"chart", "inset",
             [](Value in, All) -> QJsonValue {
                 return FocusInset({in[0].toInt(), in[1].toInt()});
             }},
            {"chart", "contrast", Ratio},
            {"table_room", "tables",
             [](Value in, All all) -> QJsonValue {
                 return WidthOfTable(VectorKind(all[u"kind"]), all[u"rows"].toInt(), in[0].toInt(),
                                     {in[1].toInt(), in[2].toInt(), in[3].toInt()});
             }},
            {"table_room", "columns", Columns},
            {"buttons", "parts", Placed}};
}
