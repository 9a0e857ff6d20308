#include "TestRows.h"
#include "profiles/EditHistory.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// The row of `from` becomes the row of `to`.
void Restore(QList<RowState>& rows, const RowState& from, const RowState& to) {
    rows.move(from.row, to.row);
    rows[to.row] = to;
    for (qsizetype i = 0; i < rows.size(); ++i)
        rows[i].row = static_cast<int>(i);
}

QStringList ValuesOf(const QList<RowState>& rows) {
    QStringList values;
    for (const RowState& row : rows)
        values += row.value;
    return values;
}

}  // namespace

class EditHistoryTest : public QObject {
    Q_OBJECT

private slots:
    // Beside the plain history: all states there were, the one shown, and how far back undo may go.
    void againstStates_data() { AddKinds(); }
    void againstStates() {
        QFETCH(ProfileKind, row);
        const bool snapshots = Describe(row).coefficients;
        QRandomGenerator random(1);
        const auto text = [&random] {
            static const QStringList texts =
                Texts(u"-1|-1.00|1|1.0|1.50||abc|1,5|1e3|0.30000000004"_s);
            return texts[random.bounded(texts.size())];
        };
        QList<RowState> rows(7);
        for (int i = 0; i < 7; ++i)
            rows[i] = {i, QString::number(i), u"1.00"_s, u"unknown"_s};
        QList<QList<RowState>> states = {rows};
        qsizetype shown = 0;
        qsizetype oldest = 0;
        EditHistory history(row);
        enum { Edit, RefusedEdit, Undo, Redo } action = Edit;
        for (int i = 0, left = 0; i < 20000; ++i, --left) {
            // Runs of the same action, so that both ends of the history are reached often.
            if (left == 0) {
                left = random.bounded(1, 10);
                action = static_cast<decltype(action)>(random.bounded(4));
            }
            const RowState before = rows[random.bounded(7)];
            RowState after = before;
            if (action == Edit) {
                after.value = text();
                if (row == ProfileKind::Function)
                    after.row = random.bounded(7);
                if (!snapshots)
                    (row == ProfileKind::Function ? after.label : after.name) = text();
            }
            if (action <= RefusedEdit) {
                if (!snapshots)
                    history.PushStep({before, after});
                else if (action == Edit)
                    history.PushSnapshot(ValuesOf(rows));
                Restore(rows, before, after);
                if (before != after || (snapshots && action == Edit)) {
                    states.resize(++shown);
                    states.append(rows);
                    oldest = std::max(oldest, shown - (snapshots ? 6 : 12));
                }
            } else {
                const bool back = action == Undo;
                const bool can = back ? shown > oldest : shown + 1 < states.size();
                if (snapshots) {
                    const auto column =
                        back ? history.UndoSnapshot(ValuesOf(rows)) : history.RedoSnapshot();
                    QCOMPARE(column.has_value(), can);
                    for (qsizetype k = 0; can && k < rows.size(); ++k)
                        rows[k].value = column->at(k);
                } else {
                    const auto step = back ? history.UndoStep() : history.RedoStep();
                    QCOMPARE(step.has_value(), can);
                    if (can)
                        Restore(rows, back ? step->after : step->before,
                                back ? step->before : step->after);
                }
                shown += !can ? 0 : back ? -1 : 1;
            }
            QVERIFY(rows == states[shown]);
            QCOMPARE(history.CanUndo(), shown > oldest);
            QCOMPARE(history.CanRedo(), shown + 1 < states.size());
        }
    }

    void reset() {
        EditHistory history(ProfileKind::Annual);
        history.PushSnapshot({u"1"_s});
        history.PushSnapshot({u"2"_s});
        history.UndoSnapshot({u"3"_s});
        history.Reset();
        QVERIFY(!history.CanUndo() && !history.CanRedo());
        QCOMPARE(history.Table(), EditHistory(ProfileKind::Annual).Table());
    }

    void tableOfSnapshots() {
        EditHistory history(ProfileKind::Daily);
        for (int i = 0; i < 7; ++i)
            history.PushSnapshot(QStringList(24, QString::number(i)));
        const EditHistory::FloatTable table = history.Table();
        for (size_t row = 0; row < table.size(); ++row) {
            QCOMPARE(table[row].front(), static_cast<float>(row) + 1.0F);
            QCOMPARE(table[row].back(), static_cast<float>(row) + 1.0F);
        }
    }

    void tableOfSteps() {
        EditHistory history(ProfileKind::Weekly);
        history.PushStep(
            {{2, u"Mercredi"_s, u"100"_s, u"b"_s}, {2, u"Mercredi"_s, u"90"_s, u"x"_s}});
        const EditHistory::FloatTable table = history.Table({u"a"_s, u"b"_s});
        const QList<float> expected = {2.0F, 1.0F, 100.0F, 2.0F, -1.0F, 90.0F};
        for (size_t row = 0; row < table.size(); ++row) {
            QCOMPARE(table[row][0], expected[static_cast<qsizetype>(row)]);
            QCOMPARE(table[row][1], EditHistory::kEmptySlot);
        }
    }
};

QTEST_APPLESS_MAIN(EditHistoryTest)
#include "EditHistoryTest.moc"
