#include "app/EnglishAtof.h"
#include "chart/AxisPlan.h"
#include "chart/CGraphControl.h"
#include "chart/ItemPicking.h"
#include "chart/LineThinning.h"
#include "profiles/ProfileTable.h"

#include <QSignalSpy>
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

CDocControl Points(const QList<QPointF>& points) {
    CDocControl chart;
    chart.ClearItems(2);
    for (int i = 0; i < points.size(); ++i) {
        chart.SetValue(i, 0, points[i].x());
        chart.SetValue(i, 1, points[i].y());
    }
    return chart;
}

// What the chart shows beside what stands in the table.
QString Difference(const CDocControl& chart, const ProfileTable& table) {
    const bool times = chart.GroupCount() == 2;
    if (chart.ItemCount() != table.RowCount())
        return u"%1 items, %2 rows"_s.arg(chart.ItemCount()).arg(table.RowCount());
    for (int i = 0; i < chart.ItemCount(); ++i) {
        const QString label = table.CellText(i + 1, 1);
        const bool same_label =
            times ? chart.Value(i, 0) == ParseNumber(label) : chart.Label(i) == label;
        if (!same_label || chart.Value(i, times ? 1 : 0) != ParseNumber(table.CellText(i + 1, 2)))
            return u"row %1"_s.arg(i + 1);
    }
    return {};
}

}  // namespace

class ChartDocTest : public QObject {
    Q_OBJECT

private slots:
    void profileChart_data();
    void profileChart();
    void chartColours();
    void highlight_data();
    void highlight();
    void pointStyleLeavesOtherFlags();
    void followsTable_data();
    void followsTable();
    void editTouchesItsItemOnly();
    void highlightMovesWithItsRow();
    void valueBeyondEndThrows();
    void axis_data();
    void axis();
    void scaleRoundTrip();
    void thinLineKeepsExtremes();
    void thinLineStaysSmall();
    void hits_data();
    void hits();
};

void ChartDocTest::profileChart_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<double>("title_height");
    QTest::addColumn<double>("step");
    QTest::addColumn<QString>("titles");
    QTest::addColumn<int>("items");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("last_label");
    QTest::addColumn<bool>("upright");
    const double fifth = double{0.2F};
    QTest::newRow("annual") << 0 << 11.0 << fifth << u"Coefficient Multiplicateur|Mois de l'année"_s
                            << 12 << 1.0 << u"Décembre"_s << false;
    QTest::newRow("monthly") << 1 << 22.0 << 250.0
                             << u"Besoin journalier moyen l/j|Mois de l'année"_s << 12 << 1800.0
                             << u"Décembre"_s << false;
    QTest::newRow("weekly") << 2 << 22.0 << 20.0
                            << u"Besoin journalier moyen en l/j|Jours de la Semaine"_s << 7 << 100.0
                            << u"Dimanche"_s << false;
    QTest::newRow("daily") << 3 << 11.0 << fifth << u"Coefficient Horaire|Heures de la Journée"_s
                           << 24 << 1.0 << u"23 h"_s << true;
    QTest::newRow("function") << -1 << 11.0 << 0.0 << u"|"_s << 12 << kNaN << u""_s << false;
    QTest::newRow("unknown") << 9 << 11.0 << 0.0 << u"|"_s << 12 << kNaN << u""_s << false;
}

void ChartDocTest::profileChart() {
    QFETCH(const int, kind);
    QFETCH(const double, value);
    QFETCH(const double, title_height);
    CGraphControl control;
    control.BuildProfileChart(static_cast<ProfileKind>(kind));
    const CDocControl& chart = control.document();
    QTEST(chart.ItemCount(), "items");
    QTEST(chart.value_scale.interval, "step");
    QTEST(chart.value_label.text + u'|' + chart.index_label.text, "titles");
    QTEST(chart.Label(chart.ItemCount() - 1), "last_label");
    QTEST((chart.item_style.flags & ItemStyle::kUprightLabel) != 0, "upright");
    QCOMPARE(chart.title.rect, (PercentRect{0.0, 0.0, 100.0, title_height}));
    QCOMPARE(chart.display_rect, (PercentRect{0.0, title_height, 100.0, 100.0}));
    for (int i = 0; i < chart.ItemCount(); ++i)
        QVERIFY(std::isnan(value) ? std::isnan(chart.Value(i, 0)) : chart.Value(i, 0) == value);
}

