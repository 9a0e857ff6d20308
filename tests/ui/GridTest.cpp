// SPDX-License-Identifier: GPL-3.0-or-later
// The grid under real keys.

#include "ShownGrid.h"
#include "VectorFile.h"
#include "dialog/DialogTemplate.h"
#include "grid/GridMetrics.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSignalSpy>

#include <numeric>

using namespace Qt::StringLiterals;
using enum ProfileKind;

class GridTest : public QObject {
    Q_OBJECT

private slots:
    void TabMoves_data() { AddVectorRows("grid_keys"); }
    void TabMoves();
    void EntriesAreStored();
    void TimeMovesItsRow();
    void OtherWindowsFinishNothing();
    void KeysThatChangeNothing();
    void KeysThatMoveSelect();
    void TextsTooLongForAnEditorStay();
    void CurrentRowIsTold();
    void RowHeaderHoldsTheLargestNumber();
    void ColumnsKeepTheirWidths();
};

void GridTest::TextsTooLongForAnEditorStay() {
    const QStringList values = {QString(32'767, u'1'), QString(32'768, u'1'), u"3"_s};
    ShownGrid shown(Function, Texts(u"0|1|2"_s), values);
    for (int row = 1; row <= values.size(); ++row) {
        shown.grid->SelectCell(row, 2);
        if (row == 2) {
            for (int i = 0; i < 2; ++i)
                shown.messages.Expect(u"Ce texte est trop long pour être modifié."_s);
            shown.Keys(u"5"_s);
            QCOMPARE(shown.Current(), std::pair(2, 2));
        }
        shown.Key(Qt::Key_F2);
        QCOMPARE(shown.IsEditing(), row != 2);
        shown.Key(Qt::Key_Return);
    }
    QCOMPARE(shown.Column(2), values);
    QVERIFY(!shown.session->canUndo());
}

