// SPDX-License-Identifier: GPL-3.0-or-later
// The main dialog in the hands of a user without a mouse.

#include "KindDialog.h"
#include "MessageScript.h"

#include <QAccessible>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

QString FocusName() {
    const QWidget* const focus = QApplication::focusWidget();
    return focus != nullptr ? focus->objectName() : QString();
}

}  // namespace

class KeyboardTest : public QObject {
    Q_OBJECT

private slots:
    void EveryControlIsReached_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("mode");
        for (int kind = -1; kind <= 3; ++kind) {
            for (const int mode : {2, 3})
                QTest::addRow("kind %d, mode %d", kind, mode) << kind << mode;
        }
    }
    void EveryControlIsReached() {
        QFETCH(int, kind);
        QFETCH(int, mode);
        const KindDialog shown(static_cast<ProfileKind>(kind), static_cast<DisplayMode>(mode));
        shown.Run([&] {
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

    void LeavingTheGridTakesTheEntry() {
        const KindDialog shown(ProfileKind::Function);
        MessageScript script;
        shown.Run([&] {
            shown.Type(2, 2, u"7,5"_s);
            Press(Qt::Key_Tab, Qt::ControlModifier);
            QCOMPARE(shown.Column(2)[1], u"7.5"_s);
            QCOMPARE(shown.Grid()->currentIndex().row(), 1);
            QVERIFY(FocusName() != shown.Grid()->objectName());
            // An entry that is refused keeps the user at the grid.
            shown.Grid()->setFocus();
            script.Expect(
                u"Le nombre entré comporte plusieurs virgules !\nVeuillez rectifier la saisie."_s);
            shown.Type(2, 2, u"1..2"_s);
            Press(Qt::Key_Tab, Qt::ControlModifier);
            QCOMPARE(shown.Column(2)[1], u"7.5"_s);
            QVERIFY(shown.Grid()->hasFocus() ||
                    shown.Grid()->isAncestorOf(QApplication::focusWidget()));
        });
    }

    void FocusedButtonIsPressed() {
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
            const auto press = [&](const KindDialog& shown, int id) {
                shown.Control(id)->setFocus(Qt::TabFocusReason);
                Press(key);
            };
            const KindDialog function(ProfileKind::Function, DisplayMode::Edit, 4);
            const int result = function.Run([&] {
                function.Grid()->SelectCell(1, 1);
                press(function, kRemove);
                QCOMPARE(function.Column(1).size(), 3);
                function.Add([&] { press(function, kAdd); }, {}, {}, Qt::Key_Escape);
                press(function, kOk);
            });
            QCOMPARE(result, 1);
            const KindDialog annual(ProfileKind::Annual);
            annual.Run([&] {
                for (const bool on : {true, false}) {
                    press(annual, kEdition);
                    QCOMPARE(annual.dialog->session().isEdition(), on);
                }
                // An assistive tool sends no click.
                auto* const box = QAccessible::queryAccessibleInterface(annual.Control(kEdition));
                for (const bool on : {true, false}) {
                    box->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
                    QCOMPARE(annual.dialog->session().isEdition(), on);
                }
            });
        }
    }

    // The platform itself turns the menu key into a menu event.
    void MenuOpens() {
        const KindDialog shown(ProfileKind::Function);
        shown.Run([&] {
            const auto open = [&](int id) {
                shown.Control(id)->setFocus();
                Press(Qt::Key_F10, Qt::ShiftModifier);
                return qobject_cast<QMenu*>(QApplication::activePopupWidget());
            };
            for (const int id : {kAdd, kCancel, kGrid}) {
                QMenu* const menu = open(id);
                QVERIFY(menu != nullptr);
                QVERIFY(shown.dialog->frameGeometry().contains(menu->pos()));
                QTest::keyClick(menu, Qt::Key_Escape);
                QVERIFY(!menu->isVisible() && shown.dialog->isVisible());
            }
            // The mouse opens it on a control that is disabled too.
            QVERIFY(!shown.Control(kUndo)->isEnabled());
            QTest::mouseClick(shown.dialog->windowHandle(), Qt::RightButton, {},
                              shown.Control(kUndo)->geometry().center());
            QVERIFY(QApplication::activePopupWidget() != nullptr);
            QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
            // A command can be chosen from it.
            QVERIFY(shown.Grid()->ValidateEntry(1, 2, u"5"_s));
            QMenu* const menu = open(kGrid);
            const auto at_undo = [&] {
                return menu->activeAction() != nullptr &&
                       menu->activeAction()->text() == u"Annuler"_s;
            };
            for (int i = 0; i < 20 && !at_undo(); ++i)
                QTest::keyClick(menu, Qt::Key_Down);
            QTest::keyClick(menu, Qt::Key_Return);
            QCOMPARE(shown.Column(2).first(), shown.values.first());
        });
    }
};

QTEST_MAIN(KeyboardTest)
#include "KeyboardTest.moc"
