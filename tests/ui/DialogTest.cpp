// The main dialog with the function: places, keys and commands.

#include "MessageScript.h"
#include "RunDialog.h"
#include "VectorFile.h"
#include "chart/CGraphControl.h"
#include "grid/CDlgAjout.h"
#include "grid/CGridControl.h"
#include "profiles/MeanLabel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString kCancelQuestion = u"Do you really want to cancel ?"_s;
const QString kCancelCaption = u"Cancelling"_s;

// The dialog on a function with the points (0, 10), (1, 11), ... until the test ends.
struct FunctionDialog {
    explicit FunctionDialog(int points) {
        for (int i = 0; i < points; ++i) {
            times.append(QString::number(i));
            values.append(QString::number(10 + i));
        }
        SessionSetup setup;
        setup.name = &name;
        setup.times = &times;
        setup.values = &values;
        dialog = std::make_unique<CDlgGridChart>(std::move(setup));
    }

    QWidget* Control(int id) const {
        const QString start = QString::number(id) + u'_';
        for (QWidget* const child : dialog->findChildren<QWidget*>()) {
            if (child->objectName().startsWith(start) && child->objectName() != u"5001_Chart")
                return child;
        }
        qFatal("no control %d", id);
    }
    QAbstractButton* Button(int id) const { return qobject_cast<QAbstractButton*>(Control(id)); }
    void Click(int id) const { QTest::mouseClick(Control(id), Qt::LeftButton); }
    CGridControl* Grid() const { return dialog->findChild<CGridControl*>(); }
    const CDocControl& Document() const { return dialog->findChild<CGraphControl*>()->document(); }
    QStringList Times() const { return dialog->session().table().Column(1); }
    QStringList Values() const { return dialog->session().table().Column(2); }
    bool ChartShowsTheGrid() const {
        for (int i = 0; i < Times().size(); ++i) {
            if (Document().Value(i, 0) != Times()[i].toDouble() ||
                Document().Value(i, 1) != Values()[i].toDouble())
                return false;
        }
        return Document().ItemCount() == Times().size();
    }

    QString name = u"Function editor"_s;
    QStringList times;
    QStringList values;
    std::unique_ptr<CDlgGridChart> dialog;
};

// What the user does in the next "Add a point" dialog.
void AnswerAddDialog(const QString& time, const QString& value, Qt::Key last) {
    QTimer::singleShot(0, qApp, [=] {
        auto* const add = qobject_cast<CDlgAjout*>(QApplication::activeModalWidget());
        QVERIFY(add != nullptr);
        const QList<QLineEdit*> fields = add->findChildren<QLineEdit*>();
        QCOMPARE(fields.size(), 2);
        fields[0]->setFocus();
        QTest::keyClicks(fields[0], time);
        fields[1]->selectAll();
        QTest::keyClicks(fields[1], value);
        QTest::keyClick(add, last);
    });
}

}  // namespace

class DialogTest : public QObject {
    Q_OBJECT

private slots:
    void TemplatePlaces();
    void GridWindow_data() { AddVectorRows("add_points"); }
    void GridWindow();
    void Enlarging();
    void NamesOfControls();
    void TypingReachesTheChart();
    void EnterNeverPressesAButton();
    void CurrentRowIsMarked();
    void CancelAsks_data();
    void CancelAsks();
    void OkTakesTheOpenEntry();
    void OkStaysWithARefusedEntry();
    void AddPoints();
    void AddForgetsTheHistory();
    void RemovePoints();
    void CommandsFollowTheState();
    void NoPoints();
    void MeanIsReadOut();
    void UnknownKindOpensEmpty();
};

