// SPDX-License-Identifier: GPL-3.0-or-later
// The main dialog with the function: places, keys and commands.

#include "KindDialog.h"
#include "MessageScript.h"
#include "TestRows.h"
#include "VectorFile.h"
#include "chart/CGraphView.h"
#include "dialog/MeanLabel.h"
#include "grid/GridMetrics.h"

#include <QHeaderView>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using enum ProfileKind;

class DialogTest : public QObject {
    Q_OBJECT

private slots:
    void TemplateControls() {
        const KindDialog shown(12);
        shown.Run([&] {
            QCOMPARE(shown.dialog->windowTitle(), u" Logement"_s);
            QCOMPARE(shown.Place(kChartFrame), QRect(11, 33, 435, 375));
            QCOMPARE(shown.Place(kAdd), QRect(456, 0, 69, 23));
            QCOMPARE(shown.Place(kRemove), QRect(533, 0, 83, 23));
            QCOMPARE(shown.Place(kUndo), QRect(98, 0, 24, 23));
            QCOMPARE(shown.Place(kOk), QRect(464, 385, 60, 23));
            QCOMPARE(shown.Place(kCancel), QRect(542, 385, 60, 23));
            QVERIFY(!shown.Control(kHelp)->isVisible());
            QVERIFY(!shown.dialog->findChild<MeanLabel*>()->isVisible());
            for (const ControlTemplate& control : kMainDialog)
                QCOMPARE(shown.Control(control.id)->accessibleName(), control.accessible_name);
            QCOMPARE(shown.Control(kAdd)->objectName(), u"5008_Add"_s);
            QCOMPARE(shown.Control(kUndo)->toolTip(), u"Annuler"_s);
            QCOMPARE(shown.Button(kUndo)->text(), QString());
            QList<int> enabled = {kAdd,  kRemove, kOpen,    kSave,   kSaveAs, kUndo,  kRedo,
                                  kCopy, kPaste,  kEdition, kAdjust, kOk,     kCancel};
            enabled.removeIf([&](int id) { return !shown.Button(id)->isEnabled(); });
            QCOMPARE(enabled,
                     QList<int>({kAdd, kRemove, kOpen, kSaveAs, kCopy, kPaste, kOk, kCancel}));
        });
    }

    void GridWindow_data() { AddVectorRows("add_points"); }
    void GridWindow() {
        QFETCH(QJsonObject, vector);
        const QStringList times = VectorStrings(vector[u"input"][u"times"]);
        const KindDialog shown(static_cast<int>(times.size()));
        shown.Run([&] {
            shown.Add(u"1"_s, u"1"_s);
            const QJsonArray window = vector[u"expected"][u"window"].toArray();
            QCOMPARE(shown.Place(kGrid), QRect(window[0].toInt(), window[1].toInt(),
                                               window[2].toInt(), window[3].toInt()));
        });
    }

    // At the start everything but the controls of wide or high columns stands as in the template;
    // what the dialog gains in size goes to the chart and the rows.
    void ProfilePlaces_data() {
        AddRows<ProfileKind>(
            {{"annual", Annual}, {"monthly", Monthly}, {"weekly", Weekly}, {"daily", Daily}});
    }
    void ProfilePlaces() {
        QFETCH(const ProfileKind, row);
        const int wider = row == Monthly || row == Weekly ? 81 : 0;
        const int higher = row == Annual ? 16 : 0;
        const KindDialog shown(row);
        shown.Run([&] {
            const auto check = [&](QSize by, int more_rows) {
                const int x = by.width();
                const int y = by.height();
                QCOMPARE(shown.dialog->size(), QSize(626 + wider, 419) + by);
                QCOMPARE(shown.Place(kPaste), QRect(174, 0, 24, 23));
                QCOMPARE(shown.Place(kChartFrame), QRect(11, 33, 435 + x, 375 + y));
                QCOMPARE(shown.dialog->findChild<CGraphView*>()->geometry(),
                         shown.Place(kChartFrame));
                QCOMPARE(shown.Place(kHelp), QRect(371 + x, 0, 75, 23));
                QCOMPARE(shown.Place(kAdd), QRect(456 + x, 0, 69, 23));
                QCOMPARE(shown.Place(kRemove), QRect(533 + wider + x, 0, 83, 23));
                QCOMPARE(shown.Place(kGrid),
                         QRect(456 + x, 31, 159 + wider, 276 + higher + more_rows * 21));
                QCOMPARE(shown.Place(kEdition), QRect(456 + x, 323 + higher + y, 56, 16));
                QCOMPARE(shown.Place(kAdjust), QRect(540 + wider + x, 320 + higher + y, 75, 23));
                QCOMPARE(shown.Place(kOk), QRect(464 + (wider + 1) / 2 + x, 385 + y, 60, 23));
                QCOMPARE(shown.Place(kCancel), QRect(542 + (wider + 1) / 2 + x, 385 + y, 60, 23));
            };
            check({0, 0}, 0);
            const CGridControl& grid = *shown.Grid();
            QCOMPARE(grid.horizontalScrollBar()->maximum(), 0);
            QCOMPARE(grid.verticalScrollBar()->maximum(), row == Daily ? 12 : 0);
            QVERIFY(grid.horizontalHeader()->sectionResizeMode(1) != QHeaderView::Interactive);
            shown.dialog->resize(shown.dialog->size() + QSize(200, 115));
            check({200, 115}, 5);
        });
    }

