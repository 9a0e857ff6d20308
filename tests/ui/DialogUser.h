// SPDX-License-Identifier: GPL-3.0-or-later
// Who does in the dialog what the cases of tests/cases say, and looks at it.

#pragma once

#include "FileDialogScript.h"
#include "KindDialog.h"
#include "MessageScript.h"
#include "TestFiles.h"
#include "TestRows.h"
#include "VectorFile.h"
#include "chart/CGraphView.h"
#include "dialog/DialogTemplate.h"
#include "dialog/MeanLabel.h"
#include "dialog/ReadProgress.h"
#include "dialog/UserPrompts.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonObject>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextEdit>

#include <algorithm>

using namespace Qt::StringLiterals;

inline QString YesOrNo(bool yes) {
    return yes ? u"yes"_s : u"no"_s;
}

// Row and column from 1 on; "0 0" for none.
inline QString CellName(const QModelIndex& cell) {
    return u"%1 %2"_s.arg(cell.row() + 1).arg(cell.column() + 1);
}

inline QString FocusName() {
    const QWidget* const focus = QApplication::focusWidget();
    return focus != nullptr ? focus->accessibleName() : QString();
}

// The scripts of a case, and the folder of the program with three daily profiles.
struct Surroundings {
    Surroundings() {
        const QByteArray bytes = "HEURES =" + QByteArray(" 0").repeated(24) +
                                 "\nCOEFFICIENT =" + QByteArray(" 0.50 1.50").repeated(12) + "\n";
        for (const QString& name : {u"bas.dat"_s, u"calme.dat"_s, u"haut.dat"_s})
            QVERIFY(WriteAll(folder.path() + u"/Data/Profils/Journalier/"_s + name, bytes));
    }

    MessageScript messages;
    FileDialogScript files;
    QWidget elsewhere;  // another window of the host
    const QTemporaryDir folder;
};

// Who follows the steps of a case. A step: messages that come, whether the user really cancels (a
// list of answers) and other questions, files to save to, the content of a file to open; what the
// user does, in words; the steps "in" the dialog that this opens; texts that a window "shows"; the
// values of its "pale" line; what is "written"; what the user sees then. Rows, headers and what can
// be undone stay where the step does not say what becomes of them.
class User {
public:
    User(QWidget& window, Surroundings& around)
        : m_window(window), m_dialog(qobject_cast<CDlgGridChart*>(&window)), m_around(around) {}

    void Follow(const QJsonArray& steps) {
        for (const QJsonValue& step : steps) {
            Take(step.toObject());
            if (!QTest::currentTestFailed())
                continue;
            qInfo() << "in" << step;
            return;
        }
    }

private:
    void Take(const QJsonObject& step) {
        const QHash<QString, QString> before =
            m_dialog != nullptr ? Seen() : QHash<QString, QString>();
        for (const QString& text : VectorStrings(step[u"messages"]))
            m_around.messages.Expect(text.section(u'|', 0, 0), text.section(u'|', 1));
        for (const QString& answer : VectorStrings(step[u"cancelling"]))
            m_around.messages.ExpectQuestion(u"Do you really want to cancel ?"_s, u"Cancelling"_s,
                                             answer == u"yes");
        for (const QString& question : VectorStrings(step[u"questions"]))
            m_around.messages.ExpectQuestion(question.section(u'|', 0, 0), {},
                                             question.section(u'|', 1) == u"yes");
        if (step.contains(u"save"))
            m_around.files.ExpectSave(m_around.folder.path() + step[u"save"].toString(),
                                      step[u"type"].toInt());
        if (step.contains(u"open")) {
            const QString path = m_around.folder.path() + u"/points.csv"_s;
            QVERIFY(WriteAll(path, step[u"open"].toString().toUtf8()));
            m_around.files.ExpectOpen(path);
        }

        const QJsonArray inner = step[u"in"].toArray();
        bool done = inner.isEmpty();
        QTimer opened;
        QObject::connect(&opened, &QTimer::timeout, &opened, [&] {
            const QWidget* const focus = QApplication::focusWidget();
            QWidget* const window = QApplication::activeModalWidget();
            if (done || window == &m_window || focus == nullptr || focus->window() != window)
                return;
            done = true;
            User(*window, m_around).Follow(inner);
            if (window->isVisible())
                qobject_cast<QDialog*>(window)->done(0);
        });
        opened.start(0);
        for (const QString& action : VectorStrings(step[u"do"])) {
            Act(action.section(u' ', 0, 0), action.section(u' ', 1));
            if (QTest::currentTestFailed())
                return;
        }
        QTRY_VERIFY(done);
        if (!inner.isEmpty())
            QVERIFY(QTest::qWaitForWindowActive(&m_window));

        for (const QString& text : VectorStrings(step[u"shows"]))
            QTRY_VERIFY2(Shown().contains(text), qPrintable(text + u" in "_s + Shown()));
        if (step.contains(u"pale"))
            QTRY_COMPARE(PaleValues(), step[u"pale"].toString());
        if (step.contains(u"written"))
            QCOMPARE(WithPlainEnds(ReadAll(m_around.folder.path() + step[u"save"].toString())),
                     step[u"written"].toString().toUtf8());
        if (m_dialog == nullptr)  // its message may still come
            return;
        QVERIFY2(m_around.messages.Done(), qPrintable(m_around.messages.Report()));
        const QHash<QString, QString> seen = Seen();
        QJsonObject expected = step[u"see"].toObject();
        for (const QString& stays :
             {u"times"_s, u"values"_s, u"names"_s, u"headers"_s, u"undo"_s, u"redo"_s}) {
            if (!expected.contains(stays))
                expected[stays] = before[stays];
        }
        for (auto one = expected.begin(); one != expected.end(); ++one)
            QVERIFY2(seen.value(one.key(), u"?"_s) == one.value().toString(),
                     qPrintable(one.key() + u" is "_s + seen.value(one.key())));
    }

