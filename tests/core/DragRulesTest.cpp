#include "chart/DragRules.h"

#include "VectorFile.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

ProfileKind KindOf(const QJsonValue& value) {
    return static_cast<ProfileKind>(value.toInt());
}

QPointF PointOf(const QJsonValue& value) {
    return {value.toArray()[0].toDouble(), value.toArray()[1].toDouble()};
}

}  // namespace

class DragRulesTest : public QObject {
    Q_OBJECT

private slots:
    void Tip_data() { AddVectorRows("chart", "tip"); }
    void Tip() {
        QFETCH(const QJsonObject, vector);
        QStringList tips;
        const QJsonArray rows = vector[u"input"].toObject()[u"tip"].toArray();
        for (const QJsonValue& value : rows) {
            const QJsonArray row = value.toArray();
            const ProfileKind kind = KindOf(row[0]);
            tips.append(
                kind == ProfileKind::Function
                    ? FunctionTip(row[1].toString().toDouble(), row[2].toString().toDouble())
                    : ProfileTip(kind, row[1].toString(), row[2].toString(), row[3].toString()));
        }
        QCOMPARE(tips, VectorStrings(vector[u"expected"]));
    }

    void Drag_data() { AddVectorRows("chart", "drag"); }
    void Drag() {
        QFETCH(const QJsonObject, vector);
        const QJsonArray drags = vector[u"input"].toObject()[u"drag"].toArray();
        const QJsonArray results = vector[u"expected"].toArray();
        QCOMPARE(drags.size(), results.size());
        for (qsizetype i = 0; i < drags.size(); ++i) {
            const QJsonArray drag = drags[i].toArray();
            const QJsonObject expected = results[i].toObject();
            const auto stored = AcceptDrag(KindOf(drag[0]), drag[1].toString().toDouble());
            QCOMPARE(stored.has_value(), expected[u"accepted"].toBool());
            if (stored) {
                QCOMPARE(stored->text, expected[u"text"].toString());
                QCOMPARE(stored->value, expected[u"text"].toString().toDouble());
            }
        }
    }

    void Cut_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("cut");
        QTest::newRow("a hundredth just below itself") << 0.29 << 0.29;
        QTest::newRow("within the slack below") << 1.0799951 << 1.08;
        QTest::newRow("beyond the slack below") << 1.079994 << 1.07;
        QTest::newRow("within the slack, negative") << -0.2899951 << -0.29;
        QTest::newRow("beyond the slack, negative") << -0.289994 << -0.28;
    }
    void Cut() {
        QFETCH(const double, value);
        QFETCH(const double, cut);
        QCOMPARE(CutToHundredths(value), cut);
    }

    void Refused() {
        const double infinity = std::numeric_limits<double>::infinity();
        for (const double value : {infinity, -infinity, std::nan(""), 1e300})
            QVERIFY(!AcceptDrag(ProfileKind::Function, value));
        QVERIFY(!AcceptDrag(static_cast<ProfileKind>(7), 1.0));
        const auto zero = AcceptDrag(ProfileKind::Annual, -0.004);
        QVERIFY(zero);
        QCOMPARE(zero->text, u"0.00"_s);
    }

    void Pick_data() { AddVectorRows("chart", "pick"); }
    void Pick() {
        QFETCH(const QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        QList<QPointF> points;
        const QJsonArray rows = input[u"rows"].toArray();
        for (const QJsonValue& row : rows)
            points.append(PointOf(row));
        const QJsonArray presses = input[u"pick"].toArray();
        const QJsonArray expected = vector[u"expected"].toArray();
        QCOMPARE(presses.size(), expected.size());
        for (qsizetype i = 0; i < presses.size(); ++i) {
            const auto picked = PickPoint(points, PointOf(presses[i]));
            QCOMPARE(picked.has_value(), !expected[i].isNull());
            if (picked)
                QCOMPARE(*picked + 1, qsizetype{expected[i].toInt()});
        }
    }

    // The bounds hold although no axis value comes out of a pixel exactly.
    void PickBounds_data() {
        QTest::addColumn<QPointF>("press");
        QTest::addColumn<bool>("picked");
        QTest::newRow("left, open") << QPointF(0.1 - 3.6, 0.2) << false;
        QTest::newRow("right, closed") << QPointF(0.1 + 3.0, 0.2) << true;
        QTest::newRow("below, open") << QPointF(0.1, 0.2 - 2.6) << false;
        QTest::newRow("above, closed") << QPointF(0.1, 0.2 + 2.1) << true;
        QTest::newRow("left, inside") << QPointF(0.1 - 3.59999, 0.2) << true;
        QTest::newRow("above, outside") << QPointF(0.1, 0.2 + 2.10001) << false;
    }
    void PickBounds() {
        QFETCH(const QPointF, press);
        QFETCH(const bool, picked);
        QCOMPARE(PickPoint({QPointF(0.1, 0.2)}, press).has_value(), picked);
    }
};

QTEST_APPLESS_MAIN(DragRulesTest)
#include "DragRulesTest.moc"
