#include "VectorFile.h"
#include "base/EnglishAtof.h"
#include "base/NumberText.h"
#include "profiles/Coefficients.h"

#include <QLocale>
#include <QTest>

#include <clocale>
#include <cmath>
#include <limits>

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
const float kNaN = std::numeric_limits<float>::quiet_NaN();

}  // namespace

// All of it runs under a locale with a decimal comma where the machine has one.
class NumbersTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QLocale::setDefault(QLocale(QLocale::French));
        for (const char* locale : {"fr_FR.UTF-8", "de_DE.UTF-8", "fr_FR", "French"}) {
            if (std::setlocale(LC_ALL, locale) != nullptr)
                break;
        }
    }

    void atof_data() { AddVectorRows("numbers", "atof"); }
    void atof() {
        QFETCH(QJsonObject, vector);
        for (const auto& [text, value] :
             VectorPairs(vector[u"input"][u"atof"], vector[u"expected"]))
            QCOMPARE(double{EnglishAtof(text.toString())}, value.toDouble());
    }

    void format_data() { AddVectorRows("numbers", "format"); }
    void format() {
        QFETCH(QJsonObject, vector);
        for (const auto& [input, text] :
             VectorPairs(vector[u"input"][u"format"], vector[u"expected"]))
            QCOMPARE(FormatValue(EnglishAtof(input[0].toString()), input[1].toInt()),
                     text.toString());
    }

    void round2_data() { AddVectorRows("numbers", "round2"); }
    void round2() {
        QFETCH(QJsonObject, vector);
        for (const auto& [input, text] :
             VectorPairs(vector[u"input"][u"round2"], vector[u"expected"]))
            QCOMPARE(FormatValue(Round2(EnglishAtof(input.toString())), 2), text.toString());
    }

    void extremes() {
        const std::pair<QString, const char*> cases[] = {
            {FormatValue(3e9F, 0), "3000000000"},
            {FormatValue(std::numeric_limits<float>::max(), 4),
             "340282346638528859811704183484516925440.0000"},
            {FormatValue(-kInfinity, 0), "-inf"},
            {FormatValue(std::copysign(kNaN, -1.0F), 2), "nan"},
            {FormatValue(-0.5F, 0), "0"},
            {FormatValue(RoundWhole(16777217e3F), 0), "16777217024"},
            {FormatValue(RoundWhole(kInfinity), 0), "inf"},
            {FormatValue(Round2(kNaN), 0), "nan"},
            {NumberText13(1.0 / 3.0), "0.3333333333333"},
            {NumberText13(1500.50), "1500.5"},
            {NumberText13(-1e300), "-1e+300"},
            {NumberText13(ParseNumber(QString(400, u'1'))), "inf"},
            {NumberText13(ParseNumber(QString(400, u'0') + QStringLiteral("1.5"))), "1.5"},
            {RewrittenNumber(QStringLiteral("1e-400")), "1e-400"},
            {RewrittenNumber(QStringLiteral("2.50e-320")), "2.50e-320"},
            {RewrittenNumber(QStringLiteral("0.00e-400")), "0"},
            {NumberText7(double{0.1F}), "0.1"},
            {NumberText7(123456789.0), "1.234568e+08"},
            {NumberText7(0.00001), "1e-05"},
            {NumberText7(-std::nan("")), "nan"}};
        for (const auto& [result, expected] : cases)
            QCOMPARE(result, QLatin1StringView(expected));
    }

    void adjust_data() { AddVectorRows("coefficients"); }
    void adjust() {
        QFETCH(QJsonObject, vector);
        const ProfileKind kind = VectorKind(vector[u"input"][u"kind"]);
        const QStringList column = VectorStrings(vector[u"input"][u"column"]);
        const QJsonObject expected = vector[u"expected"].toObject();

        const float sum = RoundedSum(kind, column);
        QCOMPARE(FormatValue(sum, 2), expected[u"S"].toString());
        QCOMPARE(SumIsRight(kind, sum), expected[u"question"].isNull());
        if (SumIsRight(kind, sum))
            return;
        QCOMPARE(AdjustQuestion(kind, sum), expected[u"question"].toString());
        const QStringList adjusted = AdjustCoefficients(kind, column, sum);
        QCOMPARE(adjusted,
                 expected[u"adjusted"].isNull() ? column : VectorStrings(expected[u"adjusted"]));
    }

    void rebalance_data() { AddVectorRows("rebalance"); }
    void rebalance() {
        QFETCH(QJsonObject, vector);
        const ProfileKind kind = VectorKind(vector[u"input"][u"kind"]);
        const QJsonObject input = vector[u"input"].toObject();
        const QStringList rebalanced =
            RebalanceCoefficients(kind, VectorStrings(input[u"column"]), input[u"index"].toInt(),
                                  EnglishAtof(input[u"value"].toString()));
        QCOMPARE(rebalanced, VectorStrings(vector[u"expected"][u"rebalanced"]));
        QCOMPARE(SettleRemainder(kind, rebalanced), VectorStrings(vector[u"expected"][u"settled"]));
    }

    // Sums that are not finite, and one that is so small that a value would not stay finite.
    void adjustWithoutFiniteValues() {
        for (const char* const text : {"1e38", "3e38", "-3e38", "1e-43"}) {
            const QStringList column(24, QLatin1StringView(text));
            const float sum = RoundedSum(ProfileKind::Daily, column);
            QCOMPARE(AdjustCoefficients(ProfileKind::Daily, column, sum), column);
        }
        const QStringList column = {QStringLiteral("1e30"), QStringLiteral("-1e30")};
        QCOMPARE(AdjustCoefficients(ProfileKind::Daily, column, 1e-20F), column);
        const QStringList large(12, QStringLiteral("3e38"));
        QCOMPARE(SettleRemainder(ProfileKind::Annual, large), large);
    }

    void rebalanceWithoutFiniteFactor() {
        // The others sum to a number above 0 that 12 cannot be divided by in single precision.
        QStringList column(12, QStringLiteral("0.00"));
        column[3] = QStringLiteral("1e-40");
        QStringList expected(12, QStringLiteral("1.00"));
        QCOMPARE(RebalanceCoefficients(ProfileKind::Annual, column, 0, 1.0F), expected);
    }

    void settleWithoutSmallestRow() {
        const QStringList column = {QStringLiteral("13.00")};
        QCOMPARE(SettleRemainder(ProfileKind::Daily, column), column);
    }
};

QTEST_APPLESS_MAIN(NumbersTest)
#include "NumbersTest.moc"
