// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/AxisPlan.h"
#include "chart/CGraphControl.h"
#include "chart/ItemPicking.h"
#include "chart/LineThinning.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// 400 x 300 pixels for x from 0 to `x_high` and y from 0 to 100, y upward.
PlotScale ScaleFor(double x_high) {
    return {{0.0, x_high, 0.0, 400.0}, {0.0, 100.0, 300.0, 0.0}};
}

}  // namespace

class ChartDocTest : public QObject {
    Q_OBJECT

    static void CheckAxis(double interval, double low, double high, double multiple) {
        const AxisPlan plan =
            PlanAxis({.interval = interval, .limits = 0, .headroom = 1}, low, high, 10.0, 8, 20);
        QVERIFY(std::isfinite(plan.low) && std::isfinite(plan.high) && plan.low < plan.high);
        // Where the plot is asked to draw them.
        const AxisScale scale = {plan.low, plan.high, 300.0, 0.0};
        for (const double value : {low, high})
            QVERIFY(std::abs(scale.ToPixel(value)) <= 2e4);
        if (std::abs(high) < 1e199 && std::abs(low) < 1e199)
            QVERIFY2(plan.low <= low && plan.high > high,
                     qPrintable(u"%1: %2 to %3"_s.arg(interval).arg(low).arg(high)));
        if (multiple > 0.0)
            QCOMPARE(plan.step, interval * multiple);
        QStringList labels;
        for (double tick : plan.Ticks())
            labels.append(plan.LabelText(tick));
        QVERIFY2(labels.size() >= 2 && labels.size() <= 20, qPrintable(labels.join(u' ')));
        QCOMPARE(labels.removeDuplicates(), 0);
    }

private slots:
    void charts() {
        // Height of the title, step, colours of grid lines and marks, items, axis titles; then the
        // items: upright labels, value, last label.
        const QString colours = u"205 205 205|0 128 0|56 102 224|255 0 0"_s;
        const std::pair<int, QString> charts[] = {
            {-1,
             u"15|0|230 230 230|230 230 230|0 0 0|255 0 0|0 0 255|0|Value of function|Value of time"_s},
            {0, u"11|0.2|%1|12|Coefficient Multiplicateur|Mois de l'année|0|1|Décembre"_s},
            {1, u"22|250|%1|12|Besoin journalier moyen l/j|Mois de l'année|0|1800|Décembre"_s},
            {2, u"22|20|%1|7|Besoin journalier moyen en l/j|Jours de la Semaine|0|100|Dimanche"_s},
            {3, u"11|0.2|%1|24|Coefficient Horaire|Heures de la Journée|1|1|23 h"_s},
            {9, u"11|0|%1|12|||0|nan|"_s}};
        for (const auto& [kind, expected] : charts) {
            CGraphControl control;
            control.SetTitle(u" \nMask"_s);
            kind < 0 ? control.BuildFunctionChart()
                     : control.BuildProfileChart(static_cast<ProfileKind>(kind));
            const CDocControl& chart = control.document();
            const double title_height = chart.title.rect.bottom;
            QStringList facts = {QString::number(title_height),
                                 QString::number(chart.value_scale.interval)};
            const auto add_colour = [&facts](Colour colour) {
                facts += u"%1 %2 %3"_s.arg(colour.red).arg(colour.green).arg(colour.blue);
            };
            for (const auto& line : chart.grid_lines)
                add_colour(line.colour);
            for (const auto& mark : chart.tick_marks)
                add_colour(mark.colour);
            const int last = chart.ItemCount() - 1;
            facts += {QString::number(last + 1), chart.value_label.text, chart.index_label.text};
            if (last >= 0)
                facts += {QString::number(chart.item_style.flags / ItemStyle::kUprightLabel),
                          QString::number(chart.Value(last, 0)), chart.Label(last)};
            QCOMPARE(facts.join(u'|'), expected.contains(u"%1") ? expected.arg(colours) : expected);
            QCOMPARE(chart.title.text, u" \nMask"_s);
            QCOMPARE(chart.title.rect, (PercentRect{0.0, 0.0, 100.0, title_height}));
            QCOMPARE(chart.display_rect, (PercentRect{0.0, title_height, 100.0, 100.0}));
        }
        // The point style leaves the other flags.
        CGraphControl daily;
        daily.BuildProfileChart(ProfileKind::Daily);
        daily.ApplyPointStyle();
        QCOMPARE(daily.document().StyleOf(23).flags, ItemStyle::kUprightLabel | 0xC00U);
        QCOMPARE(daily.document().StyleOf(23).width, 2);
    }