    void Enlarging() {
        const KindDialog shown(100);
        shown.Run([&] {
            QHash<int, QRect> former;
            for (const ControlTemplate& control : kMainDialog)
                former[control.id] = shown.Place(control.id);
            shown.dialog->resize(shown.dialog->size() + QSize(200, 115));
            QCOMPARE(shown.Place(kChartFrame).size(), former[kChartFrame].size() + QSize(200, 115));
            QCOMPARE(shown.Place(kGrid), former[kGrid].adjusted(200, 0, 200, 105));
            for (const int id : {kOk, kCancel, kEdition, kAdjust})
                QCOMPARE(shown.Place(id), former[id].translated(200, 115));
            QCOMPARE(shown.Place(kAdd), former[kAdd].translated(200, 0));
            QCOMPARE(shown.Place(kOpen), former[kOpen]);
            // Not below the size of the template.
            shown.dialog->resize(100, 100);
            QCOMPARE(shown.Place(kChartFrame), former[kChartFrame]);
        });
    }

    void EnterNeverPressesAButton() {
        const KindDialog shown(2);
        const MessageScript script;
        RunDialog(*shown.dialog, [&] {
            for (int i = 0; i < 4; ++i)
                QTest::keyClick(shown.Grid(), Qt::Key_Return);
            QVERIFY(shown.dialog->isVisible());
            QCOMPARE(shown.Grid()->currentIndex().row(), 1);
            QTest::keyClick(shown.Control(kEdition), Qt::Key_Return);
            QVERIFY(shown.dialog->isVisible());
        });
    }

    void CurrentRowIsMarked() {
        const KindDialog shown(4);
        shown.Run([&] {
            const auto marked = [&] { return shown.Document().items.Highlighted(); };
            const auto current_is_selected = [&] {
                return shown.Grid()->selectionModel()->selectedIndexes() ==
                       QModelIndexList{shown.Grid()->currentIndex()};
            };
            QCOMPARE(marked(), std::set{0});
            QVERIFY(current_is_selected());
            shown.Grid()->SelectCell(3, 1);
            QCOMPARE(marked(), std::set{2});
            shown.Grid()->SelectCell(1, 2);
            QCOMPARE(marked(), std::set{0});
            // Rows that come and go above take the mark along.
            shown.Grid()->SelectCell(4, 2);
            shown.Add(u"-1"_s, u"0"_s);
            QCOMPARE(marked(), std::set{0});
            shown.Grid()->SelectCell(2, 2);
            shown.Click(kRemove);
            QCOMPARE(marked(), std::set{shown.Grid()->currentIndex().row()});
            QVERIFY(current_is_selected());
        });
    }

    void UndoGoesToTheChangedRow() {
        for (const ProfileKind kind : {Function, Daily}) {
            const KindDialog shown(kind, DisplayMode::Edit, 24);
            shown.Run([&] {
                CGridControl& grid = *shown.Grid();
                QVERIFY(grid.ValidateEntry(21, 2, u"3"_s));
                for (const int command : {kUndo, kRedo}) {
                    // Just the one that can be given is enabled.
                    QCOMPARE(shown.Button(kUndo)->isEnabled(), command == kUndo);
                    QCOMPARE(shown.Button(kRedo)->isEnabled(), command == kRedo);
                    grid.SelectCell(1, 1);
                    shown.Click(command);
                    QCOMPARE(grid.currentIndex(), grid.model()->index(20, 1));
                    grid.verticalScrollBar()->setValue(0);
                }
                // Also where it is current already.
                shown.Click(kUndo);
                QVERIFY(grid.viewport()->rect().contains(grid.visualRect(grid.currentIndex())));
            });
        }
    }

