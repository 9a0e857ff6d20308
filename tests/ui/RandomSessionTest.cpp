// The whole dialog under thousands of random steps, made with real keys and mouse events.

#include "FaultTable.h"
#include "MessageScript.h"
#include "RunDialog.h"
#include "app/EnglishAtof.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "chart/DragRules.h"
#include "grid/CDlgAjout.h"
#include "grid/CGridControl.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int kSteps = 2000;  // RANDOM_STEPS sets another number
constexpr int kStepsToTell = 10'000;
constexpr int kMostPoints = 30;

const QString kWrong = u"La valeur entrée\nn'est pas correcte."_s;
const QString kTooLarge = u"La valeur entrée\nest trop grande."_s;
const QString kSeparators =
    u"Le nombre entré comporte plusieurs virgules !\nVeuillez rectifier la saisie."_s;
const QString kNoRoom =
    u"Impossible d'appliquer la sélection\nprécédente à cet endroit:\nil n'y a pas assez de place dans\nle tableau !"_s;

// Memory of this process that is in use now, in megabytes; 0 where the system does not tell.
double ResidentMegabytes() {
    QFile status(u"/proc/self/statm"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0.0;
    constexpr double kPage = 4096;
    return status.readAll().split(' ').value(1).toDouble() * kPage / 1e6;
}

// All columns of a table.
using State = QList<QStringList>;

State StateOf(const ProfileTable& table) {
    State state;
    for (int column = 1; column <= table.ColumnCount(); ++column)
        state.append(table.Column(column));
    return state;
}

// Where a row was moved, the rows it passed are printed anew, which an undo does not take back.
QList<double> NumbersOf(const State& state) {
    QList<double> numbers;
    for (const QStringList& column : state) {
        for (const QString& text : column)
            numbers.append(ParseNumber(text));
    }
    return numbers;
}

bool HasNegative(const State& state) {
    return std::any_of(state[1].cbegin(), state[1].cend(),
                       [](const QString& text) { return ParseNumber(text) < 0.0; });
}

// The states that undo and redo can reach, as a plain list.
class StateList {
public:
    StateList(qsizetype most_steps, const State& state) : m_most(most_steps), m_states({state}) {}

    void Forget(const State& state) {
        m_states = {state};
        m_position = 0;
    }
    void Add(const State& state) {
        m_states.resize(m_position + 1);
        m_states.append(state);
        if (m_states.size() > m_most + 1)
            m_states.removeFirst();
        m_position = m_states.size() - 1;
    }
    bool CanUndo() const { return m_position > 0; }
    bool CanRedo() const { return m_position + 1 < m_states.size(); }
    const State& Undo() { return m_states[--m_position]; }
    const State& Redo() { return m_states[++m_position]; }
    const State& Current() const { return m_states[m_position]; }

private:
    qsizetype m_most;
    QList<State> m_states;
    qsizetype m_position = 0;
};

// One dialog with the user in front of it. Every step returns what went wrong, "" when nothing did.
class User {
public:
    User(CDlgGridChart& dialog, quint32 seed)
        : m_dialog(dialog),
          m_session(dialog.session()),
          m_facts(m_session.facts()),
          m_random(seed),
          m_grid(dialog.findChild<CGridControl*>()),
          m_chart(dialog.findChild<CGraphControl*>()),
          m_view(dialog.findChild<CGraphView*>()),
          m_states(m_facts.coefficients ? 6 : 12, StateOf(m_session.table())) {
        // Each step that is recorded tells so once it stands in the table.
        QObject::connect(&m_session, &ProfileSession::StateChanged, &m_context, [this] {
            const State state = StateOf(m_session.table());
            if (m_recording && state != m_states.Current()) {
                m_negative =
                    m_entered_negative || HasNegative(m_states.Current()) || HasNegative(state);
                m_states.Add(state);
                m_balanced = !m_session.isEdition();
            }
        });
    }

    QString Step() {
        struct Choice {
            int weight;
            QString (User::*step)();
        };
        const Choice choices[] = {{30, &User::TypeValue},
                                  {m_facts.rows == 0 ? 15 : 0, &User::TypeTime},
                                  {m_facts.hasNames() ? 15 : 0, &User::ChooseName},
                                  {12, &User::Drag},
                                  {12, &User::Paste},
                                  {4, &User::CopyAndPaste},
                                  {26, &User::Undo},
                                  {20, &User::Redo},
                                  {m_facts.rows == 0 ? 5 : 0, &User::Add},
                                  {m_facts.rows == 0 ? 3 : 0, &User::Remove},
                                  {m_facts.coefficients ? 5 : 0, &User::ToggleEdition},
                                  {m_facts.coefficients ? 2 : 0, &User::Adjust}};
        int total = 0;
        for (const Choice& choice : choices)
            total += choice.weight;
        int rest = m_random.bounded(total);
        const Choice* chosen = choices;
        while (rest >= chosen->weight)
            rest -= (chosen++)->weight;
        m_entered_negative = false;
        m_column_before = Table().Column(2);
        QString fault = (this->*chosen->step)();
        if (fault.isEmpty())
            fault = Check();
        return fault.isEmpty() ? QString() : m_log + u": "_s + fault;
    }

private:
    const ProfileTable& Table() const { return m_session.table(); }
    int RowCount() const { return Table().RowCount(); }
    QString Cell(int row, int column) const { return Table().CellText(row, column); }
    bool OthersFollow() const { return m_facts.coefficients && !m_session.isEdition(); }
    int RandomRow() { return m_random.bounded(RowCount()) + 1; }

    void Click(const QString& name) {
        QTest::mouseClick(m_dialog.findChild<QAbstractButton*>(name), Qt::LeftButton);
    }
    void Keys(const QString& text) {
        for (const QChar c : text)
            QTest::keyClick(m_dialog.windowHandle(), c.toLatin1());
    }
    void Key(Qt::Key key) { QTest::keyClick(m_dialog.windowHandle(), key); }
    void ControlKey(Qt::Key key) {
        QTest::keyClick(m_dialog.windowHandle(), key, Qt::ControlModifier);
        QTest::keyRelease(m_dialog.windowHandle(), Qt::Key_Control);
    }

    // What holds after every step.
    QString Check() {
        if (!m_messages.Done())
            return m_messages.Report();
        m_messages.ForgetSeen();
        if (m_session.canUndo() != m_states.CanUndo() || m_session.canRedo() != m_states.CanRedo())
            return u"undo or redo is not as the steps ask for"_s;
        if (const QString fault = Compare(m_states.Current()); !fault.isEmpty())
            return u"without a step "_s + fault;
        const CDocControl& chart = m_chart->document();
        if (chart.ItemCount() != RowCount())
            return u"the chart has another number of items"_s;
        for (int i = 0; i < RowCount(); ++i) {
            const bool has_times = chart.GroupCount() == 2;
            if (chart.Value(i, has_times ? 1 : 0) != ParseNumber(Cell(i + 1, 2)) ||
                (has_times && chart.Value(i, 0) != ParseNumber(Cell(i + 1, 1))))
                return u"the chart shows another number in row %1"_s.arg(i + 1);
            if (has_times && i > 0 && EnglishAtof(Cell(i, 1)) > EnglishAtof(Cell(i + 1, 1)))
                return u"row %1 is out of time order"_s.arg(i + 1);
        }
        return m_facts.coefficients ? CheckSum() : QString();
    }

    // The column sums to N after each change made while Edition is clear. Undo and redo may bring
    // back what was entered in between. Two things can still stand against it, both with negative
    // coefficients only: the rounding of a negative number, which is cut toward zero and so can
    // miss by a hundredth, and single precision among the large numbers that balance each other.
    QString CheckSum() const {
        double sum = 0.0;
        double largest = 0.0;
        for (const QString& text : Table().Column(2)) {
            sum += ParseNumber(text);
            largest = std::max(largest, std::abs(ParseNumber(text)));
        }
        if (!m_balanced || (m_negative && !(largest <= 1000.0)))
            return {};
        // Sums in single precision are off by some ten-thousandths.
        return std::abs(sum - m_facts.rows) <= (m_negative ? 0.015 : 0.0052)
                   ? QString()
                   : u"the sum is %1 in %2 after %3"_s.arg(sum, 0, 'g', 10)
                         .arg(Table().Column(2).join(u'|'), m_column_before.join(u'|'));
    }

    QString RandomNumber() {
        const double number =
            m_facts.coefficients ? m_random.bounded(14.0) - 1.0 : m_random.bounded(400.0) - 50.0;
        QString text = QString::number(number, 'f', m_random.bounded(4));
        if (m_random.bounded(4) == 0)
            text.replace(u'.', u',');
        return text;
    }

    QString RandomEntry() {
        static const QStringList kOdd = {u"1,2.3"_s, u"1..2"_s, u"-"_s, u"1e"_s,
                                         u"30"_s,    u"1e1"_s,  u"0"_s, u"-0"_s};
        return m_random.bounded(5) == 0 ? kOdd[m_random.bounded(kOdd.size())] : RandomNumber();
    }

    // Tells the script which message an entry is due to bring up; true when it will be stored.
    bool ExpectEntry(QString text, bool pasted, bool value) {
        if (text.count(u'.') + text.count(u',') > 1) {
            m_messages.Expect(kSeparators);
            return false;
        }
        text.replace(u',', u'.');
        if (!IsNumber(text)) {
            if (pasted)
                m_messages.Expect(kWrong);
            return false;
        }
        if (value && m_facts.coefficients && !pasted && EnglishAtof(text) > m_facts.typed_bound) {
            m_messages.Expect(kTooLarge);
            return false;
        }
        m_entered_negative = m_entered_negative || ParseNumber(text) < 0.0;
        return true;
    }

    QString Type(int column) {
        const int row = RandomRow();
        const QString text = RandomEntry();
        m_log = u"typing \"%1\" into (%2, %3)"_s.arg(text).arg(row).arg(column);
        m_grid->SelectCell(row, column);
        const bool stored = text != Cell(row, column) && ExpectEntry(text, false, column == 2);
        const State before = StateOf(Table());
        Keys(text);
        static constexpr Qt::Key kEnds[] = {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Down, Qt::Key_Up};
        Key(kEnds[m_random.bounded(4)]);
        if (!stored)
            return StateOf(Table()) == before ? QString() : u"a refused entry was stored"_s;
        const QString entered = QString(text).replace(u',', u'.');
        return OthersFollow() || Table().Column(column).contains(entered)
                   ? QString()
                   : u"the entry was not stored"_s;
    }

    QString TypeValue() { return Type(2); }
    QString TypeTime() { return Type(1); }

    // The first letter chooses a name of the list.
    QString ChooseName() {
        const int row = RandomRow();
        const QString name = m_session.dailyProfiles()[m_random.bounded(3)];
        m_log = u"choosing %1 in row %2"_s.arg(name).arg(row);
        m_grid->SelectCell(row, 3);
        Keys(name.first(1));
        // The name that stands there already is no choice; the list stays open.
        if (const auto* const list = m_grid->findChild<QComboBox*>();
            list != nullptr && list->isVisible())
            Key(Qt::Key_Escape);
        return Cell(row, 3) == name ? QString() : u"the name is "_s + Cell(row, 3);
    }

    QString Drag() {
        const QPoint origin = m_view->mapTo(&m_dialog, QPoint());
        QWindow* const window = m_dialog.windowHandle();
        const int item = RandomRow() - 1;
        const QPoint start = m_view->Scale().ToPixels(m_chart->document().Place(item)).toPoint();
        if (!m_view->rect().adjusted(2, 2, -2, -2).contains(start))
            return {};
        QTest::mousePress(window, Qt::LeftButton, {}, origin + start);
        const int row = m_grid->currentIndex().row() + 1;
        m_log = u"dragging row %1 from (%2, %3)"_s.arg(row).arg(start.x()).arg(start.y());
        QString last = Cell(row, 2);
        QPoint there = start;
        for (int moves = m_random.bounded(4); moves > 0; --moves) {
            const QPoint to(m_random.bounded(m_view->width()),
                            m_random.bounded(-20, m_view->height() + 20));
            const auto accepted = AcceptDrag(m_session.kind(), m_view->Scale().y.ToValue(to.y()));
            // A first move of a pixel or two is still a click.
            if ((to - start).manhattanLength() > 10 && accepted)
                last = accepted->text;
            else if ((to - start).manhattanLength() <= 10)
                continue;
            there = to;
            QTest::mouseMove(window, origin + to);
            if (Cell(row, 2) != last)
                return u"moved to %1, the cell holds %2, not %3"_s.arg(to.y()).arg(Cell(row, 2),
                                                                                   last);
        }
        m_entered_negative = ParseNumber(last) < 0.0;
        QTest::mouseRelease(window, Qt::LeftButton, {}, origin + there);
        return OthersFollow() || Cell(row, 2) == last ? QString() : u"the last value got lost"_s;
    }

    QString Paste() {
        const int row = RandomRow();
        const int column = m_facts.rows == 0 ? m_random.bounded(1, 3) : 2;
        QStringList texts;
        // Of several steps that a paste makes at once the states between would not be seen.
        for (int count = m_facts.coefficients ? m_random.bounded(1, 5) : 1; count > 0; --count)
            texts.append(m_random.bounded(8) == 0 ? RandomEntry() : RandomNumber());
        m_log = u"pasting \"%1\" on (%2, %3)"_s.arg(texts.join(u'|')).arg(row).arg(column);
        const State before = StateOf(Table());
        const bool refused = !ExpectPaste(texts, row, column);
        QGuiApplication::clipboard()->setText(texts.join(u"\r\n"_s));
        m_grid->SelectCell(row, column);
        Click(u"5021_PASTE"_s);
        return refused && StateOf(Table()) != before ? u"a refused paste was stored"_s : QString();
    }

    // False when the paste is due to be refused as a whole.
    bool ExpectPaste(const QStringList& texts, int row, int column) {
        if (row + texts.size() - 1 > RowCount()) {
            m_messages.Expect(kNoRoom);
            return false;
        }
        QStringList result = Table().Column(2);
        for (qsizetype i = 0; i < texts.size(); ++i) {
            const bool stored = ExpectEntry(texts[i], true, column == 2);
            if (!stored && m_facts.coefficients)
                return false;
            result[row - 1 + i] = QString(texts[i]).replace(u',', u'.');
        }
        const bool bounded = std::all_of(result.cbegin(), result.cend(), [this](const QString& t) {
            return EnglishAtof(t) >= 0.0F && EnglishAtof(t) <= m_facts.pasted_bound;
        });
        if (!m_facts.coefficients || bounded)
            return true;
        m_messages.Expect(m_facts.pasted_bound_message.toString());
        return false;
    }

    QString CopyAndPaste() {
        if (!m_facts.pasted_bound_message.isEmpty())
            return {};
        const int row = RandomRow();
        const int other = RandomRow();
        m_log = u"copying row %1 to %2"_s.arg(row).arg(other);
        const QString text = Cell(row, 2);
        m_grid->SelectCell(row, 2);
        Click(u"5020_COPY"_s);
        m_grid->SelectCell(other, 2);
        Click(u"5021_PASTE"_s);
        return Cell(other, 2) == text ? QString() : u"the cell holds "_s + Cell(other, 2);
    }

    QString Undo() {
        return Travel(u"undo"_s, m_states.CanUndo() ? m_states.Undo() : m_states.Current(),
                      u"5018_UNDO"_s, Qt::Key_Z);
    }
    QString Redo() {
        return Travel(u"redo"_s, m_states.CanRedo() ? m_states.Redo() : m_states.Current(),
                      u"5019_REDO"_s, Qt::Key_Y);
    }
    QString Travel(const QString& log, const State& expected, const QString& button, Qt::Key key) {
        m_log = log;
        m_recording = false;
        m_balanced = false;
        if (m_random.bounded(2) == 0)
            Click(button);
        else
            ControlKey(key);
        m_recording = true;
        return Compare(expected);
    }

    QString Compare(const State& expected) const {
        const State state = StateOf(Table());
        if (m_facts.rows == 0 ? NumbersOf(state) == NumbersOf(expected) : state == expected)
            return {};
        QString fault = u"the table is"_s;
        for (const QStringList& column : state + State{{u"instead of"_s}} + expected)
            fault += u"\n  "_s + column.join(u'|');
        return fault;
    }

    QString Add() {
        const QString time = RandomEntry();
        const QString value = RandomEntry();
        const bool accept = m_random.bounded(4) != 0 && RowCount() < kMostPoints;
        m_log = u"adding (%1, %2), %3"_s.arg(time, value).arg(accept);
        for (const QString& text : {time, value}) {
            QString number = text;
            if (number.count(u',') == 1 && !number.contains(u'.'))
                number.replace(u',', u'.');
            if (accept && !IsNumber(number))
                m_messages.Expect(u"Veuillez entrer un nombre."_s);
        }
        QString fault = u"no dialog came"_s;
        QTimer::singleShot(0, &m_context, [&] {
            auto* const add = qobject_cast<CDlgAjout*>(QApplication::activeModalWidget());
            if (add == nullptr)
                return;
            const QList<QLineEdit*> fields = add->findChildren<QLineEdit*>();
            QTest::keyClicks(fields[0], time);
            fields[1]->selectAll();
            QTest::keyClicks(fields[1], value);
            QTest::keyClick(add, accept ? Qt::Key_Return : Qt::Key_Escape);
            fault.clear();
        });
        const int rows = RowCount();
        m_recording = false;
        Click(u"5008_Add"_s);
        m_recording = true;
        m_states.Forget(StateOf(Table()));
        // Nobody but a window manager would do so.
        m_dialog.activateWindow();
        if (!QTest::qWaitForWindowActive(&m_dialog))
            return u"the dialog does not come back"_s;
        return fault.isEmpty() && RowCount() != rows + (accept ? 1 : 0) ? u"rows do not fit"_s
                                                                        : fault;
    }

    QString Remove() {
        const int rows = RowCount();
        m_grid->SelectCell(RandomRow(), 2);
        for (int more = m_random.bounded(3); more > 0; --more)
            QTest::keyClick(m_dialog.windowHandle(), Qt::Key_Down, Qt::ShiftModifier);
        QTest::keyRelease(m_dialog.windowHandle(), Qt::Key_Shift);
        const auto selected = static_cast<int>(m_grid->SelectedRows().size());
        m_log = u"removing %1 of %2"_s.arg(selected).arg(rows);
        m_recording = false;
        Click(u"5009_Remove"_s);
        m_recording = true;
        const bool goes = rows - selected >= 2;
        if (goes)
            m_states.Forget(StateOf(Table()));
        return RowCount() == (goes ? rows - selected : rows) ? QString() : u"rows do not fit"_s;
    }

    QString ToggleEdition() {
        m_log = u"edition"_s;
        const bool was_on = m_session.isEdition();
        Click(u"5033_Edition"_s);
        m_balanced = was_on;
        return m_session.isEdition() != was_on ? QString() : u"the box did not change"_s;
    }

    QString Adjust() {
        m_log = u"adjust"_s;
        Click(u"5016_Ajuster"_s);
        m_balanced = true;
        return {};
    }

    CDlgGridChart& m_dialog;
    const ProfileSession& m_session;
    const KindDescriptor& m_facts;
    QRandomGenerator m_random;
    CGridControl* m_grid;
    CGraphControl* m_chart;
    CGraphView* m_view;
    MessageScript m_messages;
    QObject m_context;
    StateList m_states;
    bool m_recording = true;
    bool m_balanced = true;
    bool m_negative = false;  // a coefficient is, or was before or in the last step
    bool m_entered_negative = false;
    QStringList m_column_before;
    QString m_log;
};

}  // namespace

