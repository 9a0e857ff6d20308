// The grid under real keys.

#include "MessageScript.h"
#include "VectorFile.h"
#include "dialog/DialogTemplate.h"
#include "grid/CGridControl.h"
#include "grid/GridMetrics.h"
#include "profiles/ProfileSession.h"

#include <QHeaderView>
#include <QJsonArray>
#include <QJsonObject>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

// A session with its grid on the screen.
struct ShownGrid {
    explicit ShownGrid(QStringList time_texts, QStringList value_texts,
                       ProfileKind kind = ProfileKind::Function)
        : times(std::move(time_texts)), values(std::move(value_texts)) {
        SessionSetup setup;
        setup.kind = kind;
        setup.times = times;
        setup.values = values;
        session = std::make_unique<ProfileSession>(std::move(setup));
        session->InitialFill();
        grid = std::make_unique<CGridControl>(session.get());
        grid->InitGrid();
        grid->resize(260, 420);
        grid->show();
        grid->setFocus();
        grid->activateWindow();
        active = QTest::qWaitForWindowActive(grid.get());
    }

    void Keys(const QString& text) {
        for (const QChar c : text)
            QTest::keyClicks(Focused(), c);  // the first one opens an editor
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(Focused(), key, modifiers);
    }
    QWidget* Focused() const {
        for (QLineEdit* const editor : grid->findChildren<QLineEdit*>()) {
            if (editor->isVisible())
                return editor;
        }
        return grid.get();
    }
    bool IsEditing() const { return Focused() != grid.get(); }
    QString Text(int row, int column) const { return session->table().CellText(row, column); }
    std::pair<int, int> Current() const {
        return {grid->currentIndex().row() + 1, grid->currentIndex().column() + 1};
    }

    bool active = false;
    QStringList times;
    QStringList values;
    std::unique_ptr<ProfileSession> session;
    std::unique_ptr<CGridControl> grid;
};

}  // namespace

class GridTest : public QObject {
    Q_OBJECT

private slots:
    void TabMoves_data() { AddVectorRows("grid_keys"); }
    void TabMoves();
    void EntriesAreStored_data();
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
    ShownGrid shown({u"0"_s, u"1"_s, u"2"_s}, values);
    MessageScript script;
    for (int row = 1; row <= values.size(); ++row) {
        shown.grid->SelectCell(row, 2);
        if (row == 2) {
            for (int i = 0; i < 2; ++i)
                script.Expect(u"Ce texte est trop long pour être modifié."_s);
            shown.Keys(u"5"_s);
            QCOMPARE(shown.Current(), std::pair(2, 2));
        }
        shown.Key(Qt::Key_F2);
        QCOMPARE(shown.IsEditing(), row != 2);
        shown.Key(Qt::Key_Return);
    }
    QCOMPARE(shown.session->table().Column(2), values);
    QVERIFY(!shown.session->canUndo());
}

// Every move of the shared cases, by the real keys on a grid of that kind and size.
void GridTest::TabMoves() {
    QFETCH(QJsonObject, vector);
    const QJsonObject input = vector[u"input"].toObject();
    QStringList times;
    for (int i = 0; i < input[u"rows"].toInt(); ++i)
        times.append(QString::number(i));
    ShownGrid shown(times, times, static_cast<ProfileKind>(input[u"kind"].toInt()));
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

void GridTest::EntriesAreStored_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("stored");
    const QString separators =
        u"Le nombre entré comporte plusieurs virgules !\nVeuillez rectifier la saisie."_s;
    QTest::newRow("number") << u"-12.50"_s << QString() << u"-12.50"_s;
    QTest::newRow("decimal comma") << u"1,234"_s << QString() << u"1.234"_s;
    QTest::newRow("exponent") << u"1e-3"_s << QString() << u"1e-3"_s;
    QTest::newRow("letters are not taken") << u"1a2 b"_s << QString() << u"12"_s;
    QTest::newRow("no number") << u"1e"_s << QString() << u"7.50"_s;
    QTest::newRow("only a sign") << u"-"_s << QString() << u"7.50"_s;
    QTest::newRow("beyond a float") << u"1e39"_s << QString() << u"7.50"_s;
    QTest::newRow("two commas") << u"1,2,3"_s << separators << u"7.50"_s;
    QTest::newRow("point and comma") << u"1.234,5"_s << separators << u"7.50"_s;
}

void GridTest::EntriesAreStored() {
    QFETCH(QString, typed);
    QFETCH(QString, message);
    QFETCH(QString, stored);
    ShownGrid shown({u"0"_s, u"1"_s}, {u"7.50"_s, u"8"_s});
    QVERIFY(shown.active);
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    MessageScript script;
    if (!message.isEmpty())
        script.Expect(message);
    shown.grid->SelectCell(1, 2);
    shown.Keys(typed);
    QVERIFY(shown.IsEditing());
    shown.Key(Qt::Key_Return);
    // A closed editor is not committed again.
    QVERIFY(shown.grid->CommitOpenEditor());
    QVERIFY2(script.Done(), qPrintable(script.Report()));
    QCOMPARE(shown.Text(1, 2), stored);
    QCOMPARE(shown.session->canUndo(), stored != u"7.50");
    // A refused entry leaves the user at its cell.
    QCOMPARE(shown.Current().first, stored != u"7.50" ? 2 : 1);
}