// Every move of the shared cases, by the real keys on a grid of that kind and size.
void GridTest::TabMoves() {
    QFETCH(QJsonObject, vector);
    const QJsonObject input = vector[u"input"].toObject();
    QStringList times;
    for (int i = 0; i < input[u"rows"].toInt(); ++i)
        times.append(QString::number(i));
    ShownGrid shown(VectorKind(input[u"kind"]), times, times);
    QCOMPARE(shown.session->table().RowCount(), input[u"rows"].toInt());
    const QJsonArray moves = input[u"moves"].toArray();
    const QJsonArray expected = vector[u"expected"].toArray();
    QCOMPARE(moves.size(), expected.size());
    for (qsizetype i = 0; i < moves.size(); ++i) {
        if (moves[i][1].isNull())
            shown.grid->setCurrentIndex({});
        else
            shown.grid->SelectCell(moves[i][1].toInt(), moves[i][2].toInt());
        if (moves[i][0].toString() == u"Tab")
            shown.Key(Qt::Key_Tab);
        else
            shown.Key(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(shown.Current(), std::pair(expected[i][0].toInt(), expected[i][1].toInt()));
        QVERIFY(shown.grid->hasFocus());
    }
}

// Which texts are numbers the tests of the rules tell.
void GridTest::EntriesAreStored() {
    const std::tuple<QString, QString, QString> cases[] = {
        {u"-1,50e-3"_s, u"-1.50e-3"_s, {}},
        {u"1a2 b"_s, u"12"_s, {}},
        {u"1e"_s, u"7.50"_s, {}},
        {u"1,2,3"_s, u"7.50"_s,
         u"Le nombre entré comporte plusieurs virgules !\nVeuillez rectifier la saisie."_s}};
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    for (const auto& [typed, stored, message] : cases) {
        ShownGrid shown(Function, u"0|1"_s, u"7.50|8"_s);
        if (!message.isEmpty())
            shown.messages.Expect(message);
        shown.grid->SelectCell(1, 2);
        shown.Keys(typed);
        QVERIFY(shown.IsEditing());
        shown.Key(Qt::Key_Return);
        // A closed editor is not committed again.
        QVERIFY(shown.grid->CommitOpenEditor());
        QCOMPARE(shown.Text(1, 2), stored);
        QCOMPARE(shown.session->canUndo(), stored != u"7.50");
        // A refused entry leaves the user at its cell.
        QCOMPARE(shown.Current().first, stored != u"7.50" ? 2 : 1);
    }
}

void GridTest::TimeMovesItsRow() {
    ShownGrid shown(Function, u"0|10|20"_s, u"a|2.00|3"_s);
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    shown.grid->SelectCell(1, 1);
    shown.Keys(u"15,0"_s);
    shown.Key(Qt::Key_Tab);
    QCOMPARE(shown.Column(1).join(u'|'), u"10|15.0|20"_s);
    QCOMPARE(shown.Column(2).join(u'|'), u"2|a|3"_s);
    // The move goes on from where the entry went.
    QCOMPARE(shown.Current(), std::pair(2, 2));
    QVERIFY(shown.session->Undo());
    QCOMPARE(shown.Column(1).join(u'|'), u"0|10|20"_s);
    QCOMPARE(shown.Column(2).join(u'|'), u"a|2|3"_s);
    // A click finishes the entry too, and where it went is current.
    shown.grid->SelectCell(1, 1);
    shown.Keys(u"15"_s);
    QTest::mouseClick(shown.grid->viewport(), Qt::LeftButton, {},
                      shown.grid->visualRect(shown.grid->model()->index(0, 1)).center());
    QCOMPARE(shown.Column(1).join(u'|'), u"10|15|20"_s);
    QCOMPARE(shown.Current(), std::pair(1, 2));
}

// The box with the message about a refused entry is such a window too.
void GridTest::OtherWindowsFinishNothing() {
    ShownGrid shown(Function, u"0"_s, u"1"_s);
    QLineEdit elsewhere;
    elsewhere.show();
    int messages = 0;
    MessageHandler handler;
    const auto look_elsewhere = [&] {
        elsewhere.activateWindow();
        return QTest::qWaitForWindowActive(&elsewhere);
    };
    handler.show = [&](const QString&, MessageIcon, const QString&) {
        ++messages;
        QVERIFY(look_elsewhere());
    };
    const MessageHandler former = SetMessageHandler(handler);
    shown.grid->SelectCell(1, 2);
    shown.Keys(u"1..2"_s);
    QVERIFY(look_elsewhere());
    const auto* const editor = qobject_cast<QLineEdit*>(shown.Focused());
    QVERIFY(editor != nullptr && editor->text() == u"1..2");
    QCOMPARE(messages, 0);
    QVERIFY(!shown.grid->CommitOpenEditor());
    SetMessageHandler(former);
    QCOMPARE(messages, 1);
    QCOMPARE(shown.Text(1, 2), u"1"_s);
    QVERIFY(!shown.session->canUndo());
}

void GridTest::KeysThatChangeNothing() {
    ShownGrid shown(Function, u"0|1|2"_s, u"1.50|abc|"_s);
    shown.grid->SelectCell(2, 2);
    // As the platforms send it.
    QTest::sendKeyEvent(QTest::Click, shown.grid.get(), Qt::Key_Delete, u"\x7f"_s, Qt::NoModifier);
    shown.Keys(u"x"_s);
    QVERIFY(!shown.IsEditing());
    shown.messages.Expect(u"Help!"_s);
    shown.Key(Qt::Key_Help, Qt::ShiftModifier);
    QCOMPARE(shown.messages.LastIcon(), MessageIcon::None);
    // An editor that was opened and left as it was stores nothing, whatever the cell holds.
    for (int row = 1; row <= 3; ++row) {
        shown.grid->SelectCell(row, 2);
        shown.Key(Qt::Key_F2);
        QVERIFY(shown.IsEditing());
        shown.Key(Qt::Key_Return);
        QVERIFY(!shown.IsEditing());
        QCOMPARE(shown.Current().first, std::min(row + 1, 3));
    }
    shown.grid->SelectCell(1, 2);
    shown.Keys(u"9"_s);
    shown.Key(Qt::Key_Escape);
    QVERIFY(!shown.IsEditing());
    QCOMPARE(shown.Column(2).join(u'|'), u"1.50|abc|"_s);
    QVERIFY(!shown.session->canUndo());
}

void GridTest::KeysThatMoveSelect() {
    ShownGrid shown(Function, u"1*30"_s);
    for (const Qt::KeyboardModifiers modifiers : {Qt::NoModifier, Qt::ControlModifier}) {
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_End, Qt::Key_Up, Qt::Key_Left, Qt::Key_Home,
                                  Qt::Key_Right, Qt::Key_PageDown, Qt::Key_Return}) {
            shown.Key(key, modifiers);
            QCOMPARE(shown.grid->selectionModel()->selectedIndexes(),
                     QModelIndexList{shown.grid->currentIndex()});
        }
    }
}