    void CancelAsks() {
        for (const int way : {0, 1, 2}) {
            const KindDialog shown(3);
            MessageScript script;
            for (const bool yes : {false, true})
                script.ExpectQuestion(u"Do you really want to cancel ?"_s, u"Cancelling"_s, yes);
            const int result = shown.Run([&] {
                // Nothing is said about an open entry that could not be taken.
                if (way == 0)
                    shown.Type(1, 2, u"1..2"_s);
                for (int i = 0; i < 2; ++i) {
                    QVERIFY(shown.dialog->isVisible());
                    if (way == 0)
                        shown.Click(kCancel);
                    else if (way == 1)
                        QTest::keyClick(shown.Grid(), Qt::Key_Escape);
                    else
                        shown.dialog->close();
                }
                QVERIFY(!shown.dialog->isVisible());
            });
            QCOMPARE(result, 2);
        }
    }

    void OkTakesTheOpenEntryOrStays() {
        const KindDialog shown(3);
        MessageScript script;
        script.Expect(
            u"Le nombre entré comporte plusieurs virgules !\nVeuillez rectifier la saisie."_s);
        const int result = shown.Run([&] {
            shown.Type(3, 2, u"9..1"_s);
            shown.Click(kOk);
            QVERIFY(shown.dialog->isVisible());
            QCOMPARE(shown.Column(2)[2], u"1100"_s);
            shown.Type(3, 2, u"9"_s);
            shown.Click(kOk);
        });
        QCOMPARE(result, 1);
        QCOMPARE(shown.Column(2)[2], u"9"_s);
    }

    void RefusedOkChangesNothing() {
        const KindDialog shown(3);
        int refusals = 1;
        shown.dialog->SetAcceptance([&refusals] { return refusals-- == 0; });
        const int result = shown.Run([&] {
            shown.Type(2, 2, u"9"_s);
            shown.Click(kOk);
            QVERIFY(shown.dialog->isVisible());
            QCOMPARE(shown.Grid()->currentIndex(), shown.Grid()->model()->index(1, 1));
            QCOMPARE(shown.Document().items.Highlighted(), std::set{1});
            QCOMPARE(shown.Column(2).join(u'|'), u"1000|9|1100"_s);
            shown.Click(kUndo);
            QCOMPARE(shown.Column(2)[1], u"1050"_s);
            shown.Click(kRedo);
            shown.Click(kOk);
        });
        QCOMPARE(result, 1);
        QCOMPARE(shown.Column(2)[1], u"9"_s);
    }