void ChartDocTest::chartColours() {
    CGraphControl control;
    control.BuildProfileChart(ProfileKind::Weekly);
    const CDocControl& chart = control.document();
    QCOMPARE(chart.item_style.FaceColour(), (ChartColour{115, 170, 232}));
    QCOMPARE(chart.item_style.second_colour, (ChartColour{56, 102, 224}));
    QCOMPARE(chart.grid_lines[0].colour, (ChartColour{205, 205, 205}));
    QCOMPARE(chart.grid_lines[1].colour, (ChartColour{0, 128, 0}));
    QCOMPARE(chart.tick_marks[0].colour, (ChartColour{56, 102, 224}));
    QCOMPARE(chart.tick_marks[1].colour, (ChartColour{255, 0, 0}));

    control.SetTitle(u" \nMask"_s);
    control.BuildFunctionChart();
    QCOMPARE(chart.title.text, u" \nMask"_s);
    QCOMPARE(chart.title.rect.bottom, 15.0);
    QCOMPARE(chart.ItemCount(), 0);
    QCOMPARE(chart.tick_marks.size(), size_t{3});
    QCOMPARE(chart.tick_marks[2].colour, (ChartColour{0, 0, 255}));
    QCOMPARE(chart.grid_lines[1].colour, (ChartColour{230, 230, 230}));
}

void ChartDocTest::highlight_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<QList<int>>("normal");
    QTest::addColumn<QList<int>>("highlighted");
    const QList<int> bar = {115, 170, 232, 56, 102, 224};
    const QList<int> red_bar = {115, 170, 232, 255, 0, 0};
    QTest::newRow("point") << -1 << QList<int>{255, 0, 0, 56, 102, 224}
                           << QList<int>{255, 207, 54, 56, 102, 224};
    QTest::newRow("annual") << 0 << bar << red_bar;
    QTest::newRow("daily") << 3 << bar << red_bar;
}

void ChartDocTest::highlight() {
    QFETCH(const int, kind);
    ProfileTable table(static_cast<ProfileKind>(kind));
    table.ResetRows({u"1"_s, u"2"_s, u"3"_s}, {u"1"_s, u"2"_s, u"3"_s});
    CGraphControl control;
    if (kind < 0)
        control.BuildFunctionChart();
    else
        control.BuildProfileChart(static_cast<ProfileKind>(kind));
    control.Attach(&table, static_cast<ProfileKind>(kind));
    const auto colours = [&](int index) {
        const ItemStyle style = control.document().StyleOf(index);
        const ChartColour face = style.FaceColour();
        const ChartColour second = style.second_colour;
        return QList<int>{face.red, face.green, face.blue, second.red, second.green, second.blue};
    };
    QSignalSpy changed(&control, &CGraphControl::ItemsChanged);
    control.SetHighlighted(1, true);
    QTEST(colours(0), "normal");
    QTEST(colours(1), "highlighted");
    control.SetHighlighted(1, false);
    QTEST(colours(1), "normal");
    QCOMPARE(changed.size(), 2);
    control.SetHighlighted(-1, true);
    control.SetHighlighted(3, true);
    QVERIFY(control.document().Highlighted().empty());
}

void ChartDocTest::pointStyleLeavesOtherFlags() {
    CGraphControl control;
    control.BuildProfileChart(ProfileKind::Daily);
    control.ApplyPointStyle();
    const ItemStyle style = control.document().StyleOf(23);
    QCOMPARE(style.flags, ItemStyle::kUprightLabel | 0xC00U);
    QCOMPARE(style.width, 2);
}

void ChartDocTest::followsTable_data() {
    QTest::addColumn<int>("kind");
    QTest::newRow("function") << -1;
    QTest::newRow("monthly") << 1;
}

