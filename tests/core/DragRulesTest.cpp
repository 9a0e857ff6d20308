#include "chart/DragRules.h"

#include "VectorFile.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QPointF PointOf(const QJsonValue& value) {
    return {value[0].toDouble(), value[1].toDouble()};
}

}  // namespace

class DragRulesTest : public QObject {
    Q_OBJECT

private slots:
    void Tip_data() { AddVectorRows("chart", "tip"); }
    void Tip() {
        QFETCH(const QJsonObject, vector);
        for (const auto& [row, tip] : VectorPairs(vector[u"input"][u"tip"], vector[u"expected"])) {
            const ProfileKind kind = VectorKind(row[0]);
            QCOMPARE(
                kind == ProfileKind::Function
                    ? FunctionTip(row[1].toString().toDouble(), row[2].toString().toDouble())
                    : ProfileTip(kind, row[1].toString(), row[2].toString(), row[3].toString()),
                tip.toString());
        }
    }

    void Drag_data() { AddVectorRows("chart", "drag"); }
    void Drag() {
        QFETCH(const QJsonObject, vector);
        for (const auto& [drag, expected] :
             VectorPairs(vector[u"input"][u"drag"], vector[u"expected"])) {
            const auto stored = AcceptDrag(VectorKind(drag[0]), drag[1].toString().toDouble());
            QCOMPARE(stored.has_value(), expected[u"accepted"].toBool());
            if (stored) {
                QCOMPARE(stored->text, expected[u"text"].toString());
                QCOMPARE(stored->value, expected[u"text"].toString().toDouble());
            }
        }
    }

    void Cut() {
        const std::pair<double, double> cases[] = {
            {0.29, 0.29},         // a hundredth just below itself
            {1.0799951, 1.08},    // within the slack below
            {1.079994, 1.07},     // beyond it
            {-0.2899951, -0.29},  // within the slack, negative
            {-0.289994, -0.28}};  // beyond it
        for (const auto& [value, cut] : cases)
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
        const QJsonValue input = vector[u"input"];
        QList<QPointF> points;
        const QJsonArray rows = input[u"rows"].toArray();
        for (const QJsonValue& row : rows)
            points.append(PointOf(row));
        for (const auto& [press, expected] : VectorPairs(input[u"pick"], vector[u"expected"])) {
            const auto picked = PickPoint(points, PointOf(press));
            QCOMPARE(picked.has_value(), !expected.isNull());
            QCOMPARE(picked.value_or(-1) + 1, expected.toInt());
        }
    }

    // The bounds hold although no axis value comes out of a pixel exactly.
    void PickBounds() {
        const std::pair<QPointF, bool> cases[] = {{{0.1 - 3.6, 0.2}, false},       // left, open
                                                  {{0.1 + 3.0, 0.2}, true},        // right, closed
                                                  {{0.1, 0.2 - 2.6}, false},       // below, open
                                                  {{0.1, 0.2 + 2.1}, true},        // above, closed
                                                  {{0.1 - 3.59999, 0.2}, true},    // left, inside
                                                  {{0.1, 0.2 + 2.10001}, false}};  // above, outside
        for (const auto& [press, picked] : cases)
            QCOMPARE(PickPoint({QPointF(0.1, 0.2)}, press).has_value(), picked);
    }
};

QTEST_APPLESS_MAIN(DragRulesTest)
#include "DragRulesTest.moc"
