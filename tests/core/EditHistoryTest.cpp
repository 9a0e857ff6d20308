// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/EditHistory.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// The step that makes the value `from` the next number, and the column with one value.
HistoryStep Step(int from) {
    return {{0, u"0"_s, QString::number(from), {}}, {0, u"0"_s, QString::number(from + 1), {}}};
}
QStringList Column(int value) {
    return {QString::number(value)};
}

}  // namespace

class EditHistoryTest : public QObject {
    Q_OBJECT

private slots:
    void steps() {
        EditHistory history(ProfileKind::Monthly);
        for (int value = 0; value < 14; ++value) {
            history.PushStep(Step(value));
            history.PushStep({Step(value).after, Step(value).after});  // changes nothing
        }
        for (int round = 0; round < 2; ++round) {
            for (int value = 13; value >= 2; --value)
                QVERIFY(history.UndoStep() == Step(value));
            QVERIFY(!history.CanUndo() && !history.UndoStep());
            for (int value = 2; value <= 13; ++value)
                QVERIFY(history.RedoStep() == Step(value));
            QVERIFY(!history.CanRedo() && !history.RedoStep());
        }
        // A new step takes the place of those that were undone.
        for (int value = 13; value >= 10; --value)
            QVERIFY(history.UndoStep());
        history.PushStep(Step(50));
        QVERIFY(!history.CanRedo() && history.UndoStep() == Step(50));
        QVERIFY(history.UndoStep() == Step(9) && history.RedoStep() && history.CanRedo());
        QVERIFY(history.RedoStep() == Step(50));
    }

    void snapshots() {
        EditHistory history(ProfileKind::Daily);
        for (int value = 0; value < 8; ++value)
            history.PushSnapshot(Column(value));
        for (int round = 0; round < 2; ++round) {
            for (int value = 7; value >= 2; --value)
                QVERIFY(history.UndoSnapshot(Column(value + 1)) == Column(value));
            QVERIFY(!history.CanUndo() && !history.UndoSnapshot(Column(2)));
            for (int value = 3; value <= 8; ++value)
                QVERIFY(history.RedoSnapshot() == Column(value));
            QVERIFY(!history.CanRedo() && !history.RedoSnapshot());
        }
        for (int value = 7; value >= 5; --value)
            QVERIFY(history.UndoSnapshot(Column(value + 1)));
        history.PushSnapshot(Column(5));
        QVERIFY(!history.CanRedo() && history.UndoSnapshot(Column(50)) == Column(5));
        QVERIFY(history.UndoSnapshot(Column(5)) == Column(4));
        QVERIFY(history.RedoSnapshot() == Column(5) && history.RedoSnapshot() == Column(50));
        history.Reset();
        QVERIFY(!history.CanUndo() && !history.CanRedo());
        QCOMPARE(history.Table(), EditHistory(ProfileKind::Daily).Table());
    }

    // The floats of both kinds of history: a row each for six snapshots, a slot each for steps.
    void tables() {
        EditHistory daily(ProfileKind::Daily);
        for (int i = 0; i < 7; ++i)
            daily.PushSnapshot(QStringList(24, QString::number(i)));
        EditHistory weekly(ProfileKind::Weekly);
        weekly.PushStep(
            {{2, u"Mercredi"_s, u"100"_s, u"b"_s}, {2, u"Mercredi"_s, u"90"_s, u"x"_s}});
        const EditHistory::FloatTable columns = daily.Table();
        const EditHistory::FloatTable steps = weekly.Table({u"a"_s, u"b"_s});
        const float before_and_after[] = {2.0F, 1.0F, 100.0F, 2.0F, -1.0F, 90.0F};
        for (size_t row = 0; row < steps.size(); ++row) {
            QCOMPARE(columns[row].front(), static_cast<float>(row) + 1.0F);
            QCOMPARE(columns[row].back(), static_cast<float>(row) + 1.0F);
            QCOMPARE(steps[row][0], before_and_after[row]);
            QCOMPARE(steps[row][1], EditHistory::kEmptySlot);
        }
    }
};

QTEST_APPLESS_MAIN(EditHistoryTest)
#include "EditHistoryTest.moc"