// Any sequence of changes leaves the chart equal to the table.
void ChartDocTest::followsTable() {
    QFETCH(const int, kind);
    std::mt19937 random(static_cast<unsigned>(kind + 20));
    const auto below = [&random](int end) {
        return static_cast<int>(random() % static_cast<unsigned>(end));
    };
    const auto text = [&] {
        static const QStringList odd = {u""_s, u"abc"_s, u"inf"_s, u"1e999"_s, u"1.5abc"_s};
        return below(5) == 0 ? odd[below(5)] : QString::number(below(1000) - 500);
    };
    ProfileTable table(static_cast<ProfileKind>(kind));
    CGraphControl control;
    if (kind < 0)
        control.BuildFunctionChart();
    else
        control.BuildProfileChart(static_cast<ProfileKind>(kind));
    control.Attach(&table, static_cast<ProfileKind>(kind));
    for (int round = 0; round < 500; ++round) {
        const int rows = std::max(table.RowCount(), 1);
        const int row = below(rows) + 1;
        switch (below(8)) {
            case 0: table.RemoveRows({row, row + 2, below(rows) + 1}); break;
            case 1:
            case 2: table.InsertRow(row, text(), text()); break;
            case 3: table.MoveRow(row, below(rows) + 1); break;
            case 4: table.SetCellText(row, 1, text()); break;
            case 5: table.SetCellText(row, 2, text()); break;
            case 6: table.SetColumn(2, {text(), text(), text()}); break;
            default:
                if (below(10) == 0)
                    table.ResetRows({text(), text(), text(), text()}, {text(), text()});
        }
        QCOMPARE(Difference(control.document(), table), QString());
    }
}

void ChartDocTest::editTouchesItsItemOnly() {
    ProfileTable table(ProfileKind::Function);
    table.ResetRows({u"1"_s, u"2"_s, u"3"_s}, {u"4"_s, u"5"_s, u"6"_s});
    CGraphControl control;
    control.BuildFunctionChart();
    control.Attach(&table, ProfileKind::Function);
    QSignalSpy rebuilt(&control, &CGraphControl::Rebuilt);
    QSignalSpy changed(&control, &CGraphControl::ItemsChanged);
    table.SetCellText(2, 2, u"7.5"_s);
    QCOMPARE(control.document().Place(1), QPointF(2.0, 7.5));
    QCOMPARE(changed, (QList<QVariantList>{{1, 1}}));
    QCOMPARE(rebuilt.size(), 0);

    control.BuildFunctionChart();
    QCOMPARE(Difference(control.document(), table), QString());
}

void ChartDocTest::highlightMovesWithItsRow() {
    ProfileTable table(ProfileKind::Function);
    table.ResetRows({u"1"_s, u"2"_s, u"3"_s}, {u"4"_s, u"5"_s, u"6"_s});
    CGraphControl control;
    control.BuildFunctionChart();
    control.Attach(&table, ProfileKind::Function);
    control.SetHighlighted(1, true);
    table.InsertRow(1, u"0"_s, u"0"_s);
    QVERIFY(control.document().IsHighlighted(2) && !control.document().IsHighlighted(1));
    table.RemoveRows({1, 2});
    QVERIFY(control.document().IsHighlighted(0));
    table.RemoveRows({1});
    QVERIFY(control.document().Highlighted().empty());
}

void ChartDocTest::valueBeyondEndThrows() {
    CGraphControl control;
    control.BuildFunctionChart();
    control.SetValue(0, 0, 1.0);
    QVERIFY(!control.document().IsDrawn(0));
    control.SetValue(0, 1, 2.0);
    QVERIFY(control.document().IsDrawn(0));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, control.SetValue(2, 0, 1.0));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, control.SetValue(-1, 0, 1.0));
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, control.SetValue(0, 2, 1.0));
    QCOMPARE(control.document().ItemCount(), 1);
}