class RandomSessionTest : public QObject {
    Q_OBJECT

private slots:
    void Steps_data() {
        QTest::addColumn<ProfileKind>("kind");
        for (int kind = -1; kind <= 3; ++kind)
            QTest::addRow("kind %d", kind) << static_cast<ProfileKind>(kind);
    }
    void Steps() {
        QFETCH(ProfileKind, kind);
        const QString start_folder = QDir::currentPath();
        const QTemporaryDir folder;
        const QDir daily(ProfileFolders(folder.path()).KindFolder(ProfileKind::Daily));
        QVERIFY(daily.mkpath(u"."_s));
        for (const QString& name : {u"bas.dat"_s, u"haut.dat"_s, u"moyen.dat"_s})
            QVERIFY(QFile(daily.filePath(name)).open(QIODevice::WriteOnly));
        QStringList times = {u"0"_s, u"2.50"_s, u"2.5"_s, u"7"_s, u"10"_s, u"30"_s};
        QStringList values = {u"1"_s, u"5"_s, u"-3.0"_s, u"0"_s, u"12"_s, u"4"_s};
        SessionSetup setup;
        setup.kind = kind;
        setup.folders = ProfileFolders(folder.path());
        setup.times = times;
        if (kind == ProfileKind::Function)
            setup.values = values;
        CDlgGridChart dialog(std::move(setup));
        bool is_set = false;
        const int set = qEnvironmentVariableIntValue("RANDOM_STEPS", &is_set);
        const int wanted = is_set ? set : kSteps;
        QStringList memories;
        QStringList times_taken;
        QString fault;
        int steps = 0;
        RunDialog(dialog, [&] {
            if (!QTest::qWaitForWindowActive(&dialog)) {
                fault = u"the dialog does not come"_s;
                return;
            }
            User user(dialog, 20260 + static_cast<quint32>(kind));
            std::clock_t former = std::clock();  // of the processor
            for (; steps < wanted && fault.isEmpty(); ++steps) {
                fault = user.Step();
                if ((steps + 1) % kStepsToTell != 0)
                    continue;
                const QString memory = QString::number(ResidentMegabytes(), 'f', 1);
                const std::clock_t now = std::clock();
                const QString seconds =
                    QString::number(static_cast<double>(now - former) / CLOCKS_PER_SEC, 'f', 1);
                former = now;
                qInfo("%d steps, %s MB, %s s", steps + 1, qPrintable(memory), qPrintable(seconds));
                memories.append(memory);
                times_taken.append(seconds);
            }
        });
        QDir::setCurrent(start_folder);  // Some kinds change it.
        QVERIFY2(fault.isEmpty(), qPrintable(u"step %1, %2"_s.arg(steps).arg(fault)));
        QCOMPARE(steps, wanted);
        AddTableRow("sessions", {QLatin1StringView(QTest::currentDataTag()), QString::number(steps),
                                 memories.join(u' '), times_taken.join(u' ')});
    }
};

QTEST_MAIN(RandomSessionTest)
#include "RandomSessionTest.moc"
