// SPDX-License-Identifier: GPL-3.0-or-later
// Rules without a state of their own: numbers, coefficients, entries, names of files, copy and
// paste, the mouse on the chart and the parts of a button. All under a locale with a decimal comma
// where the machine has one.

#include "Rules.h"
#include "base/ColourContrast.h"
#include "base/EnglishAtof.h"
#include "base/NumberText.h"
#include "grid/TabMoves.h"
#include "profiles/Calculation.h"
#include "profiles/Coefficients.h"
#include "profiles/InsertPoints.h"
#include "profiles/PointFile.h"
#include "profiles/PointSeries.h"

#include <QJsonDocument>
#include <QLocale>
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
        QTest::addColumn<Rule>("rule");
        QTest::addColumn<QJsonObject>("vector");
        for (const Rule& rule : EntryRules() + PointRules() + ChartRules()) {
            const QList<QJsonObject> cases = VectorCases(rule.file, rule.key);
            QVERIFY2(!cases.isEmpty(), rule.file);
            for (const QJsonObject& one : cases)
                QTest::addRow("%s, %s", rule.file, qPrintable(one[u"name"].toString()))
                    << rule << one;
        }
    }
    // A case is one input, or a list of them with a list of results.
    void Rules() {
        QFETCH(const Rule, rule);
        QFETCH(const QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        QList<std::pair<QJsonValue, QJsonValue>> pairs = {{{}, vector[u"expected"]}};
        if (rule.results != nullptr)
            pairs = VectorPairs(input[QLatin1StringView(rule.key)],
                                vector[u"expected"][QLatin1StringView(rule.results)]);
        else if (vector[u"expected"].isArray())
            pairs = VectorPairs(input[QLatin1StringView(rule.key)], vector[u"expected"]);
        for (const auto& [one, expected] : pairs) {
            const QJsonValue result = rule.result(one, input);
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
                QCOMPARE(CalculateNumbers(one, ParseNumbers(function.values), rows),
                         ParseNumbers(result));
                for (int i = 0; i < count; ++i) {
                    const double x = points[static_cast<size_t>(i)].second;
                    const double y = one.operation == Operation::Multiply ? x * low
                                     : one.operation == Operation::Add
                                         ? x + low
                                         : std::min(std::max(x, low), low + 50.0);
                    QCOMPARE(ParseNumber(result[i]), rows.contains(i) ? y : x);
                }
            }
            const std::vector<double> times = ParseNumbers(function.times);
            const std::vector<double> values = ParseNumbers(function.values);
            const Calculation line = {.operation = Operation::Linear};
            const auto on_line = Calculate(line, function.values, rows, function.times);
            const auto shown_line = CalculateNumbers(line, values, rows, times);
            for (int i = 0; i < count; ++i)
                QVERIFY(std::abs(ParseNumber(std::get<QStringList>(on_line)[i]) -
                                 shown_line[static_cast<size_t>(i)]) < 1e-9);
            const SeriesPlan plan = {-1.0, 0.25, 140, SeriesShape::Interpolated};
            const PointTexts resampled = MakeSeries(plan, function).value();
            const auto merged =
                MergePoints({times, values}, SeriesNumbers(plan, {times, values}).value());
            QCOMPARE(merged.times, ParseNumbers(InsertPoints(function, resampled).points.times));
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
