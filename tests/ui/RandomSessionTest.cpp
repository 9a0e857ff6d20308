// SPDX-License-Identifier: GPL-3.0-or-later
// The whole dialog under thousands of random steps, made with real keys and mouse events.

#include "KindDialog.h"
#include "SessionChecks.h"
#include "TestFiles.h"
#include "TestRows.h"
#include "base/Message.h"
#include "chart/CGraphView.h"

#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

constexpr int kSteps = 800;  // RANDOM_STEPS sets another number
constexpr int kMaxPoints = 30;

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
        m_former = SetMessageHandler({[](const QString&, MessageIcon, const QString&) {},
                                      [](const QString&, const QString&) { return true; }});
    }
    ~User() { SetMessageHandler(m_former); }
    Q_DISABLE_COPY(User)

    // Does one random step. Returns what does not hold after it, "" when all does.
    QString Step() {
        const bool points = m_facts.rows == 0;
        struct Choice {
            int weight;
            QString name;
            void (User::*step)();
        };
        const Choice choices[] = {{30, u"value"_s, &User::TypeValue},
                                  {points ? 15 : 0, u"time"_s, &User::TypeTime},
                                  {m_facts.hasNames() ? 15 : 0, u"name"_s, &User::ChooseName},
                                  {12, u"drag"_s, &User::Drag},
                                  {16, u"paste"_s, &User::Paste},
                                  {26, u"undo"_s, &User::Undo},
                                  {20, u"redo"_s, &User::Redo},
                                  {points ? 5 : 0, u"add"_s, &User::Add},
                                  {points ? 3 : 0, u"remove"_s, &User::Remove},
                                  {m_facts.coefficients ? 7 : 0, u"edition"_s, &User::Rescale}};
        int total = 0;
        for (const Choice& choice : choices)
            total += choice.weight;
        const Choice* chosen = choices;
        for (int rest = m_random.bounded(total); rest >= chosen->weight; ++chosen)
            rest -= chosen->weight;
        (this->*chosen->step)();
        for (const QString& fault :
             {m_states.Check(), CheckRows(m_session), CheckChart(Table(), m_shown.Document())}) {
            if (!fault.isEmpty())
                return chosen->name + u": "_s + fault;
        }
        return points && !TimesAreSorted(Table()) ? u"times are out of order"_s : QString();
    }

private:
    const ProfileTable& Table() const { return m_session.table(); }
    int RandomRow() { return m_random.bounded(Table().RowCount()) + 1; }
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

    void Type(int column) {
        static constexpr Qt::Key kEnds[] = {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Down, Qt::Key_Up};
        m_grid->SelectCell(RandomRow(), column);
        Keys(RandomEntry());
        Key(kEnds[m_random.bounded(4)]);
    }
    void TypeValue() { Type(2); }
    void TypeTime() { Type(1); }

    // The first letter chooses a name of the list.
    void ChooseName() {
        m_grid->SelectCell(RandomRow(), 3);
        Keys(m_session.dailyProfiles()[m_random.bounded(3)].first(1));
        // The name that stands there already is no choice; the list stays open.
        if (const auto* const list = m_grid->findChild<QComboBox*>();
            list != nullptr && list->isVisible())
            Key(Qt::Key_Escape);
    }

    void Drag() {
        const QPoint origin = m_view->mapTo(m_shown.dialog.get(), QPoint());
        QPoint there =
            m_view->Scale().ToPixels(m_shown.Document().items.Place(RandomRow() - 1)).toPoint();
        if (!m_view->rect().adjusted(2, 2, -2, -2).contains(there))
            return;
        QTest::mousePress(m_window, Qt::LeftButton, {}, origin + there);
        for (int moves = m_random.bounded(4); moves > 0; --moves) {
            there = {m_random.bounded(m_view->width()),
                     m_random.bounded(-20, m_view->height() + 20)};
            // With Shift a point moves in time too.
            QTest::mouseEvent(QTest::MouseMove, m_window, Qt::NoButton,
                              m_random.bounded(2) == 0 ? Qt::ShiftModifier : Qt::NoModifier,
                              origin + there);
        }
        QTest::mouseRelease(m_window, Qt::LeftButton, {}, origin + there);
    }

    void Paste() {
        QStringList texts;
        // Of several steps that a paste makes at once the states between would not be seen.
        for (int count = m_facts.coefficients ? m_random.bounded(1, 5) : 1; count > 0; --count)
            texts.append(RandomEntry());
        QGuiApplication::clipboard()->setText(texts.join(u"\r\n"_s));
        if (m_random.bounded(4) == 0) {
            m_grid->SelectCell(RandomRow(), 2);
            m_shown.Click(kCopy);
        }
        m_grid->SelectCell(RandomRow(), m_facts.rows == 0 ? m_random.bounded(1, 3) : 2);
        m_shown.Click(kPaste);
    }

    void Undo() {
        m_states.Undo([this] { ClickOrPress(kUndo, Qt::Key_Z); });
    }
    void Redo() {
        m_states.Redo([this] { ClickOrPress(kRedo, Qt::Key_Y); });
    }

    void Add() {
        const bool accept = m_random.bounded(4) != 0 && Table().RowCount() < kMaxPoints;
        m_states.Forget([&] {
            m_shown.Add([this] { m_shown.Click(kAdd); }, RandomEntry(), RandomEntry(),
                        accept ? Qt::Key_Return : Qt::Key_Escape);
        });
    }

    void Remove() {
        m_grid->SelectCell(RandomRow(), 2);
        const int rows = Table().RowCount();
        // At times to the last row.
        for (int more = m_random.bounded(4) == 0 ? rows : m_random.bounded(3); more > 0; --more)
            Key(Qt::Key_Down, Qt::ShiftModifier, Qt::Key_Shift);
        const auto click = [this] { m_shown.Click(kRemove); };
        rows - m_grid->SelectedRows().size() >= 2 ? m_states.Forget(click) : click();
    }

    void Rescale() { m_shown.Click(m_random.bounded(7) < 5 ? kEdition : kAdjust); }

    const KindDialog& m_shown;
    QWindow* const m_window = m_shown.dialog->windowHandle();
    const ProfileSession& m_session = m_shown.dialog->session();
    const KindDescriptor& m_facts = m_session.facts();
    CGridControl* const m_grid = m_shown.Grid();
    CGraphView* const m_view = m_shown.dialog->findChild<CGraphView*>();
    StateList m_states{m_session};
    QRandomGenerator m_random;
    MessageHandler m_former;
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
            const QSignalSpy edits(&shown.dialog->session(), &ProfileSession::StateChanged);
            for (int step = 1; step <= (is_set ? set : kSteps); ++step) {
                const QString fault = user.Step();
                QVERIFY2(fault.isEmpty(), qPrintable(u"step %1, %2"_s.arg(step).arg(fault)));
            }
            QVERIFY(is_set || edits.size() > kSteps / 4);
        });
    }
};

QTEST_MAIN(RandomSessionTest)
#include "RandomSessionTest.moc"