void ChartDocTest::axis_data() {
    QTest::addColumn<double>("interval");
    QTest::addColumn<double>("low");
    QTest::addColumn<double>("high");
    QTest::addColumn<double>("multiple");  // of the interval between labels; 0 when automatic
    QTest::newRow("coefficients") << double{0.2F} << 0.0 << 1.4 << 1.0;
    QTest::newRow("large coefficient") << double{0.2F} << 0.0 << 12.0 << 5.0;
    QTest::newRow("needs") << 250.0 << 0.0 << 1800.0 << 1.0;
    QTest::newRow("large needs") << 250.0 << 0.0 << 99999.0 << 50.0;
    QTest::newRow("enormous needs") << 250.0 << 0.0 << 1e300 << -1.0;
    QTest::newRow("negative") << 20.0 << -50.0 << 100.0 << 1.0;
    QTest::newRow("points") << 0.0 << -3.0 << 17.0 << 0.0;
    QTest::newRow("one value") << 0.0 << 5.0 << 5.0 << 0.0;
    QTest::newRow("only zero") << 0.0 << 0.0 << 0.0 << 0.0;
    QTest::newRow("widest") << 0.0 << -1.7e308 << 1.7e308 << 0.0;
    QTest::newRow("tiny") << 0.0 << 0.0 << 5e-324 << 0.0;
    QTest::newRow("close and far off") << 0.0 << 1e15 << 1e15 + 0.25 << 0.0;
    QTest::newRow("close") << 0.0 << 8760.001 << 8760.002 << 0.0;
}

// An axis has finite limits with room beyond the data, and few labels that can be told apart.
void ChartDocTest::axis() {
    QFETCH(const double, interval);
    QFETCH(const double, low);
    QFETCH(const double, high);
    QFETCH(const double, multiple);
    const AxisPlan plan =
        PlanAxis({.interval = interval, .limits = 0, .headroom = 1}, low, high, 10.0, 8, 20);
    QVERIFY(std::isfinite(plan.low) && std::isfinite(plan.high) && plan.low < plan.high);
    if (std::abs(high) < 1e100) {
        QVERIFY(plan.low <= low);
        QVERIFY(plan.high > high || (high == 0.0 && plan.high == 0.0));
    }
    if (multiple > 0.0)
        QCOMPARE(plan.step, interval * multiple);
    QStringList labels;
    for (double tick : plan.Ticks())
        labels.append(plan.LabelText(tick));
    QVERIFY2(labels.size() >= 2 && labels.size() <= 20, qPrintable(labels.join(u' ')));
    QCOMPARE(labels.removeDuplicates(), 0);
}

void ChartDocTest::scaleRoundTrip() {
    const PlotScale scale = {{-130.0, 130.0, 57.0, 420.0}, {-2.0, 14.0, 350.0, 60.0}};
    QCOMPARE(scale.ToPixels({-130.0, 14.0}), QPointF(57.0, 60.0));
    for (const QPointF place : {QPointF(-130, -2), QPointF(32.5, 3.25), QPointF(500, 40)})
        QVERIFY((scale.ToValues(scale.ToPixels(place)) - place).manhattanLength() < 1e-9);
    QCOMPARE(scale.y.ToPixel(1e300), -1e6);
}

void ChartDocTest::thinLineKeepsExtremes() {
    std::mt19937 random(1);
    std::vector<double> xs;
    std::vector<double> ys;
    for (int i = 0; i < 20000; ++i) {
        xs.push_back(i);
        ys.push_back(i % 97 == 0 ? (i % 2 != 0 ? kNaN : kInf)
                                 : static_cast<double>(random() % 1000) / 10.0);
    }
    const PlotScale scale = ScaleFor(20000.0);
    struct Column {
        QPointF first, last;
        double low = 1e9, high = -1e9;
        int points = 0;
    };
    const auto collect = [](std::map<int, Column>& columns, QPointF pixel) {
        Column& column = columns[static_cast<int>(std::floor(pixel.x()))];
        if (column.points++ == 0)
            column.first = pixel;
        column.last = pixel;
        column.low = std::min(column.low, pixel.y());
        column.high = std::max(column.high, pixel.y());
    };
    std::map<int, Column> all;
    for (size_t i = 0; i < xs.size(); ++i) {
        if (std::isfinite(ys[i]))
            collect(all, scale.ToPixels({xs[i], ys[i]}));
    }
    std::map<int, Column> kept;
    const std::vector<QPointF> line = ThinLine(xs, ys, scale);
    for (QPointF pixel : line)
        collect(kept, pixel);
    QVERIFY(std::is_sorted(line.begin(), line.end(),
                           [](QPointF a, QPointF b) { return a.x() < b.x(); }));
    QCOMPARE(kept.size(), all.size());
    for (const auto& [x, column] : all) {
        QVERIFY(kept[x].points <= 4);
        QCOMPARE(kept[x].first, column.first);
        QCOMPARE(kept[x].last, column.last);
        QCOMPARE(kept[x].low, column.low);
        QCOMPARE(kept[x].high, column.high);
    }
}

