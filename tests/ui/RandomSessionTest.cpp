// SPDX-License-Identifier: GPL-3.0-or-later
// The whole dialog under thousands of random steps, made with real keys and mouse events.

#include "KindDialog.h"
#include "SessionChecks.h"
#include "TestFiles.h"
#include "TestRows.h"
#include "base/EnglishAtof.h"
#include "base/Message.h"
#include "chart/CGraphView.h"
#include "chart/DragRules.h"
#include "profiles/Coefficients.h"

#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kSteps = 2000;  // RANDOM_STEPS sets another number
constexpr int kMaxPoints = 30;

QList<double> SortedNumbers(const QStringList& texts) {
    QList<double> numbers;
    for (const QString& text : texts)
        numbers.append(ParseNumber(text));
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

bool HasNegative(const QStringList& texts) {
    return SortedNumbers(texts).constFirst() < 0.0;
}

SessionSetup Setup(ProfileKind kind, const ProfileFolders& folders) {
    const bool points = Describe(kind).rows == 0;
    const QStringList times = {u"0"_s, u"2.50"_s, u"2.5"_s, u"7"_s, u"10"_s, u"30"_s};
    const QStringList values = {u"1"_s, u"5"_s, u"-3.0"_s, u"0"_s, u"12"_s, u"4"_s};
    return {kind, DisplayMode::Edit, {}, {}, times, points ? values : QStringList(), {}, folders};
}

// The user in front of a dialog.
class User {
public:
    User(const KindDialog& shown, quint32 seed) : m_shown(shown), m_random(seed) {
        m_former = SetMessageHandler(
            {[this](const QString&, MessageIcon, const QString&) { ++m_messages; },
             [](const QString&, const QString&) { return true; }});
    }
    ~User() { SetMessageHandler(m_former); }
    Q_DISABLE_COPY(User)

    // Does one random step. Returns what went wrong, "" when nothing did.
    QString Step() {
        const bool points = m_facts.rows == 0;
        const std::pair<int, void (User::*)()> choices[] = {
            {30, &User::TypeValue},
            {points ? 15 : 0, &User::TypeTime},
            {m_facts.hasNames() ? 15 : 0, &User::ChooseName},
            {12, &User::Drag},
            {12, &User::Paste},
            {4, &User::CopyAndPaste},
            {26, &User::Undo},
            {20, &User::Redo},
            {points ? 5 : 0, &User::Add},
            {points ? 3 : 0, &User::Remove},
            {m_facts.coefficients ? 5 : 0, &User::ToggleEdition},
            {m_facts.coefficients ? 2 : 0, &User::Adjust}};
        int total = 0;
        for (const auto& [weight, step] : choices)
            total += weight;
        const auto* chosen = std::begin(choices);
        for (int rest = m_random.bounded(total); rest >= chosen->first; ++chosen)
            rest -= chosen->first;
        m_messages = 0;
        m_most_messages = 0;
        m_balanced = false;
        m_fault.clear();
        const QStringList former = Table().Column(2);
        (this->*chosen->second)();
        Expect(m_messages <= m_most_messages, u"%1 messages"_s.arg(m_messages));
        Expect(!points || TimesAreSorted(Table()), u"times are out of order"_s);
        const QStringList values = Table().Column(2);
        // The rounding of a negative coefficient can miss by a hundredth.
        Expect(!m_balanced || m_session.isEdition() || HasNegative(former) || HasNegative(values) ||
                   SumIsRight(m_session.kind(), RoundedSum(m_session.kind(), values)),
               u"wrong sum of %1 after %2"_s.arg(values.join(u'|'), former.join(u'|')));
        for (const QString& fault :
             {m_states.Check(), CheckRows(m_session), CheckChart(Table(), m_shown.Document())})
            Expect(fault.isEmpty(), fault);
        return m_fault.isEmpty() ? QString() : m_log + u": "_s + m_fault;
    }

private:
    const ProfileTable& Table() const { return m_session.table(); }
    QString Cell(int row, int column) const { return Table().CellText(row, column); }
    int RandomRow() { return m_random.bounded(Table().RowCount()) + 1; }
    void Expect(bool holds, const QString& fault) {
        if (!holds && m_fault.isEmpty())
            m_fault = fault;
    }
    bool Follows() const { return m_facts.coefficients && !m_session.isEdition(); }
    void Keys(const QString& text) {
        for (const QChar c : text)
            QTest::keyClick(m_window, c.toLatin1());
    }
    void Key(Qt::Key key, Qt::KeyboardModifier modifier = Qt::NoModifier, Qt::Key held = {}) {
        QTest::keyClick(m_window, key, modifier);
        if (held != 0)
            QTest::keyRelease(m_window, held);
    }
    void ClickOrPress(int button, Qt::Key key) {
        m_random.bounded(2) == 0 ? m_shown.Click(button)
                                 : Key(key, Qt::ControlModifier, Qt::Key_Control);
    }

    QString RandomEntry() {
        static const QStringList kOdd = {u"1,2.3"_s, u"1..2"_s, u"-"_s, u"1e"_s,
                                         u"30"_s,    u"1e1"_s,  u"0"_s, u"-0"_s};
        if (m_random.bounded(8) == 0)
            return kOdd[m_random.bounded(kOdd.size())];
        const double number =
            m_facts.coefficients ? m_random.bounded(14.0) - 1.0 : m_random.bounded(400.0) - 50.0;
        QString text = QString::number(number, 'f', m_random.bounded(4));
        return m_random.bounded(4) == 0 ? text.replace(u'.', u',') : text;
    }

    // Does what changes `count` cells of a column from `row` on, and where coefficients follow the
    // others of the column; a time takes its row elsewhere. Nothing else may change.
    void Enter(int row, int column, qsizetype count, const std::function<void()>& enter) {
        const Cells before = CellsOf(Table());
        enter();
        const Cells after = CellsOf(Table());
        m_balanced = Follows() && after != before;
        if (m_messages > 0 && (count == 1 || m_facts.coefficients))
            Expect(after == before, u"a refused entry was stored"_s);
        if (column == 1) {
            Expect(SortedNumbers(before[1]) == SortedNumbers(after[1]), u"a value changed"_s);
            return;
        }
        for (int other = 1; other <= before.size(); ++other) {
            QStringList former = before[other - 1];
            QStringList now = after[other - 1];
            const qsizetype end = std::min(row - 1 + count, now.size());
            for (qsizetype i = row - 1; other == column && i < end; ++i) {
                former.replace(i, {});
                now.replace(i, {});
            }
            Expect(former == now || (Follows() && other == 2), u"other cells changed"_s);
        }
    }

    void Type(int column) {
        const int row = RandomRow();
        const QString text = RandomEntry();
        m_log = u"typing \"%1\" into (%2, %3)"_s.arg(text).arg(row).arg(column);
        m_most_messages = 1;
        Enter(row, column, 1, [&] {
            m_grid->SelectCell(row, column);
            Keys(text);
            static constexpr Qt::Key kEnds[] = {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Down,
                                                Qt::Key_Up};
            Key(kEnds[m_random.bounded(4)]);
        });
        const QString number = QString(text).replace(u',', u'.');
        Expect(m_messages > 0 || Follows() || !IsNumber(number) ||
                   Table().Column(column).contains(number),
               u"not stored"_s);
    }
    void TypeValue() { Type(2); }
    void TypeTime() { Type(1); }

    // The first letter chooses a name of the list.
    void ChooseName() {
        const int row = RandomRow();
        const QString chosen = m_session.dailyProfiles()[m_random.bounded(3)];
        m_log = u"choosing %1 in row %2"_s.arg(chosen).arg(row);
        Enter(row, 3, 1, [&] {
            m_grid->SelectCell(row, 3);
            Keys(chosen.first(1));
            // The name that stands there already is no choice; the list stays open.
            if (const auto* const list = m_grid->findChild<QComboBox*>();
                list != nullptr && list->isVisible())
                Key(Qt::Key_Escape);
        });
        Expect(Cell(row, 3) == chosen, u"the name is "_s + Cell(row, 3));
    }

    void Drag() {
        const QPoint origin = m_view->mapTo(m_shown.dialog.get(), QPoint());
        const QPointF place = m_shown.Document().items.Place(RandomRow() - 1);
        const QPoint start = m_view->Scale().ToPixels(place).toPoint();
        if (!m_view->rect().adjusted(2, 2, -2, -2).contains(start))
            return;
        QTest::mousePress(m_window, Qt::LeftButton, {}, origin + start);
        const int row = m_grid->currentIndex().row() + 1;
        m_log = u"dragging row %1"_s.arg(row);
        QString last = Cell(row, 2);
        Enter(row, 2, 1, [&] {
            QPoint there = start;
            for (int moves = m_random.bounded(4); moves > 0; --moves) {
                const QPoint to(m_random.bounded(m_view->width()),
                                m_random.bounded(-20, m_view->height() + 20));
                // A first move of a pixel or two is still a click.
                if ((to - start).manhattanLength() <= 10)
                    continue;
                if (const auto accepted =
                        AcceptDrag(m_session.kind(), m_view->Scale().y.ToValue(to.y())))
                    last = *accepted;
                there = to;
                QTest::mouseMove(m_window, origin + to);
                Expect(Cell(row, 2) == last,
                       u"the cell holds %1, not %2"_s.arg(Cell(row, 2), last));
            }
            QTest::mouseRelease(m_window, Qt::LeftButton, {}, origin + there);
        });
        Expect(Follows() || Cell(row, 2) == last, u"the last value got lost"_s);
    }

    void Paste() {
        const int row = RandomRow();
        const int column = m_facts.rows == 0 ? m_random.bounded(1, 3) : 2;
        QStringList texts;
        // Of several steps that a paste makes at once the states between would not be seen.
        for (int count = m_facts.coefficients ? m_random.bounded(1, 5) : 1; count > 0; --count)
            texts.append(RandomEntry());
        m_log = u"pasting \"%1\" on (%2, %3)"_s.arg(texts.join(u'|')).arg(row).arg(column);
        m_most_messages = texts.size() > 1 ? 2 : 1;
        Enter(row, column, texts.size(), [&] {
            QGuiApplication::clipboard()->setText(texts.join(u"\r\n"_s));
            m_grid->SelectCell(row, column);
            m_shown.Click(kPaste);
        });
    }

    void CopyAndPaste() {
        const int row = RandomRow();
        const int other = RandomRow();
        const QString text = Cell(row, 2);
        m_log = u"copying row %1 to %2"_s.arg(row).arg(other);
        m_most_messages = m_facts.coefficients ? 1 : 0;  // the sum may become too large
        Enter(other, 2, 1, [&] {
            m_grid->SelectCell(row, 2);
            m_shown.Click(kCopy);
            m_grid->SelectCell(other, 2);
            m_shown.Click(kPaste);
        });
        Expect(m_facts.coefficients || Cell(other, 2) == text,
               u"the cell holds "_s + Cell(other, 2));
    }

    void Undo() {
        m_log = u"undo"_s;
        m_states.Undo([this] { ClickOrPress(kUndo, Qt::Key_Z); });
    }
    void Redo() {
        m_log = u"redo"_s;
        m_states.Redo([this] { ClickOrPress(kRedo, Qt::Key_Y); });
    }

    void Add() {
        const bool accept = m_random.bounded(4) != 0 && Table().RowCount() < kMaxPoints;
        const int rows = Table().RowCount() + (accept ? 1 : 0);
        m_log = accept ? u"adding"_s : u"adding, cancelled"_s;
        m_most_messages = 2;
        m_states.Forget([&] {
            m_shown.Add([this] { m_shown.Click(kAdd); }, RandomEntry(), RandomEntry(),
                        accept ? Qt::Key_Return : Qt::Key_Escape);
        });
        Expect(Table().RowCount() == rows, u"rows do not fit"_s);
    }

    void Remove() {
        m_grid->SelectCell(RandomRow(), 2);
        const int rows = Table().RowCount();
        // At times to the last row.
        for (int more = m_random.bounded(4) == 0 ? rows : m_random.bounded(3); more > 0; --more)
            Key(Qt::Key_Down, Qt::ShiftModifier, Qt::Key_Shift);
        const auto selected = static_cast<int>(m_grid->SelectedRows().size());
        const auto click = [this] { m_shown.Click(kRemove); };
        m_log = u"removing %1 of %2"_s.arg(selected).arg(rows);
        m_most_messages = 1;
        const bool goes = rows - selected >= 2;
        goes ? m_states.Forget(click) : click();
        Expect(Table().RowCount() == (goes ? rows - selected : rows), u"rows do not fit"_s);
    }

    void ToggleEdition() {
        m_log = u"edition"_s;
        m_balanced = m_session.isEdition();
        m_shown.Click(kEdition);
        Expect(m_session.isEdition() != m_balanced, u"the box did not change"_s);
    }

    void Adjust() {
        m_log = u"adjust"_s;
        m_balanced = true;
        m_shown.Click(kAdjust);
    }

    const KindDialog& m_shown;
    QWindow* const m_window = m_shown.dialog->windowHandle();
    const ProfileSession& m_session = m_shown.dialog->session();
    const KindDescriptor& m_facts = m_session.facts();
    CGridControl* const m_grid = m_shown.Grid();
    CGraphView* const m_view = m_shown.dialog->findChild<CGraphView*>();
    StateList m_states{m_session};
    QRandomGenerator m_random;
    MessageHandler m_former;
    int m_messages = 0;       // of the step
    int m_most_messages = 0;  // that it may bring
    bool m_balanced = false;  // by the step
    QString m_log;
    QString m_fault;
};

}  // namespace

class RandomSessionTest : public QObject {
    Q_OBJECT

private slots:
    void Steps_data() { AddKinds(); }
    void Steps() {
        QFETCH(const ProfileKind, row);
        // Some kinds change the working folder.
        const auto back = qScopeGuard([start = QDir::currentPath()] { QDir::setCurrent(start); });
        const QTemporaryDir folder;
        const ProfileFolders folders(folder.path());
        for (const QString& name : {u"bas"_s, u"haut"_s, u"moyen"_s})
            QVERIFY(WriteAll(folders.DailyProfilePath(name), {}));
        bool is_set = false;
        const int set = qEnvironmentVariableIntValue("RANDOM_STEPS", &is_set);
        const KindDialog shown(std::make_unique<CDlgGridChart>(Setup(row, folders)));
        shown.Run([&] {
            User user(shown, 20260 + static_cast<quint32>(row));
            for (int step = 1; step <= (is_set ? set : kSteps); ++step) {
                const QString fault = user.Step();
                QVERIFY2(fault.isEmpty(), qPrintable(u"step %1, %2"_s.arg(step).arg(fault)));
            }
        });
    }
};

QTEST_MAIN(RandomSessionTest)
#include "RandomSessionTest.moc"