void GridTest::TimeMovesItsRow() {
    ShownGrid shown({u"0"_s, u"10"_s, u"20"_s}, {u"a"_s, u"2.00"_s, u"3"_s});
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    MessageScript script;
    shown.grid->SelectCell(1, 1);
    shown.Keys(u"15,0"_s);
    shown.Key(Qt::Key_Tab);
    QCOMPARE(shown.session->table().Column(1), QStringList({u"10"_s, u"15.0"_s, u"20"_s}));
    QCOMPARE(shown.session->table().Column(2), QStringList({u"2"_s, u"a"_s, u"3"_s}));
    // The move goes on from where the entry went.
    QCOMPARE(shown.Current(), std::pair(2, 2));
    QVERIFY(shown.session->Undo());
    QCOMPARE(shown.session->table().Column(1), QStringList({u"0"_s, u"10"_s, u"20"_s}));
    QCOMPARE(shown.session->table().Column(2), QStringList({u"a"_s, u"2"_s, u"3"_s}));
    // A click finishes the entry too, and where it went is current.
    shown.grid->SelectCell(1, 1);
    shown.Keys(u"15"_s);
    QTest::mouseClick(shown.grid->viewport(), Qt::LeftButton, {},
                      shown.grid->visualRect(shown.grid->model()->index(0, 1)).center());
    QCOMPARE(shown.session->table().Column(1), QStringList({u"10"_s, u"15"_s, u"20"_s}));
    QCOMPARE(shown.Current(), std::pair(1, 2));
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

// The box with the message about a refused entry is such a window too.
void GridTest::OtherWindowsFinishNothing() {
    ShownGrid shown({u"0"_s}, {u"1"_s});
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
    ShownGrid shown({u"0"_s, u"1"_s, u"2"_s}, {u"1.50"_s, u"abc"_s, u""_s});
    MessageScript script;
    shown.grid->SelectCell(2, 2);
    // As the platforms send it.
    QTest::sendKeyEvent(QTest::Click, shown.grid.get(), Qt::Key_Delete, u"\x7f"_s, Qt::NoModifier);
    shown.Keys(u"x"_s);
    QVERIFY(!shown.IsEditing());
    script.Expect(u"Help!"_s);
    shown.Key(Qt::Key_Help, Qt::ShiftModifier);
    QCOMPARE(script.LastIcon(), MessageIcon::None);
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
    QCOMPARE(shown.session->table().Column(2), QStringList({u"1.50"_s, u"abc"_s, u""_s}));
    QVERIFY(!shown.session->canUndo());
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

void GridTest::KeysThatMoveSelect() {
    const QStringList texts(30, u"1"_s);
    ShownGrid shown(texts, texts);
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
    ShownGrid shown({u"0"_s, u"1"_s, u"2"_s}, {u"1"_s, u"2"_s, u"3"_s});
    shown.grid->SelectCell(1, 1);
    QSignalSpy entered(shown.grid.get(), &CGridControl::RowEntered);
    QSignalSpy left(shown.grid.get(), &CGridControl::RowLeft);
    shown.grid->SelectCell(3, 2);
    QCOMPARE(left.takeFirst().first().toInt(), 1);
    QCOMPARE(entered.takeFirst().first().toInt(), 3);
    // A header cell is no row: a press on it selects, and that is all.
    const auto press = [](const QHeaderView& header) {
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, QPoint(5, 5));
    };
    press(*shown.grid->verticalHeader());
    QCOMPARE(shown.grid->SelectedRows(), QList<int>({1}));
    QCOMPARE(shown.grid->SelectedColumns(), QList<int>({1, 2}));
    press(*shown.grid->horizontalHeader());
    QCOMPARE(shown.grid->SelectedRows(), QList<int>({1, 2, 3}));
    QCOMPARE(shown.grid->SelectedColumns(), QList<int>({1}));
    QCOMPARE(shown.Current(), std::pair(3, 2));
    QCOMPARE(entered.size() + left.size(), 0);
    // It finishes an entry like any click.
    shown.Keys(u"7"_s);
    press(*shown.grid->verticalHeader());
    QCOMPARE(shown.Text(3, 2), u"7"_s);
}

void GridTest::ColumnsKeepTheirWidths() {
    const ShownGrid shown({}, QStringList(12, u"1"_s), ProfileKind::Annual);
    QWidget* const header = shown.grid->horizontalHeader()->viewport();
    const int width = shown.grid->columnWidth(0);
    QTest::mousePress(header, Qt::LeftButton, {}, QPoint(width - 1, 10));
    QTest::mouseMove(header, QPoint(width + 30, 10));
    QTest::mouseRelease(header, Qt::LeftButton, {}, QPoint(width + 60, 10));
    QCOMPARE(shown.grid->columnWidth(0), width);
}

void GridTest::RowHeaderHoldsTheLargestNumber() {
    QStringList texts(10000, u"1"_s);
    ShownGrid shown(texts, texts);
    QHeaderView* const header = shown.grid->verticalHeader();
    QVERIFY(header->width() >= header->fontMetrics().horizontalAdvance(u"10000"_s));
    const int wide = header->width();
    QVERIFY(shown.session->RemoveRows([] {
        QList<int> rows(9990);
        std::iota(rows.begin(), rows.end(), 1);
        return rows;
    }()));
    QVERIFY(header->width() < wide);
    QCOMPARE(shown.grid->rowHeight(0), kGridRowHeight);
    QCOMPARE(shown.grid->horizontalHeader()->height(), kGridHeaderHeight);
}

QTEST_MAIN(GridTest)
#include "GridTest.moc"
