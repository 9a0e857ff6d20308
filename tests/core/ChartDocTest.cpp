// SPDX-License-Identifier: GPL-3.0-or-later
#include "VectorFile.h"
#include "chart/AxisPlan.h"
#include "chart/CGraphControl.h"
#include "chart/LineThinning.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

#include <algorithm>
#include <array>
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
        const AxisPlan plan = PlanAxis({.interval = interval, .headroom = ScaleHeadroom::Kept},
                                       {low, high, 10.0, 8, 20});
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
    // The point style leaves the labels as they stand.
    void pointStyle() {
        CGraphControl daily;
        daily.BuildProfileChart(ProfileKind::Daily);
        daily.ApplyPointStyle();
        QCOMPARE(daily.document().StyleOf(23).label_turn, ItemLabelTurn::Upright);
        QCOMPARE(daily.document().StyleOf(23).points, PointLook::MarkersOnLine);
        QCOMPARE(daily.document().StyleOf(23).width, 2);
    }

    void valueBeyondEndThrows() {
        CDocControl chart;
        chart.items.Clear(2);
        chart.items.SetValue(0, 0, 1.0);
        QVERIFY(!chart.items.IsDrawn(0));
        chart.items.SetValue(0, 1, 2.0);
        QVERIFY(chart.items.IsDrawn(0));
        for (const auto& [item, group] : {std::pair(2, 0), std::pair(-1, 0), std::pair(0, 2)})
            QVERIFY_THROWS_EXCEPTION(std::invalid_argument, chart.items.SetValue(item, group, 1.0));
        QCOMPARE(chart.items.Count(), 1);
    }

    // An axis has finite limits with room beyond the data, and few labels that can be told apart.
    void axis() {
        for (const QJsonObject& one : VectorCases("chart_axes")) {
            const QJsonArray axes = one[u"input"][u"axes"].toArray();
            QVERIFY(!axes.isEmpty());
            for (const QJsonValue& axis : axes)
                CheckAxis(axis[0].toDouble(), axis[1].toDouble(), axis[2].toDouble(),
                          axis[3].toDouble());
        }

        std::mt19937 random(1);
        const auto number = [&random] {
            const double digits = std::uniform_real_distribution(-10.0, 10.0)(random);
            return digits * std::pow(10.0, std::uniform_int_distribution(-320, 190)(random) / 4);
        };
        for (int i = 0; i < 3000; ++i) {
            const double one = number();
            const double other = i % 3 == 0 ? 0.0 : i % 3 == 1 ? one * (1.0 + number()) : number();
            for (const double interval : {0.0, double{0.2F}, 20.0, 250.0})
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
        // Of each column: first and last point, lowest and highest value.
        using Columns = std::map<double, std::array<double, 6>>;
        const auto columns = [](const std::vector<QPointF>& line) {
            Columns result;
            for (const QPointF pixel : line) {
                const double x = pixel.x();
                const double y = pixel.y();
                auto& column =
                    result.try_emplace(std::floor(x), Columns::mapped_type{x, y, x, y, y, y})
                        .first->second;
                column = {
                    column[0], column[1], x, y, std::min(column[4], y), std::max(column[5], y)};
            }
            return result;
        };
        const std::vector<QPointF> line = ThinLine(xs, ys, scale).points;
        QVERIFY(std::is_sorted(line.begin(), line.end(),
                               [](QPointF a, QPointF b) { return a.x() < b.x(); }));
        const Columns all = columns(whole);
        QVERIFY(columns(line) == all);
        QVERIFY(line.size() <= 4 * all.size());
        // The same of steps, whose corners lie in the column that they lead to.
        std::vector<QPointF> steps;
        for (const QPointF point : whole) {
            if (!steps.empty())
                steps.emplace_back(point.x(), steps.back().y());
            steps.push_back(point);
        }
        QVERIFY(columns(ThinLine(xs, ys, scale, 1.0, LineForm::Steps).points) == columns(steps));
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

    // Of a small part of many points the line is the same as if all were looked at, also where it
    // leads far away.
    void thinLineOfAPart() {
        std::vector<double> xs(20000);
        std::vector<double> ys(xs.size());
        for (size_t i = 0; i < xs.size(); ++i) {
            xs[i] = static_cast<double>(i);
            ys[i] = static_cast<double>(i * 7919 % 101);
        }
        xs.back() = 1e6;
        for (const auto& [low, high] : {std::pair(500.5, 503.5), {-10.0, 900.0}, {19990.0, 2e4}}) {
            const PlotScale scale = {{low, high, 0.0, 400.0}, {0.0, 100.0, 300.0, 0.0}};
            const auto [first, last] = PointsInSight(xs, scale.x);
            QVERIFY(last - first < 1000);
            const auto seen = [&scale](const std::vector<double>& x, const std::vector<double>& y) {
                std::vector<QPointF> line = ThinLine(x, y, scale).points;
                std::erase_if(line, [](QPointF at) { return at.x() < 0.0 || at.x() > 400.0; });
                return line;
            };
            const auto part = [from = first, to = last](const std::vector<double>& all) {
                return std::vector(all.begin() + static_cast<long>(from),
                                   all.begin() + static_cast<long>(to));
            };
            QVERIFY(seen(part(xs), part(ys)) == seen(xs, ys));
            if (high == 2e4) {
                const QPointF end = *(ThinLine(xs, ys, scale).points.end() - 2);
                const double share = (scale.x.ToValue(end.x()) - 19998.0) / (1e6 - 19998.0);
                const double value = ys[19998] + (ys[19999] - ys[19998]) * share;
                QVERIFY(std::abs(end.y() - scale.y.ToPixel(value)) < 1e-6);
                const auto steps = ThinLine(xs, ys, scale, 1.0, LineForm::Steps).points;
                QCOMPARE((steps.end() - 2)->y(), scale.y.ToPixel(ys[19998]));
            }
        }
        std::swap(xs[3], xs[4]);
        QCOMPARE(PointsInSight(xs, {500.0, 503.0, 0.0, 400.0}).second, xs.size());
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
};

QTEST_GUILESS_MAIN(ChartDocTest)
#include "ChartDocTest.moc"
