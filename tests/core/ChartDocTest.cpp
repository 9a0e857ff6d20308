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

// A chart that follows a table of its kind.
struct BoundChart {
    explicit BoundChart(int kind_number, const QStringList& texts = {})
        : table(static_cast<ProfileKind>(kind_number)) {
        if (!texts.isEmpty())
            table.ResetRows(texts, texts);
        if (kind_number < 0)
            control.BuildFunctionChart();
        else
            control.BuildProfileChart(static_cast<ProfileKind>(kind_number));
        control.Attach(&table, static_cast<ProfileKind>(kind_number));
    }

    ProfileTable table;
    CGraphControl control;
    const CDocControl& document = control.document();
};

}  // namespace

class ChartDocTest : public QObject {
    Q_OBJECT

private slots:
    void profileChart_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<double>("title_height");
        QTest::addColumn<double>("step");
        QTest::addColumn<QString>("titles");
        QTest::addColumn<int>("items");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("last_label");
        QTest::addColumn<bool>("upright");
        const double fifth = double{0.2F};
        QTest::newRow("annual") << 0 << 11.0 << fifth
                                << u"Coefficient Multiplicateur|Mois de l'année"_s << 12 << 1.0
                                << u"Décembre"_s << false;
        QTest::newRow("monthly") << 1 << 22.0 << 250.0
                                 << u"Besoin journalier moyen l/j|Mois de l'année"_s << 12 << 1800.0
                                 << u"Décembre"_s << false;
        QTest::newRow("weekly") << 2 << 22.0 << 20.0
                                << u"Besoin journalier moyen en l/j|Jours de la Semaine"_s << 7
                                << 100.0 << u"Dimanche"_s << false;
        QTest::newRow("daily") << 3 << 11.0 << fifth
                               << u"Coefficient Horaire|Heures de la Journée"_s << 24 << 1.0
                               << u"23 h"_s << true;
        QTest::newRow("unknown") << 9 << 11.0 << 0.0 << u"|"_s << 12 << kNaN << u""_s << false;
    }
    void profileChart() {
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

    void chartColours() {
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

        // The point style leaves the other flags.
        control.BuildProfileChart(ProfileKind::Daily);
        control.ApplyPointStyle();
        QCOMPARE(chart.StyleOf(23).flags, ItemStyle::kUprightLabel | 0xC00U);
        QCOMPARE(chart.StyleOf(23).width, 2);
    }

    void followsTable_data() {
        QTest::addColumn<int>("kind");
        QTest::newRow("function") << -1;
        QTest::newRow("monthly") << 1;
    }
    // Any sequence of changes leaves the chart equal to the table.
    void followsTable() {
        QFETCH(const int, kind);
        std::mt19937 random(static_cast<unsigned>(kind + 20));
        const auto below = [&random](int end) {
            return static_cast<int>(random() % static_cast<unsigned>(end));
        };
        const auto text = [&] {
            static const QStringList odd = {u""_s, u"abc"_s, u"inf"_s, u"1e999"_s, u"1.5abc"_s};
            return below(5) == 0 ? odd[below(5)] : QString::number(below(1000) - 500);
        };
        BoundChart chart(kind);
        ProfileTable& table = chart.table;
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
            QCOMPARE(Difference(chart.document, table), QString());
        }
    }

    void editsMoveOnlyWhatTheyTouch() {
        BoundChart chart(-1, {u"1"_s, u"2"_s, u"3"_s});
        QSignalSpy rebuilt(&chart.control, &CGraphControl::Rebuilt);
        QSignalSpy changed(&chart.control, &CGraphControl::ItemsChanged);
        chart.table.SetCellText(2, 2, u"7.5"_s);
        QCOMPARE(chart.document.Place(1), QPointF(2.0, 7.5));
        QCOMPARE(changed, (QList<QVariantList>{{1, 1}}));
        QCOMPARE(rebuilt.size(), 0);
        chart.control.BuildFunctionChart();
        QCOMPARE(Difference(chart.document, chart.table), QString());

        // The highlight stays with its row.
        changed.clear();
        chart.control.SetHighlighted(1, true);
        QCOMPARE(changed, (QList<QVariantList>{{1, 1}}));
        chart.control.SetHighlighted(-1, true);
        chart.control.SetHighlighted(3, true);
        QCOMPARE(chart.document.Highlighted().size(), size_t{1});
        chart.table.InsertRow(1, u"0"_s, u"0"_s);
        QVERIFY(chart.document.IsHighlighted(2) && !chart.document.IsHighlighted(1));
        chart.table.RemoveRows({1, 2});
        QVERIFY(chart.document.IsHighlighted(0));
        chart.table.RemoveRows({1});
        QVERIFY(chart.document.Highlighted().empty());
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

    void axis_data() {
        QTest::addColumn<double>("interval");
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::addColumn<double>("multiple");  // of the interval between labels; 0 when automatic
        QTest::newRow("coefficients") << double{0.2F} << 0.0 << 1.4 << 1.0;
        QTest::newRow("large coefficient") << double{0.2F} << 0.0 << 12.0 << 5.0;
        QTest::newRow("large needs") << 250.0 << 0.0 << 99999.0 << 50.0;
        QTest::newRow("enormous needs") << 250.0 << 0.0 << 1e300 << -1.0;
        QTest::newRow("negative") << 20.0 << -50.0 << 100.0 << 1.0;
        QTest::newRow("points") << 0.0 << -3.0 << 17.0 << 0.0;
        QTest::newRow("one value") << 0.0 << 5.0 << 5.0 << 0.0;
        QTest::newRow("only zero") << 0.0 << 0.0 << 0.0 << 0.0;
        QTest::newRow("widest") << 0.0 << -1.7e308 << 1.7e308 << 0.0;
        QTest::newRow("tiny") << 0.0 << 0.0 << 5e-324 << 0.0;
        QTest::newRow("close and far off") << 0.0 << 1e15 << 1e15 + 0.25 << 0.0;
    }
    // An axis has finite limits with room beyond the data, and few labels that can be told apart.
    void axis() {
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
        const std::vector<QPointF> line = ThinLine(xs, ys, scale);
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

    void hits_data() {
        QTest::addColumn<bool>("bars");
        QTest::addColumn<QPointF>("pixels");
        QTest::addColumn<int>("item");
        // Points at pixels (40, 150), (44, 150), (44, 150) and (200, 0).
        QTest::newRow("nearest") << false << QPointF(43, 151) << 1;
        QTest::newRow("lower row of two") << false << QPointF(48, 150) << 1;
        QTest::newRow("same distance") << false << QPointF(42, 150) << 0;
        QTest::newRow("too far") << false << QPointF(34, 145) << -1;
        QTest::newRow("top edge") << false << QPointF(200, 2) << 3;
        // Bars on x = 0 .. 3 with the ends at pixels 225, none, 300 and 330.
        QTest::newRow("above its end") << true << QPointF(50, 220) << 0;
        QTest::newRow("well above") << true << QPointF(50, 200) << -1;
        QTest::newRow("no value") << true << QPointF(150, 299) << -1;
        QTest::newRow("no height") << true << QPointF(250, 297) << 2;
        QTest::newRow("between bars") << true << QPointF(100, 280) << -1;
        QTest::newRow("below the axis") << true << QPointF(350, 320) << 3;
        QTest::newRow("left of all") << true << QPointF(-60, 280) << -1;
    }
    void hits() {
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
            chart.ClearItems(2);
            int item = 0;
            for (QPointF point : {QPointF(10, 50), QPointF(11, 50), QPointF(11, 50),
                                  QPointF(50, 100), QPointF(kNaN, 50), QPointF(10, kInf)}) {
                chart.SetValue(item, 0, point.x());
                chart.SetValue(item++, 1, point.y());
            }
        }
        QTEST(HitItem(chart, scale, pixels).value_or(-1), "item");
    }
};

QTEST_GUILESS_MAIN(ChartDocTest)
#include "ChartDocTest.moc"