void DialogTest::TemplatePlaces() {
    const FunctionDialog shown(12);
    RunDialog(*shown.dialog, [&] {
        QCOMPARE(shown.dialog->windowTitle(), u" Function editor"_s);
        QCOMPARE(shown.Control(kChartFrame)->geometry(), QRect(11, 33, 435, 375));
        QCOMPARE(shown.Control(kAdd)->geometry(), QRect(456, 0, 69, 23));
        QCOMPARE(shown.Control(kRemove)->geometry(), QRect(533, 0, 83, 23));
        QCOMPARE(shown.Control(kUndo)->geometry(), QRect(98, 0, 24, 23));
        QCOMPARE(shown.Control(kOk)->geometry(), QRect(464, 385, 60, 23));
        QCOMPARE(shown.Control(kCancel)->geometry(), QRect(542, 385, 60, 23));
        QVERIFY(!shown.Control(kHelp)->isVisible());
        // Nothing lies over anything else, and nothing leaves the dialog.
        QList<QWidget*> controls;
        for (const ControlTemplate& control : kMainDialog) {
            if (shown.Control(control.id)->isVisible())
                controls.append(shown.Control(control.id));
        }
        for (qsizetype i = 0; i < controls.size(); ++i) {
            QVERIFY(shown.dialog->rect().contains(controls[i]->geometry()));
            for (qsizetype k = 0; k < i; ++k)
                QVERIFY2(!controls[i]->geometry().intersects(controls[k]->geometry()),
                         qPrintable(controls[i]->objectName() + controls[k]->objectName()));
        }
    });
}

void DialogTest::GridWindow() {
    QFETCH(QJsonObject, vector);
    const QStringList times = VectorStrings(vector[u"input"][u"times"]);
    const FunctionDialog shown(static_cast<int>(times.size()));
    RunDialog(*shown.dialog, [&] {
        AnswerAddDialog(u"1"_s, u"1"_s, Qt::Key_Return);
        shown.Click(kAdd);
        const QJsonArray window = vector[u"expected"][u"window"].toArray();
        QCOMPARE(shown.Grid()->geometry(),
                 QRect(window[0].toInt(), window[1].toInt(), window[2].toInt(), window[3].toInt()));
    });
}

void DialogTest::Enlarging() {
    const FunctionDialog shown(100);
    RunDialog(*shown.dialog, [&] {
        QHash<int, QRect> former;
        for (const ControlTemplate& control : kMainDialog)
            former[control.id] = shown.Control(control.id)->geometry();
        shown.dialog->resize(shown.dialog->size() + QSize(200, 105));
        const auto now = [&](int id) { return shown.Control(id)->geometry(); };
        QCOMPARE(now(kChartFrame).size(), former[kChartFrame].size() + QSize(200, 105));
        QCOMPARE(now(kGrid), former[kGrid].adjusted(200, 0, 200, 105));
        for (const int id : {kOk, kCancel, kEdition, kAdjust})
            QCOMPARE(now(id), former[id].translated(200, 105));
        QCOMPARE(now(kAdd), former[kAdd].translated(200, 0));
        QCOMPARE(now(kOpen), former[kOpen]);
        // Not below the size of the template.
        shown.dialog->resize(100, 100);
        QCOMPARE(now(kChartFrame), former[kChartFrame]);
    });
}

void DialogTest::NamesOfControls() {
    const FunctionDialog shown(3);
    RunDialog(*shown.dialog, [&] {
        for (const ControlTemplate& control : kMainDialog) {
            QCOMPARE(shown.Control(control.id)->accessibleName(),
                     control.accessible_name.toString());
        }
        QCOMPARE(shown.Control(kAdd)->objectName(), u"5008_Add"_s);
        QCOMPARE(shown.Control(kUndo)->toolTip(), u"Annuler"_s);
        QCOMPARE(shown.Button(kUndo)->text(), QString());
    });
}