void GridTest::CurrentRowIsTold() {
    ShownGrid shown(Function, u"1|2|3"_s);
    shown.grid->SelectCell(1, 1);
    QSignalSpy entered(shown.grid.get(), &CGridControl::RowEntered);
    QSignalSpy left(shown.grid.get(), &CGridControl::RowLeft);
    shown.grid->SelectCell(3, 2);
    QCOMPARE(left.takeFirst().first().toInt(), 1);
    QCOMPARE(entered.takeFirst().first().toInt(), 3);
    // A header cell is no row: a press on it selects, and that is all.
    ShownGrid::Press(*shown.grid->verticalHeader(), {5, 5});
    QCOMPARE(shown.grid->SelectedRows(), QList<int>({1}));
    QCOMPARE(shown.grid->SelectedColumns(), QList<int>({1, 2}));
    ShownGrid::Press(*shown.grid->horizontalHeader(), {5, 5});
    QCOMPARE(shown.grid->SelectedRows(), QList<int>({1, 2, 3}));
    QCOMPARE(shown.grid->SelectedColumns(), QList<int>({1}));
    QCOMPARE(shown.Current(), std::pair(3, 2));
    QCOMPARE(entered.size() + left.size(), 0);
    // It finishes an entry like any click.
    shown.Keys(u"7"_s);
    ShownGrid::Press(*shown.grid->verticalHeader(), {5, 5});
    QCOMPARE(shown.Text(3, 2), u"7"_s);
}

void GridTest::ColumnsKeepTheirWidths() {
    const ShownGrid shown(Annual, u"1*12"_s);
    QWidget* const header = shown.grid->horizontalHeader()->viewport();
    const int width = shown.grid->columnWidth(0);
    QTest::mousePress(header, Qt::LeftButton, {}, QPoint(width - 1, 10));
    QTest::mouseMove(header, QPoint(width + 30, 10));
    QTest::mouseRelease(header, Qt::LeftButton, {}, QPoint(width + 60, 10));
    QCOMPARE(shown.grid->columnWidth(0), width);
}

void GridTest::RowHeaderHoldsTheLargestNumber() {
    ShownGrid shown(Function, u"1*10000"_s);
    QHeaderView* const header = shown.grid->verticalHeader();
    QVERIFY(header->width() >= header->fontMetrics().horizontalAdvance(u"10000"_s));
    const int wide = header->width();
    QList<int> rows(9990);
    std::iota(rows.begin(), rows.end(), 1);
    QVERIFY(shown.session->RemoveRows(rows));
    QVERIFY(header->width() < wide);
    QCOMPARE(shown.grid->rowHeight(0), kGridRowHeight);
    QCOMPARE(shown.grid->horizontalHeader()->height(), kGridHeaderHeight);
}

QTEST_MAIN(GridTest)
#include "GridTest.moc"