    void valueBeyondEndThrows() {
        CDocControl chart;
        chart.ClearItems(2);
        chart.SetValue(0, 0, 1.0);
        QVERIFY(!chart.IsDrawn(0));
        chart.SetValue(0, 1, 2.0);
        QVERIFY(chart.IsDrawn(0));
        for (const auto& [item, group] : {std::pair(2, 0), std::pair(-1, 0), std::pair(0, 2)})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, chart.SetValue(item, group, 1.0));
        QCOMPARE(chart.ItemCount(), 1);
    }

    // An axis has finite limits with room beyond the data, and few labels that can be told apart.
    void axis() {
        constexpr double kFifth = double{0.2F};
        struct Case {
            double interval;
            double low;
            double high;
            double multiple;  // of the interval between labels; 0 when automatic
        };
        const Case cases[] = {
            {kFifth, 0.0, 1.4, 1.0},     {kFifth, 0.0, 12.0, 5.0},    {250.0, 0.0, 99999.0, 50.0},
            {kFifth, 0.0, 24.0, 10.0},   {250.0, 0.0, 0.0002, 1.0},   {20.0, 0.0, 1.6e-5, 1.0},
            {kFifth, 0.0, 1e-7, 1.0},    {0.0, -5.0, 0.0, 0.0},       {0.0, -5.0, -3.0, 0.0},
            {250.0, 0.0, 1e300, -1.0},   {20.0, -50.0, 100.0, 1.0},   {0.0, -3.0, 17.0, 0.0},
            {0.0, 5.0, 5.0, 0.0},        {0.0, 0.0, 0.0, 0.0},        {0.0, -1.7e308, 1.7e308, 0.0},
            {0.0, -3.4e38, 3.4e38, 0.0}, {20.0, 0.0, 3.4e38, 0.0},    {0.0, 0.0, 5e-324, 0.0},
            {0.0, 1e15, 1e15 + 1, 0.0},  {20.0, -1e-300, 1e-300, 0.0}};
        for (const auto& [interval, low, high, multiple] : cases)
            CheckAxis(interval, low, high, multiple);

        std::mt19937 random(1);
        const auto number = [&random] {
            const double digits = std::uniform_real_distribution(-10.0, 10.0)(random);
            return digits * std::pow(10.0, std::uniform_int_distribution(-320, 190)(random) / 4);
        };
        for (int i = 0; i < 3000; ++i) {
            const double one = number();
            const double other = i % 3 == 0 ? 0.0 : i % 3 == 1 ? one * (1.0 + number()) : number();
            for (const double interval : {0.0, kFifth, 20.0, 250.0})
                CheckAxis(interval, std::min(one, other), std::max(one, other), 0.0);
        }
    }

    // Each column of pixels keeps its first, last, lowest and highest point, and no more.
    void thinLineKeepsExtremes() {
        std::mt19937 random(1);
        std::vector<double> xs;
        std::vector<double> ys;
        const PlotScale scale = ScaleFor(20000.0);
        std::vector<QPointF> whole;
        for (int i = 0; i < 20000; ++i) {
            const bool gap = i % 97 == 0;
            xs.push_back(i);
            ys.push_back(gap ? (i % 2 != 0 ? kNaN : kInf)
                             : static_cast<double>(random() % 1000) / 10.0);
            if (!gap)
                whole.push_back(scale.ToPixels({xs.back(), ys.back()}));
        }
        const auto columns = [](const std::vector<QPointF>& line) {
            std::map<int, std::vector<QPointF>> result;
            for (QPointF pixel : line)
                result[static_cast<int>(std::floor(pixel.x()))].push_back(pixel);
            return result;
        };
        const auto heights = [](const std::vector<QPointF>& column) {
            const auto [low, high] = std::minmax_element(
                column.begin(), column.end(), [](QPointF a, QPointF b) { return a.y() < b.y(); });
            return QPointF(low->y(), high->y());
        };
        const std::vector<QPointF> line = ThinLine(xs, ys, scale).points;
        QVERIFY(std::is_sorted(line.begin(), line.end(),
                               [](QPointF a, QPointF b) { return a.x() < b.x(); }));
        auto kept = columns(line);
        const auto all = columns(whole);
        QCOMPARE(kept.size(), all.size());
        for (const auto& [x, column] : all) {
            QVERIFY(!kept[x].empty() && kept[x].size() <= 4);
            QCOMPARE(kept[x].front(), column.front());
            QCOMPARE(kept[x].back(), column.back());
            QCOMPARE(heights(kept[x]), heights(column));
        }
    }

    // Times without order cost no more, and their peaks are seen all the same.
    void thinLineStaysSmall() {
        std::vector<double> xs;
        std::vector<double> ys;
        for (long long i = 0; i < 100000; ++i) {
            xs.push_back(static_cast<double>(i * 7919 % 100000));
            ys.push_back(i == 77777 ? 99.0 : static_cast<double>(i % 50));
        }
        const auto [line, density] = ThinLine(xs, ys, ScaleFor(100000.0));
        QVERIFY(line.size() <= 8 * 402);
        QVERIFY(density.IsDense(200.0));
        const QPointF peak = ScaleFor(100000.0).ToPixels({xs[77777], 99.0});
        QVERIFY(std::any_of(line.begin(), line.end(), [peak](QPointF point) {
            return std::abs(point.x() - peak.x()) <= 1.0 && point.y() == peak.y();
        }));

        // Few points stay as they are, in their order.
        const std::vector<QPointF> few =
            ThinLine(std::vector{50.0, 10.0, 90.0}, std::vector{1.0, 2.0, 3.0}, ScaleFor(100.0))
                .points;
        QCOMPARE(few.size(), size_t{3});
        QCOMPARE(few[0].x(), 200.0);
        QCOMPARE(few[1].x(), 40.0);
    }

    // Of a cluster only the first point and the current one get a marker, of free ones each.
    void crowdedPoints() {
        std::vector<double> xs(70);
        for (size_t i = 0; i < xs.size(); ++i)
            xs[i] = i < 60 ? static_cast<double>(i) * 0.01 : static_cast<double>(i - 59) * 10.0;
        std::vector<double> ys(xs.size(), 50.0);
        ys[20] = kNaN;
        xs.insert(xs.end(), {100.0, 100.0});
        ys.insert(ys.end(), {52.0, 50.1});  // 6 and 5.7 pixels from the marker before
        std::vector<QPointF> marked;
        ForEachMarker(xs, ys, ScaleFor(100.0), ThinLine(xs, ys, ScaleFor(100.0)).density, {20, 30},
                      [&marked](QPointF place) { marked.push_back(place); });
        QCOMPARE(marked.size(), size_t{13});
        QCOMPARE(marked[1].x(), 0.3 * 4.0);
        QCOMPARE(marked[2].x(), 40.0);
        QCOMPARE(marked.back(), ScaleFor(100.0).ToPixels({100.0, 52.0}));

        // Of a dense zigzag those get one that stand some way along the axis.
        xs.assign(2000, 0.0);
        ys.assign(2000, 0.0);
        for (size_t i = 0; i < xs.size(); ++i) {
            xs[i] = static_cast<double>(i) * 0.02;
            ys[i] = i % 2 == 0 ? 0.0 : 50.0;
        }
        // The last one jumps back to where others were left out.
        xs.insert(xs.end(), {60.0, 60.0, 100.0, 39.8});
        ys.insert(ys.end(), {50.0, 0.0, 0.0, 0.0});
        const PointDensity density = ThinLine(xs, ys, ScaleFor(100.0)).density;
        for (const auto& [pixel, dense] : {std::pair(0, true), std::pair(80, true),
                                           std::pair(240, false), std::pair(400, false)})
            QCOMPARE(density.IsDense(pixel), dense);
        int count = 0;
        ForEachMarker(xs, ys, ScaleFor(100.0), density, {}, [&count](QPointF) { ++count; });
        QCOMPARE(count, 160 / 6 + 1 + 4);
    }

    void hits() {
        const std::pair<QPointF, int> on_points[] = {
            // Points at pixels (40, 150), (44, 150), (44, 150) and (200, 0).
            {{43, 151}, 1},   // nearest
            {{48, 150}, 1},   // lower row of two
            {{42, 150}, 0},   // same distance
            {{34, 145}, -1},  // too far
            {{200, 2}, 3}};   // top edge
        CDocControl points;
        points.ClearItems(2);
        int item = 0;
        for (QPointF point : {QPointF(10, 50), QPointF(11, 50), QPointF(11, 50), QPointF(50, 100),
                              QPointF(kNaN, 50), QPointF(10, kInf)}) {
            points.SetValue(item, 0, point.x());
            points.SetValue(item++, 1, point.y());
        }
        PlotScale scale = ScaleFor(100.0);
        for (const auto& [pixels, hit] : on_points)
            QCOMPARE(HitItem(points, scale, pixels).value_or(-1), hit);

        const std::pair<QPointF, int> on_bars[] = {
            // Bars on x = 0 .. 3 with the ends at pixels 225, none, 300 and 330.
            {{50, 220}, 0},     // above its end
            {{50, 200}, -1},    // well above
            {{150, 299}, -1},   // no value
            {{250, 297}, 2},    // no height
            {{100, 280}, -1},   // between bars
            {{350, 320}, 3},    // below the axis
            {{-60, 280}, -1}};  // left of all
        CDocControl bars;
        bars.display.form = DisplayForm::Bars;
        item = 0;
        for (double value : {25.0, kInf, 0.0, -10.0})
            bars.SetValue(item++, 0, value);
        scale.x = {-0.5, 3.5, 0.0, 400.0};
        for (const auto& [pixels, hit] : on_bars)
            QCOMPARE(HitItem(bars, scale, pixels).value_or(-1), hit);
    }
};

QTEST_GUILESS_MAIN(ChartDocTest)
#include "ChartDocTest.moc"
