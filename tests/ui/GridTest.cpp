// SPDX-License-Identifier: GPL-3.0-or-later
// The grid under real keys.

#include "ShownGrid.h"
#include "VectorFile.h"
#include "grid/GridMetrics.h"

#include <QJsonArray>
#include <QJsonObject>

#include <numeric>

using namespace Qt::StringLiterals;
using enum ProfileKind;

class GridTest : public QObject {
    Q_OBJECT

private slots:
    void TabMoves_data() { AddVectorRows("grid_keys"); }
    void TabMoves();
    void OtherWindowsFinishNothing();
    void TextsTooLongForAnEditorStay();
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

// Nor does a drag along the headers move the current cell.
void GridTest::ColumnsKeepTheirWidths() {
    const ShownGrid shown(Annual, u"1*12"_s);
    shown.grid->SelectCell(3, 2);
    QWidget* const header = shown.grid->horizontalHeader()->viewport();
    const int width = shown.grid->columnWidth(0);
    for (const int from : {width - 1, width / 2}) {
        QTest::mousePress(header, Qt::LeftButton, {}, QPoint(from, 10));
        QTest::mouseMove(header, QPoint(width + 30, 10));
        QTest::mouseRelease(header, Qt::LeftButton, {}, QPoint(width + 60, 10));
        QCOMPARE(shown.grid->columnWidth(0), width);
    }
    QCOMPARE(shown.Current(), std::pair(3, 2));
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