// Times without order cost no more, and their peaks are seen all the same.
void ChartDocTest::thinLineStaysSmall() {
    std::vector<double> xs;
    std::vector<double> ys;
    for (long long i = 0; i < 100000; ++i) {
        xs.push_back(static_cast<double>(i * 7919 % 100000));
        ys.push_back(i == 77777 ? 99.0 : static_cast<double>(i % 50));
    }
    const std::vector<QPointF> line = ThinLine(xs, ys, ScaleFor(100000.0));
    QVERIFY(line.size() <= 8 * 402);
    const QPointF peak = ScaleFor(100000.0).ToPixels({xs[77777], 99.0});
    QVERIFY(std::any_of(line.begin(), line.end(), [peak](QPointF point) {
        return std::abs(point.x() - peak.x()) <= 1.0 && point.y() == peak.y();
    }));

    // Few points stay as they are, in their order.
    const std::vector<QPointF> few =
        ThinLine(std::vector{50.0, 10.0, 90.0}, std::vector{1.0, 2.0, 3.0}, ScaleFor(100.0));
    QCOMPARE(few.size(), size_t{3});
    QCOMPARE(few[0].x(), 200.0);
    QCOMPARE(few[1].x(), 40.0);
}

void ChartDocTest::hits_data() {
    QTest::addColumn<bool>("bars");
    QTest::addColumn<QPointF>("pixels");
    QTest::addColumn<int>("item");
    // Points at pixels (40, 150), (44, 150), (44, 150) and (200, 0).
    QTest::newRow("near") << false << QPointF(36, 154) << 0;
    QTest::newRow("nearest") << false << QPointF(43, 151) << 1;
    QTest::newRow("lower row of two") << false << QPointF(48, 150) << 1;
    QTest::newRow("same distance") << false << QPointF(42, 150) << 0;
    QTest::newRow("too far") << false << QPointF(34, 145) << -1;
    QTest::newRow("top edge") << false << QPointF(200, 2) << 3;
    // Bars on x = 0 .. 3 with the ends at pixels 225, none, 300 and 330.
    QTest::newRow("in the bar") << true << QPointF(50, 280) << 0;
    QTest::newRow("above its end") << true << QPointF(50, 220) << 0;
    QTest::newRow("well above") << true << QPointF(50, 200) << -1;
    QTest::newRow("no value") << true << QPointF(150, 299) << -1;
    QTest::newRow("no height") << true << QPointF(250, 297) << 2;
    QTest::newRow("between bars") << true << QPointF(100, 280) << -1;
    QTest::newRow("below the axis") << true << QPointF(350, 320) << 3;
    QTest::newRow("left of all") << true << QPointF(-60, 280) << -1;
    QTest::newRow("right of all") << true << QPointF(450, 290) << -1;
}

void ChartDocTest::hits() {
    QFETCH(const bool, bars);
    QFETCH(const QPointF, pixels);
    CDocControl chart;
    PlotScale scale = ScaleFor(100.0);
    if (bars) {
        chart.display.form = DisplayForm::Bars;
        int item = 0;
        for (double value : {25.0, kInf, 0.0, -10.0})
            chart.SetValue(item++, 0, value);
        scale.x = {-0.5, 3.5, 0.0, 400.0};
    } else {
        chart = Points({{10, 50}, {11, 50}, {11, 50}, {50, 100}, {kNaN, 50}, {10, kInf}});
    }
    QTEST(HitItem(chart, scale, pixels).value_or(-1), "item");
}

QTEST_GUILESS_MAIN(ChartDocTest)
#include "ChartDocTest.moc"