    void Act(const QString& verb, const QString& what) {
        if (verb == u"keys") {
            for (const QString& name : what.split(u' ')) {
                const QKeyCombination key = QKeySequence::fromString(name)[0];
                QTest::keyClick(Target(), key.key(), key.keyboardModifiers());
            }
        } else if (verb == u"type") {
            for (const QChar letter : what)  // the first one opens an editor
                QTest::keyClicks(Target(), letter);
        } else if (verb == u"delete") {  // as the platforms send it
            QTest::sendKeyEvent(QTest::Click, Target(), Qt::Key_Delete, u"\x7f"_s, Qt::NoModifier);
        } else if (verb == u"tour") {
            m_tour.clear();
            Act(u"keys"_s, u"Ctrl+"_s + what);
            for (; FocusName() != u"5000" && m_tour.size() < 20; Act(u"keys"_s, what))
                m_tour.append(FocusName());
        } else if (verb == u"list") {
            QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
        } else if (verb == u"choose") {
            auto* const list =
                qobject_cast<QComboBox*>(QApplication::activePopupWidget()->parentWidget());
            list->view()->setCurrentIndex(list->model()->index(list->findText(what), 0));
            QTest::keyClick(list->view(), Qt::Key_Return);
        } else if (verb == u"menu") {
            ChooseInMenu(what);
        } else if (verb == u"clipboard") {
            QGuiApplication::clipboard()->setText(Texts(what).join(u'\n'));
        } else if (verb == u"undo") {  // all
            while (m_dialog->session().canUndo())
                Act(u"click"_s, u"Annuler"_s);
        } else if (verb == u"elsewhere") {
            m_around.elsewhere.show();
            m_around.elsewhere.activateWindow();
        } else if (verb == u"close") {
            m_window.close();
        } else if (QWidget* const control = Control(what); control != nullptr) {
            ActOn(*control, verb);
        } else {
            ActInGrid(verb, what.section(u' ', 0, 0).toInt(), what.section(u' ', 1, 1).toInt(),
                      what.section(u' ', 2));
        }
    }

