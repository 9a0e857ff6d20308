#include "VectorFile.h"
#include "app/EnglishAtof.h"
#include "profiles/Coefficients.h"
#include "profiles/NumberText.h"

#include <QRandomGenerator>
#include <QTest>

class CoefficientsTest : public QObject {
    Q_OBJECT

private slots:
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
        if (expected[u"adjusted"].isNull())  // a sum of 0 leaves no number
            QCOMPARE(adjusted, QStringList(column.size(), QStringLiteral("nan")));
        else
            QCOMPARE(adjusted, VectorStrings(expected[u"adjusted"]));
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

    void rebalancedMeanIsOne() {
        QRandomGenerator random(1);
        for (int round = 0; round < 4000; ++round) {
            const ProfileKind kind = round % 2 == 0 ? ProfileKind::Annual : ProfileKind::Daily;
            const int rows = CoefficientCount(kind);
            QStringList column;
            for (int i = 0; i < rows; ++i)
                column += FormatValue(static_cast<float>(random.bounded(300)) / 100.0F, 2);
            const int index = random.bounded(rows);
            const float value = static_cast<float>(random.bounded(1100)) / 100.0F;
            const QStringList settled =
                SettleRemainder(kind, RebalanceCoefficients(kind, column, index, value));
            QVERIFY2(SumIsRight(kind, RoundedSum(kind, settled)),
                     qPrintable(column.join(u' ') + QStringLiteral(" -> ") + settled.join(u' ')));
        }
    }
};

QTEST_APPLESS_MAIN(CoefficientsTest)
#include "CoefficientsTest.moc"