    void AddPoints() {
        const KindDialog shown(0);
        MessageScript script;
        shown.Run([&] {
            QCOMPARE(shown.Grid()->model()->rowCount(), 0);
            QVERIFY(!shown.Button(kRemove)->isEnabled());
            for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Return, Qt::Key_Down, Qt::Key_1})
                QTest::keyClick(shown.Grid(), key);
            QVERIFY(shown.Grid()->hasFocus());
            shown.Add(u"3"_s, u"4"_s);
            shown.Add(u"1"_s, u"5"_s);
            shown.Add(u"1"_s, u"2,50"_s);
            QCOMPARE(shown.Column(1).join(u'|'), u"1|1|3"_s);
            QCOMPARE(shown.Column(2).join(u'|'), u"5|2.5|4"_s);
            QCOMPARE(shown.Grid()->currentIndex().row(), 1);
            // Cancel leaves everything; the key Insert opens the dialog too.
            shown.Add([&] { QTest::keyClick(shown.Grid(), Qt::Key_Insert); }, u"5"_s, u"5"_s,
                      Qt::Key_Escape);
            QCOMPARE(shown.Column(1).size(), 3);
            QVERIFY(shown.dialog->session().isModified());
            // What is no number is reported, and counts as the 0 that stood there before.
            script.Expect(u"Veuillez entrer un nombre."_s);
            shown.Add(u"7"_s, u"1e99"_s);
            QCOMPARE(shown.Column(1).last() + u' ' + shown.Column(2).last(), u"7 0"_s);
        });
    }

    void RemovePoints() {
        const KindDialog shown(5);
        MessageScript script;
        shown.Run([&] {
            shown.Grid()->ValidateEntry(1, 2, u"5"_s);
            // All: nothing goes, and what can be undone stays.
            shown.Grid()->selectAll();
            script.Expect(u"Deux points au moins doivent rester."_s);
            shown.Click(kRemove);
            QVERIFY2(script.Done(), qPrintable(script.Report()));
            shown.Grid()->clearSelection();
            shown.Click(kRemove);
            QCOMPARE(shown.Column(1).size(), 5);
            QVERIFY(shown.Button(kUndo)->isEnabled());
            // Rows that do not touch each other.
            for (const auto& [row, column] : {std::pair(1, 0), {3, 1}})
                shown.Grid()->selectionModel()->select(shown.Grid()->model()->index(row, column),
                                                       QItemSelectionModel::Select);
            shown.Click(kRemove);
            QCOMPARE(shown.Column(1).join(u'|'), u"0|2|4"_s);
            QVERIFY(!shown.Button(kUndo)->isEnabled());
            QCOMPARE(shown.Grid()->height(), 3 * kGridRowHeight + kGridHeaderHeight);
            shown.Grid()->SelectCell(1, 1);
            shown.Click(kRemove);
            QCOMPARE(shown.Column(1).size(), 2);
            QVERIFY(!shown.Button(kRemove)->isEnabled());
        });
    }

    // Undo and redo mark a saved profile as modified by their buttons only.
    void CommandsThatMarkModified() {
        const KindDialog shown(Monthly, DisplayMode::OpenFile);
        const MessageScript script;
        shown.Run([&] {
            QVERIFY(shown.Grid()->ValidateEntry(1, 2, u"5"_s));
            const std::pair<std::function<void()>, bool> commands[] = {
                {[] { Press(Qt::Key_Z, Qt::ControlModifier); }, false},
                {[] { Press(Qt::Key_Y, Qt::ControlModifier); }, false},
                {[&] { shown.Click(kUndo); }, true},
                {[&] { shown.Click(kRedo); }, true},
                {[&] { shown.Click(kCopy); }, true},
                {[] { Press(Qt::Key_C, Qt::ControlModifier); }, true}};
            for (const auto& [give, marks] : commands) {
                shown.Click(kSave);
                QVERIFY(!shown.dialog->session().isModified());
                give();
                QCOMPARE(shown.dialog->session().isModified(), marks);
            }
        });
    }

    void MeanIsReadOut() {
        const KindDialog shown(Annual);
        shown.Run([&] {
            const auto* const mean = shown.dialog->findChild<MeanLabel*>();
            const QColor plain = shown.dialog->palette().color(QPalette::WindowText);
            const auto is_plain = [&] {
                return mean->palette().color(QPalette::WindowText) == plain;
            };
            QVERIFY(mean->isVisible() && is_plain());
            QCOMPARE(mean->text(), u"Moyenne : 1.000"_s);
            // Nothing rescales the column in edition mode: sums of 11.994, 11.996 and 13.
            shown.Button(kEdition)->click();
            const std::tuple<QString, QString, bool> cases[] = {{u"0.994"_s, u"0.999"_s, false},
                                                                {u"0.996"_s, u"1.000"_s, true},
                                                                {u"2"_s, u"1.083"_s, false}};
            for (const auto& [entry, text, right] : cases) {
                QVERIFY(shown.Grid()->ValidateEntry(1, 2, entry));
                QCOMPARE(mean->text(), u"Moyenne : "_s + text);
                QCOMPARE(is_plain(), right);
            }
        });
    }

    // A caller may hand over any number; no mode makes such a kind ask for a file.
    void UnknownKindOpensEmpty() {
        const MessageScript script;
        for (const int mode : {1, 2, 3, 9}) {
            SessionSetup setup;
            setup.kind = static_cast<ProfileKind>(4);
            setup.mode = static_cast<DisplayMode>(mode);
            CDlgGridChart dialog(std::move(setup));
            bool shown = false;
            const int result = RunDialog(dialog, [&] {
                shown = true;
                QCOMPARE(dialog.windowTitle(), QString());
                for (const QString& name : {u"5012_OUVRIR"_s, u"5013_ENREG"_s, u"5017_ENREGSOUS"_s})
                    QVERIFY(!dialog.findChild<QWidget*>(name)->isEnabled());
            });
            QVERIFY(shown && result == 2);
        }
    }
};

QTEST_MAIN(DialogTest)
#include "DialogTest.moc"