    // By the keyboard alone.
    void ChooseInMenu(const QString& entry) {
        Act(u"keys"_s, u"Shift+F10"_s);
        for (int moves = 0; moves < 50; ++moves) {
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu != nullptr);
            const QAction* const at = menu->activeAction();
            const bool found = at != nullptr && at->text() == entry;
            const bool holds_it =
                at != nullptr && at->menu() != nullptr && Entries(*at->menu()).contains(entry);
            QTest::keyClick(menu, found ? Qt::Key_Return : holds_it ? Qt::Key_Right : Qt::Key_Down);
            if (found)
                return;
        }
        QFAIL(qPrintable(entry));
    }

    // All texts of the window, one a line.
    QString Shown() const {
        QStringList texts;
        for (const QTextEdit* const text : m_window.findChildren<QTextEdit*>())
            texts.append(text->toPlainText());
        for (const QLabel* const label : m_window.findChildren<QLabel*>())
            texts.append(label->text());
        return texts.join(u'\n');
    }

    // The values of the pale line over the chart of this window or of the one below it.
    QString PaleValues() const {
        const QObject& owner = m_dialog != nullptr ? m_window : *m_window.parent();
        const ChartItems& pale = owner.findChild<CGraphControl*>()->document().preview;
        QStringList values;
        for (int i = 0; i < pale.Count(); ++i)
            values.append(QString::number(pale.Value(i, pale.GroupCount() - 1)));
        return values.join(u'|');
    }

    // Where the keyboard is.
    static QWidget* Target() {
        QWidget* const popup = QApplication::activePopupWidget();
        if (popup == nullptr)
            return QApplication::focusWidget();
        return popup->focusWidget() != nullptr ? popup->focusWidget() : popup;
    }

    void ActOn(QWidget& control, const QString& verb) {
        if (verb == u"click")
            QTest::mouseClick(&control, Qt::LeftButton);
        else if (verb == u"right")  // also where it is disabled
            QTest::mouseClick(m_window.windowHandle(), Qt::RightButton, {},
                              control.geometry().center());
        else if (verb == u"return")
            QTest::keyClick(&control, Qt::Key_Return);
        else if (verb == u"focus")
            control.setFocus(Qt::TabFocusReason);
        else if (verb == u"toggle")  // as an assistive tool, which sends no click
            QAccessible::queryAccessibleInterface(&control)->actionInterface()->doAction(
                QAccessibleActionInterface::toggleAction());
        else
            QFAIL(qPrintable(verb));
    }

    void ActInGrid(const QString& verb, int row, int column, const QString& text) {
        CGridControl& grid = *m_dialog->findChild<CGridControl*>();
        const QModelIndex cell = grid.model()->index(row - 1, column - 1);
        const QHeaderView& titles = *grid.horizontalHeader();
        if (verb == u"select")
            grid.SelectCell(row, column);
        else if (verb == u"add")
            grid.selectionModel()->select(cell, QItemSelectionModel::Select);
        else if (verb == u"clear")
            grid.clearSelection();
        else if (verb == u"enter")
            grid.ValidateEntry(row, column, text);
        else if (verb == u"scroll")
            grid.verticalScrollBar()->setValue(row);
        else if (verb == u"range")  // from that row to the row of the text
            grid.selectionModel()->select(
                QItemSelection(cell, grid.model()->index(text.toInt() - 1, column - 1)),
                QItemSelectionModel::ClearAndSelect);
        else if (verb == u"press")
            QTest::mouseClick(grid.viewport(), text.isEmpty() ? Qt::LeftButton : Qt::RightButton,
                              {}, grid.visualRect(cell).center());
        else if (verb == u"header" && row > 0)
            QTest::mouseClick(grid.verticalHeader()->viewport(), Qt::LeftButton, {}, {5, 5});
        else if (verb == u"header")
            QTest::mouseClick(titles.viewport(), Qt::LeftButton, {},
                              {titles.sectionViewportPosition(column - 1) + 20, 8});
        else
            QFAIL(qPrintable(verb));
    }

    // Of a menu and its submenus, with a "-" for a line.
    static QStringList Entries(const QMenu& menu) {
        QStringList entries;
        for (const QAction* const action : menu.actions()) {
            entries.append(action->isSeparator() ? u"-"_s : action->text());
            if (!action->isEnabled())
                entries.last() += u" off"_s;
            if (action->menu() != nullptr)
                entries.append(u"("_s + Entries(*action->menu()).join(u'|') + u")"_s);
        }
        return entries;
    }

    QWidget* Control(const QString& name) const {
        for (const ControlTemplate& control : kMainDialog) {
            if (m_dialog != nullptr && !name.isEmpty() && control.accessible_name == name)
                return KindDialog::Control(*m_dialog, control.id);
        }
        return nullptr;
    }

    // What an assistive tool hears of the chart as shown.
    QString ReadOut() const {
        auto* const view = m_dialog->findChild<CGraphView*>();
        if (view == nullptr)
            return {};
        view->repaint();
        return QAccessible::queryAccessibleInterface(view)->text(QAccessible::Description);
    }

    QHash<QString, QString> Seen() const {
        const ProfileSession& session = m_dialog->session();
        const CGridControl& grid = *m_dialog->findChild<CGridControl*>();
        const auto column = [&session](int number) {
            return session.table().Column(number).join(u'|');
        };
        QStringList selected;
        for (const QModelIndex& index : grid.selectionModel()->selectedIndexes())
            selected.append(CellName(index));
        selected.sort();
        QStringList enabled;
        for (const ControlTemplate& control : kMainDialog) {
            const auto* const button =
                qobject_cast<QAbstractButton*>(Control(control.accessible_name.toString()));
            if (button != nullptr && button->isVisible() && button->isEnabled())
                enabled.append(control.accessible_name.toString());
        }
        QStringList headers;
        for (int number = 1; number <= session.table().ColumnCount(); ++number)
            headers.append(session.table().HeaderText(number));
        QStringList marked;
        if (const auto* const chart = m_dialog->findChild<CGraphControl*>(); chart != nullptr) {
            for (const int item : chart->document().items.Highlighted())
                marked.append(QString::number(item + 1));
        }
        QStringList checked;
        for (const QAction* const action : m_dialog->findChildren<QAction*>()) {
            if (action->isChecked())
                checked.append(action->text());
        }
        QString entry = u"none"_s;
        for (const QLineEdit* const editor : grid.findChildren<QLineEdit*>())
            entry = editor->isVisible() ? editor->text() : entry;
        const auto* const mean = m_dialog->findChild<MeanLabel*>();
        const bool warns = mean->palette().color(QPalette::WindowText) !=
                           m_dialog->palette().color(QPalette::WindowText);
        const QWidget* const popup = QApplication::activePopupWidget();
        const bool inside = popup != nullptr && m_dialog->frameGeometry().contains(popup->pos());
        QStringList written;
        const QDir folder(m_around.folder.path());
        for (const QString& name : folder.entryList(QDir::Files))
            written.append(name + u' ' +
                           QString::fromLatin1(ReadAll(folder.filePath(name))).mid(1, 3));
        return {{u"title"_s, m_dialog->windowTitle()},
                {u"written"_s, written.join(u'|')},
                {u"picture"_s, YesOrNo(!QGuiApplication::clipboard()->image().isNull())},
                {u"open"_s, YesOrNo(m_dialog->isVisible())},
                {u"times"_s, column(1)},
                {u"values"_s, column(2)},
                {u"names"_s, column(3)},
                {u"current"_s, CellName(grid.currentIndex())},
                {u"in sight"_s,
                 YesOrNo(grid.viewport()->rect().contains(grid.visualRect(grid.currentIndex())))},
                {u"headers"_s, headers.join(u'|')},
                {u"selected"_s, selected.join(u'|')},
                {u"marked"_s, marked.join(u'|')},
                {u"focus"_s, FocusName()},
                {u"entry"_s, entry},
                {u"tour"_s, m_tour.join(u'|')},
                {u"enabled"_s, enabled.join(u'|')},
                {u"undo"_s, YesOrNo(session.canUndo())},
                {u"back"_s, YesOrNo(session.canReturnToStart())},
                {u"redo"_s, YesOrNo(session.canRedo())},
                {u"icon"_s, YesOrNo(m_around.messages.LastIcon() != MessageIcon::None)},
                {u"modified"_s, YesOrNo(session.isModified())},
                {u"edition"_s, YesOrNo(session.isEdition())},
                {u"saved"_s, YesOrNo(session.isSaved())},
                {u"clipboard"_s, QGuiApplication::clipboard()->text().replace(u'\n', u'|')},
                {u"mean"_s, mean->text() + (warns ? u" !"_s : QString())},
                {u"choices"_s, session.table().Choices().join(u'|')},
                {u"menu"_s, popup == nullptr ? u"none"_s
                            : inside         ? u"inside"_s
                                             : u"outside"_s},
                {u"entries"_s, Entries(*m_dialog->findChild<QMenu*>()).join(u'|')},
                {u"zoomed"_s, YesOrNo(m_dialog->findChild<CGraphView*>() != nullptr &&
                                      m_dialog->findChild<CGraphView*>()->Zoom().isZoomed())},
                {u"line"_s, ReadOut()},
                {u"checked"_s, checked.join(u'|')},
                {u"chart"_s, YesOrNo(!marked.isEmpty())}};
    }

    QWidget& m_window;
    CDlgGridChart* const m_dialog;
    Surroundings& m_around;
    QStringList m_tour;
};