void DialogTest::TypingReachesTheChart() {
    const FunctionDialog shown(5);
    const MessageScript script;
    RunDialog(*shown.dialog, [&] {
        QVERIFY(QTest::qWaitForWindowActive(shown.dialog.get()));
        QVERIFY(shown.Grid()->hasFocus());
        QVERIFY(shown.ChartShowsTheGrid());
        shown.Grid()->SelectCell(2, 2);
        QTest::keyClicks(shown.Grid(), u"3"_s);
        QTest::keyClicks(QApplication::focusWidget(), u",5"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(shown.Values()[1], u"3.5"_s);
        QVERIFY(shown.ChartShowsTheGrid());
        QTest::keyClick(shown.Grid(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(shown.Values()[1], u"11"_s);
        QVERIFY(shown.ChartShowsTheGrid());
        QTest::keyClick(shown.Grid(), Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(shown.Values()[1], u"3.5"_s);
    });
    QVERIFY2(script.Done(), qPrintable(script.Report()));
    // The caller's own lists are not the live rows.
    QCOMPARE(shown.values[1], u"11"_s);
}

void DialogTest::EnterNeverPressesAButton() {
    const FunctionDialog shown(2);
    const MessageScript script;
    RunDialog(*shown.dialog, [&] {
        for (int i = 0; i < 4; ++i)
            QTest::keyClick(shown.Grid(), Qt::Key_Return);
        QVERIFY(shown.dialog->isVisible());
        QCOMPARE(shown.Grid()->currentIndex().row(), 1);
        QTest::keyClick(shown.Control(kEdition), Qt::Key_Return);
        QVERIFY(shown.dialog->isVisible());
    });
    const FunctionDialog accepted(2);
    QCOMPARE(RunDialog(*accepted.dialog,
                       [&] {
                           QVERIFY(QTest::qWaitForWindowActive(accepted.dialog.get()));
                           accepted.Control(kOk)->setFocus();
                           QTest::keyClick(accepted.Control(kOk), Qt::Key_Return);
                       }),
             1);
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

void DialogTest::CurrentRowIsMarked() {
    const FunctionDialog shown(4);
    RunDialog(*shown.dialog, [&] {
        const auto marked = [&] {
            QList<int> items;
            for (int i = 0; i < shown.Document().ItemCount(); ++i) {
                if (shown.Document().IsHighlighted(i))
                    items.append(i);
            }
            return items;
        };
        shown.Grid()->SelectCell(3, 1);
        QCOMPARE(marked(), QList<int>{2});
        shown.Grid()->SelectCell(1, 2);
        QCOMPARE(marked(), QList<int>{0});
        // Rows that come and go above take the mark along.
        shown.Grid()->SelectCell(4, 2);
        AnswerAddDialog(u"-1"_s, u"0"_s, Qt::Key_Return);
        shown.Click(kAdd);
        QCOMPARE(marked(), QList<int>{0});
        shown.Grid()->SelectCell(2, 2);
        shown.Click(kRemove);
        QCOMPARE(marked().size(), 1);
        QCOMPARE(marked().first(), shown.Grid()->currentIndex().row());
    });
}

void DialogTest::CancelAsks_data() {
    QTest::addColumn<int>("way");
    QTest::newRow("button") << 0;
    QTest::newRow("escape") << 1;
    QTest::newRow("close box") << 2;
}

void DialogTest::CancelAsks() {
    QFETCH(int, way);
    const FunctionDialog shown(3);
    MessageScript script;
    script.ExpectQuestion(kCancelQuestion, kCancelCaption, false);
    script.ExpectQuestion(kCancelQuestion, kCancelCaption, true);
    const int result = RunDialog(*shown.dialog, [&] {
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
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

void DialogTest::OkTakesTheOpenEntry() {
    const FunctionDialog shown(3);
    const int result = RunDialog(*shown.dialog, [&] {
        QVERIFY(QTest::qWaitForWindowActive(shown.dialog.get()));
        shown.Grid()->SelectCell(3, 2);
        QTest::keyClicks(shown.Grid(), u"9"_s);
        shown.Click(kOk);
    });
    QCOMPARE(result, 1);
    QCOMPARE(shown.Values()[2], u"9"_s);
}

void DialogTest::OkStaysWithARefusedEntry() {
    const FunctionDialog shown(3);
    MessageScript script;
    script.Expect(
        u"Le nombre entré comporte plusieurs virgules !\nVeuillez rectifier la saisie."_s);
    RunDialog(*shown.dialog, [&] {
        QVERIFY(QTest::qWaitForWindowActive(shown.dialog.get()));
        shown.Grid()->SelectCell(3, 2);
        QTest::keyClicks(shown.Grid(), u"9"_s);
        QTest::keyClicks(QApplication::focusWidget(), u"..1"_s);
        shown.Click(kOk);
        QVERIFY(shown.dialog->isVisible());
        QCOMPARE(shown.Values()[2], u"12"_s);
    });
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

void DialogTest::AddPoints() {
    const FunctionDialog shown(3);
    MessageScript script;
    RunDialog(*shown.dialog, [&] {
        QVERIFY(QTest::qWaitForWindowActive(shown.dialog.get()));
        AnswerAddDialog(u"1"_s, u"2,50"_s, Qt::Key_Return);
        shown.Click(kAdd);
        QCOMPARE(shown.Times(), QStringList({u"0"_s, u"1"_s, u"1"_s, u"2"_s}));
        QCOMPARE(shown.Values(), QStringList({u"10"_s, u"11"_s, u"2.5"_s, u"12"_s}));
        QVERIFY(shown.ChartShowsTheGrid());
        QCOMPARE(shown.Grid()->currentIndex().row(), 2);
        // Cancel leaves everything; the key Insert opens the dialog too.
        shown.dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(shown.dialog.get()));
        AnswerAddDialog(u"5"_s, u"5"_s, Qt::Key_Escape);
        QTest::keyClick(shown.Grid(), Qt::Key_Insert);
        QCOMPARE(shown.Times().size(), 4);
        // What is no number is reported, and counts as the 0 that stood there before.
        script.Expect(u"Veuillez entrer un nombre."_s);
        AnswerAddDialog(u"7"_s, u"1e99"_s, Qt::Key_Return);
        shown.Click(kAdd);
        QCOMPARE(shown.Times().last(), u"7"_s);
        QCOMPARE(shown.Values().last(), u"0"_s);
    });
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

void DialogTest::AddForgetsTheHistory() {
    for (const Qt::Key last : {Qt::Key_Return, Qt::Key_Escape}) {
        const FunctionDialog shown(3);
        RunDialog(*shown.dialog, [&] {
            shown.Grid()->ValidateEntry(1, 2, u"5"_s);
            QVERIFY(shown.Button(kUndo)->isEnabled());
            AnswerAddDialog(u"9"_s, u"9"_s, last);
            shown.Click(kAdd);
            QVERIFY(!shown.Button(kUndo)->isEnabled());
            QVERIFY(shown.dialog->session().isModified());
        });
    }
}

void DialogTest::RemovePoints() {
    const FunctionDialog shown(5);
    RunDialog(*shown.dialog, [&] {
        shown.Grid()->ValidateEntry(1, 2, u"5"_s);
        // All but one: nothing goes, and what can be undone stays.
        shown.Grid()->selectAll();
        shown.Click(kRemove);
        QCOMPARE(shown.Times().size(), 5);
        QVERIFY(shown.Button(kUndo)->isEnabled());
        shown.Grid()->clearSelection();
        shown.Click(kRemove);
        QCOMPARE(shown.Times().size(), 5);
        // Rows that do not touch each other.
        shown.Grid()->selectionModel()->select(shown.Grid()->model()->index(1, 0),
                                               QItemSelectionModel::Select);
        shown.Grid()->selectionModel()->select(shown.Grid()->model()->index(3, 1),
                                               QItemSelectionModel::Select);
        shown.Click(kRemove);
        QCOMPARE(shown.Times(), QStringList({u"0"_s, u"2"_s, u"4"_s}));
        QVERIFY(shown.ChartShowsTheGrid());
        QVERIFY(!shown.Button(kUndo)->isEnabled());
        QCOMPARE(shown.Grid()->height(), 3 * kGridRowHeight + kGridHeaderHeight);
        shown.Grid()->SelectCell(1, 1);
        shown.Click(kRemove);
        QCOMPARE(shown.Times().size(), 2);
        QVERIFY(!shown.Button(kRemove)->isEnabled());
    });
}

void DialogTest::CommandsFollowTheState() {
    const FunctionDialog shown(3);
    RunDialog(*shown.dialog, [&] {
        const auto enabled = [&](std::initializer_list<int> ids) {
            return std::all_of(ids.begin(), ids.end(),
                               [&](int id) { return shown.Button(id)->isEnabled(); });
        };
        const auto disabled = [&](std::initializer_list<int> ids) {
            return std::none_of(ids.begin(), ids.end(),
                                [&](int id) { return shown.Button(id)->isEnabled(); });
        };
        QVERIFY(enabled({kAdd, kRemove, kOpen, kSaveAs, kCopy, kPaste, kOk, kCancel}));
        QVERIFY(disabled({kSave, kUndo, kRedo, kEdition, kAdjust}));
        shown.Grid()->ValidateEntry(1, 2, u"5"_s);
        QVERIFY(enabled({kUndo}) && disabled({kRedo}));
        shown.Click(kUndo);
        QVERIFY(enabled({kRedo}) && disabled({kUndo}));
        shown.Click(kRedo);
        QVERIFY(enabled({kUndo}) && disabled({kRedo}));
        QCOMPARE(shown.Values()[0], u"5"_s);
    });
}

void DialogTest::NoPoints() {
    const FunctionDialog shown(0);
    RunDialog(*shown.dialog, [&] {
        QCOMPARE(shown.Grid()->model()->rowCount(), 0);
        QVERIFY(!shown.Button(kRemove)->isEnabled());
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Return, Qt::Key_Down, Qt::Key_1})
            QTest::keyClick(shown.Grid(), key);
        QVERIFY(shown.Grid()->hasFocus() || !shown.dialog->isActiveWindow());
        AnswerAddDialog(u"3"_s, u"4"_s, Qt::Key_Return);
        shown.Click(kAdd);
        QCOMPARE(shown.Times(), QStringList{u"3"_s});
        QVERIFY(shown.ChartShowsTheGrid());
    });
}

void DialogTest::MeanIsReadOut() {
    const FunctionDialog function(3);
    RunDialog(*function.dialog,
              [&] { QVERIFY(!function.dialog->findChild<MeanLabel*>()->isVisible()); });
    QStringList values(12, u"1"_s);
    SessionSetup setup;
    setup.kind = ProfileKind::Annual;
    setup.values = &values;
    CDlgGridChart dialog(std::move(setup));
    RunDialog(dialog, [&] {
        const auto* const mean = dialog.findChild<MeanLabel*>();
        const QColor plain = dialog.palette().color(QPalette::WindowText);
        const auto colour = [&] { return mean->palette().color(QPalette::WindowText); };
        QVERIFY(mean->isVisible());
        QCOMPARE(mean->text(), u"Moyenne : 1.000"_s);
        QCOMPARE(colour(), plain);
        // Nothing rescales the column in edition mode: sums of 11.994, 11.996 and 13.
        QTest::mouseClick(dialog.findChild<QAbstractButton*>(u"5033_Edition"_s), Qt::LeftButton, {},
                          QPoint(8, 8));
        auto* const grid = dialog.findChild<CGridControl*>();
        QVERIFY(grid->ValidateEntry(1, 2, u"0.994"_s));
        QCOMPARE(mean->text(), u"Moyenne : 0.999"_s);
        QVERIFY(colour() != plain);
        QVERIFY(grid->ValidateEntry(1, 2, u"0.996"_s));
        QCOMPARE(mean->text(), u"Moyenne : 1.000"_s);
        QCOMPARE(colour(), plain);
        QVERIFY(grid->ValidateEntry(1, 2, u"2"_s));
        QCOMPARE(mean->text(), u"Moyenne : 1.083"_s);
        QVERIFY(colour() != plain);
        for (const QWidget* const other :
             dialog.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            QVERIFY2(other == mean || !other->isVisible() ||
                         !other->geometry().intersects(mean->geometry()),
                     qPrintable(other->objectName()));
        }
    });
}

// A caller may hand over any number; no mode makes such a kind ask for a file.
void DialogTest::UnknownKindOpensEmpty() {
    const MessageScript script;
    for (const int mode : {1, 2, 3, 9}) {
        SessionSetup setup;
        setup.kind = static_cast<ProfileKind>(4);
        setup.mode = static_cast<DisplayMode>(mode);
        CDlgGridChart dialog(std::move(setup));
        bool shown = false;
        QCOMPARE(
            RunDialog(
                dialog,
                [&] {
                    shown = true;
                    QCOMPARE(dialog.windowTitle(), QString());
                    for (const char16_t* const name :
                         {u"5012_OUVRIR", u"5013_ENREG", u"5017_ENREGSOUS"})
                        QVERIFY(!dialog.findChild<QWidget*>(QString::fromUtf16(name))->isEnabled());
                }),
            2);
        QVERIFY(shown);
    }
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

QTEST_MAIN(DialogTest)
#include "DialogTest.moc"
