#include "profiles/EditHistory.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

// The plain history: all states there were, the one shown, and how far back undo may go.
template <typename State>
class StateList {
public:
    StateList(const State& first, qsizetype depth) : m_states({first}), m_depth(depth) {}

    const State& Shown() const { return m_states[m_shown]; }
    bool CanUndo() const { return m_shown > m_oldest; }
    bool CanRedo() const { return m_shown + 1 < m_states.size(); }
    void Undo() { m_shown -= CanUndo() ? 1 : 0; }
    void Redo() { m_shown += CanRedo() ? 1 : 0; }
    void Edit(const State& state) {
        m_states.resize(++m_shown);
        m_states.append(state);
        m_oldest = std::max(m_oldest, m_shown - m_depth);
    }

private:
    QList<State> m_states;
    qsizetype m_depth;
    qsizetype m_shown = 0;
    qsizetype m_oldest = 0;
};

enum class Action { Edit, Undo, Redo, RefusedEdit };

// Runs of the same action, so that both ends of the history are reached often.
class Actions {
public:
    explicit Actions(quint32 seed) : m_random(seed) {}

    Action Next() {
        if (m_left == 0) {
            m_left = m_random.bounded(1, 10);
            m_action = static_cast<Action>(m_random.bounded(4));
        }
        --m_left;
        return m_action;
    }
    int Below(qsizetype end) { return static_cast<int>(m_random.bounded(end)); }
    QString Text() {
        static const QStringList texts = {
            u"-1"_s, u"-1.00"_s, u"1"_s,   u"1.0"_s, u"1.50"_s,
            u""_s,   u"abc"_s,   u"1,5"_s, u"1e3"_s, u"0.30000000004"_s};
        return texts[Below(texts.size())];
    }

private:
    QRandomGenerator m_random;
    Action m_action = Action::Edit;
    int m_left = 0;
};

// The row of `from` becomes the row of `to`.
void Restore(QList<RowState>& rows, const RowState& from, const RowState& to) {
    rows.move(from.row, to.row);
    rows[to.row] = to;
    for (qsizetype i = 0; i < rows.size(); ++i)
        rows[i].row = static_cast<int>(i);
}

void AddKinds(std::initializer_list<ProfileKind> kinds) {
    QTest::addColumn<ProfileKind>("kind");
    for (const ProfileKind kind : kinds)
        QTest::addRow("kind %d", static_cast<int>(kind)) << kind;
}

}  // namespace

class EditHistoryTest : public QObject {
    Q_OBJECT

private slots:
    void snapshotsAgainstStates_data() { AddKinds({ProfileKind::Annual, ProfileKind::Daily}); }
    void snapshotsAgainstStates() {
        QFETCH(ProfileKind, kind);
        Actions actions(1);
        QStringList shown(Describe(kind).rows, u"1"_s);
        StateList<QStringList> states(shown, 6);
        EditHistory history(kind);
        for (int i = 0; i < 20000; ++i) {
            std::optional<QStringList> restored;
            switch (actions.Next()) {
                case Action::Edit:
                    history.PushSnapshot(shown);
                    shown[actions.Below(shown.size())] = actions.Text();
                    states.Edit(shown);
                    break;
                case Action::RefusedEdit: break;  // is never recorded
                case Action::Undo:
                    restored = history.UndoSnapshot(shown);
                    QCOMPARE(restored.has_value(), states.CanUndo());
                    states.Undo();
                    break;
                case Action::Redo:
                    restored = history.RedoSnapshot();
                    QCOMPARE(restored.has_value(), states.CanRedo());
                    states.Redo();
                    break;
            }
            shown = restored.value_or(shown);
            QCOMPARE(shown, states.Shown());
            QCOMPARE(history.CanUndo(), states.CanUndo());
            QCOMPARE(history.CanRedo(), states.CanRedo());
        }
    }

    void stepsAgainstStates_data() {
        AddKinds({ProfileKind::Function, ProfileKind::Monthly, ProfileKind::Weekly});
    }
    void stepsAgainstStates() {
        QFETCH(ProfileKind, kind);
        Actions actions(2);
        QList<RowState> rows(7);
        for (qsizetype i = 0; i < rows.size(); ++i)
            rows[i] = {static_cast<int>(i), QString::number(i), u"1.00"_s, u"unknown"_s};
        StateList<QList<RowState>> states(rows, 12);
        EditHistory history(kind);
        for (int i = 0; i < 20000; ++i) {
            switch (actions.Next()) {
                case Action::Edit: {
                    const RowState before = rows[actions.Below(rows.size())];
                    RowState after = before;
                    (kind == ProfileKind::Function ? after.label : after.name) = actions.Text();
                    after.value = actions.Text();
                    if (kind == ProfileKind::Function)
                        after.row = actions.Below(rows.size());
                    history.PushStep({before, after});
                    Restore(rows, before, after);
                    if (before != after)
                        states.Edit(rows);
                    break;
                }
                case Action::RefusedEdit: history.PushStep({rows[0], rows[0]}); break;
                case Action::Undo: {
                    const std::optional<HistoryStep> step = history.UndoStep();
                    QCOMPARE(step.has_value(), states.CanUndo());
                    states.Undo();
                    if (step)
                        Restore(rows, step->after, step->before);
                    break;
                }
                case Action::Redo: {
                    const std::optional<HistoryStep> step = history.RedoStep();
                    QCOMPARE(step.has_value(), states.CanRedo());
                    states.Redo();
                    if (step)
                        Restore(rows, step->before, step->after);
                    break;
                }
            }
            QVERIFY(rows == states.Shown());
            QCOMPARE(history.CanUndo(), states.CanUndo());
            QCOMPARE(history.CanRedo(), states.CanRedo());
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
