// The main dialog in the hands of a user without a mouse.

#include "KindDialog.h"
#include "MessageScript.h"
#include "RunDialog.h"
#include "grid/CDlgAjout.h"
#include "grid/CGridControl.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Runs the dialog and does `steps` once it has the keyboard.
int RunActive(const KindDialog& shown, const std::function<void()>& steps) {
    return RunDialog(*shown.dialog, [&] {
        QVERIFY(QTest::qWaitForWindowActive(shown.dialog.get()));
        steps();
    });
}

QString FocusName() {
    const QWidget* const focus = QApplication::focusWidget();
    return focus != nullptr ? focus->objectName() : QString();
}

void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

}  // namespace

class KeyboardTest : public QObject {
    Q_OBJECT

private slots:
    void EveryControlIsReached_data();
    void EveryControlIsReached();
    void LeavingTheGridTakesTheEntry();
    void FocusedButtonIsPressed_data();
    void FocusedButtonIsPressed();
    void MenuOpens();
};

void KeyboardTest::EveryControlIsReached_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("mode");
    for (int kind = -1; kind <= 3; ++kind) {
        for (const int mode : {2, 3})
            QTest::addRow("kind %d, mode %d", kind, mode) << kind << mode;
    }
}

void KeyboardTest::EveryControlIsReached() {
    QFETCH(int, kind);
    QFETCH(int, mode);
    const KindDialog shown(static_cast<ProfileKind>(kind), static_cast<DisplayMode>(mode));
    RunActive(shown, [&] {
        QStringList expected;
        for (const ControlTemplate& control : kMainDialog) {
            const QWidget* const widget = shown.Control(control.id);
            if (widget->isVisible() && widget->isEnabled() &&
                control.control_class != ControlClass::Frame)
                expected.append(widget->objectName());
        }
        QVERIFY(expected.contains(u"5022_OK"_s));
        const QString grid = u"5000_Custom1"_s;
        // Once around and back to the grid.
        for (const bool backward : {false, true}) {
            const Qt::KeyboardModifiers shift = backward ? Qt::ShiftModifier : Qt::NoModifier;
            const Qt::Key key = backward ? Qt::Key_Backtab : Qt::Key_Tab;
            QStringList reached{FocusName()};
            QCOMPARE(reached.first(), grid);
            Press(key, shift | Qt::ControlModifier);
            while (FocusName() != grid && reached.size() <= expected.size()) {
                reached.append(FocusName());
                Press(key, shift);
            }
            if (backward)
                std::reverse(expected.begin() + 1, expected.end());
            QCOMPARE(reached, expected);
        }
    });
}

void KeyboardTest::LeavingTheGridTakesTheEntry() {
    const KindDialog shown(ProfileKind::Function);
    MessageScript script;
    RunActive(shown, [&] {
        auto* const grid = shown.dialog->findChild<CGridControl*>();
        const auto type = [&](const QString& text) {
            grid->SelectCell(2, 2);
            QTest::keyClicks(grid, text.left(1));
            QTest::keyClicks(QApplication::focusWidget(), text.mid(1));
            Press(Qt::Key_Tab, Qt::ControlModifier);
        };
        type(u"7,5"_s);
        QCOMPARE(shown.dialog->session().table().CellText(2, 2), u"7.5"_s);
        QCOMPARE(grid->currentIndex().row(), 1);
        QVERIFY(FocusName() != grid->objectName());
        grid->setFocus();
        // An entry that is refused keeps the user at the grid.
        script.Expect(
            u"Le nombre entré comporte plusieurs virgules !\nVeuillez rectifier la saisie."_s);
        type(u"1..2"_s);
        QCOMPARE(shown.dialog->session().table().CellText(2, 2), u"7.5"_s);
        QVERIFY(grid->hasFocus() || grid->isAncestorOf(QApplication::focusWidget()));
    });
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

void KeyboardTest::FocusedButtonIsPressed_data() {
    QTest::addColumn<int>("key");
    QTest::newRow("Space") << int{Qt::Key_Space};
    QTest::newRow("Return") << int{Qt::Key_Return};
    QTest::newRow("Enter of the number pad") << int{Qt::Key_Enter};
}

void KeyboardTest::FocusedButtonIsPressed() {
    QFETCH(int, key);
    const auto press = [&](const KindDialog& shown, int id) {
        shown.Control(id)->setFocus(Qt::TabFocusReason);
        Press(static_cast<Qt::Key>(key));
    };
    const KindDialog function(ProfileKind::Function, DisplayMode::Edit, 4);
    const int result = RunActive(function, [&] {
        function.dialog->findChild<CGridControl*>()->SelectCell(1, 1);
        press(function, kRemove);
        QCOMPARE(function.dialog->session().table().RowCount(), 3);
        bool asked = false;
        QTimer::singleShot(0, qApp, [&] {
            asked = qobject_cast<CDlgAjout*>(QApplication::activeModalWidget()) != nullptr;
            QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
        });
        press(function, kAdd);
        QVERIFY(asked);
        function.dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(function.dialog.get()));
        press(function, kOk);
    });
    QCOMPARE(result, 1);
    const KindDialog annual(ProfileKind::Annual);
    RunActive(annual, [&] {
        press(annual, kEdition);
        QVERIFY(annual.dialog->session().isEdition());
        press(annual, kEdition);
        QVERIFY(!annual.dialog->session().isEdition());
    });
}

// The platform itself turns the menu key into a menu event.
void KeyboardTest::MenuOpens() {
    const KindDialog shown(ProfileKind::Function);
    RunActive(shown, [&] {
        for (const int id : {kGrid, kAdd, kCancel}) {
            shown.Control(id)->setFocus();
            Press(Qt::Key_F10, Qt::ShiftModifier);
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu != nullptr);
            QVERIFY(shown.dialog->frameGeometry().contains(menu->pos()));
            QTest::keyClick(menu, Qt::Key_Escape);
            QVERIFY(!menu->isVisible());
            QVERIFY(shown.dialog->isVisible());
        }
        // A command can be chosen from it.
        QVERIFY(shown.dialog->findChild<CGridControl*>()->ValidateEntry(1, 2, u"5"_s));
        shown.Control(kGrid)->setFocus();
        Press(Qt::Key_F10, Qt::ShiftModifier);
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        for (int i = 0; i < 20 && (menu->activeAction() == nullptr ||
                                   menu->activeAction()->text() != u"Annuler"_s);
             ++i)
            QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
        QCOMPARE(shown.dialog->session().table().CellText(1, 2), shown.values.first());
    });
}

QTEST_MAIN(KeyboardTest)
#include "KeyboardTest.moc"
