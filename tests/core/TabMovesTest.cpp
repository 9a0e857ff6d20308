#include "grid/TabMoves.h"

#include "VectorFile.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TabMovesTest : public QObject {
    Q_OBJECT

private slots:
    void Moves_data() { AddVectorRows("grid_keys"); }
    void Moves() {
        QFETCH(const QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        for (const auto& [move, expected] : VectorPairs(input[u"moves"], vector[u"expected"])) {
            std::optional<CellPosition> current;
            if (!move[1].isNull())
                current = CellPosition{move[1].toInt(), move[2].toInt()};
            const TabDirection direction =
                move[0].toString() == u"Tab" ? TabDirection::Forward : TabDirection::Backward;
            const std::optional<CellPosition> to =
                TabMove(VectorKind(input[u"kind"]), input[u"rows"].toInt(),
                        input[u"columns"].toInt(), current, direction);
            QVERIFY(to);
            QCOMPARE(to->row, expected[0].toInt());
            QCOMPARE(to->column, expected[1].toInt());
        }
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
        QCOMPARE(TabMove(ProfileKind::Function, 3, 2, CellPosition{0, 1}, TabDirection::Forward),
                 (CellPosition{1, 2}));
    }
};

QTEST_APPLESS_MAIN(TabMovesTest)
#include "TabMovesTest.moc"
