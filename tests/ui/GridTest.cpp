// The grid under real keys.

#include "MessageScript.h"
#include "VectorFile.h"
#include "grid/CGridControl.h"
#include "profiles/ProfileSession.h"
#include "resources/DialogTemplate.h"

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
    void RefusedEntryIsAskedOnce();
    void KeysThatChangeNothing();
    void TextsTooLongForAnEditorStay();
    void CurrentRowIsTold();
    void RowHeaderHoldsTheLargestNumber();
};

void GridTest::TextsTooLongForAnEditorStay() {
    const QStringList values = {QString(32'767, u'1'), QString(32'768, u'1'), u"3"_s};
    ShownGrid shown({u"0"_s, u"1"_s, u"2"_s}, values);
    for (int row = 1; row <= values.size(); ++row) {
        shown.grid->SelectCell(row, 2);
        shown.Key(Qt::Key_F2);
        QCOMPARE(shown.IsEditing(), row != 2);
        if (row == 2)
            shown.Keys(u"5"_s);
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
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

// The message box takes the focus from the editor, which must not offer the entry a second time.
void GridTest::RefusedEntryIsAskedOnce() {
    ShownGrid shown({u"0"_s}, {u"1"_s});
    QWidget elsewhere;
    QLineEdit field(&elsewhere);
    elsewhere.show();
    int messages = 0;
    MessageHandler handler;
    handler.show = [&](const QString&, MessageIcon, const QString&) {
        ++messages;
        elsewhere.activateWindow();
        field.setFocus();
        QCoreApplication::processEvents();
    };
    const MessageHandler former = SetMessageHandler(handler);
    shown.grid->SelectCell(1, 2);
    shown.Keys(u"1..2"_s);
    QVERIFY(!shown.grid->CommitOpenEditor());
    QCoreApplication::processEvents();
    SetMessageHandler(former);
    QCOMPARE(messages, 1);
    QCOMPARE(shown.Text(1, 2), u"1"_s);
    QVERIFY(!shown.session->canUndo());
}

void GridTest::KeysThatChangeNothing() {
    ShownGrid shown({u"0"_s, u"1"_s, u"2"_s}, {u"1.50"_s, u"abc"_s, u""_s});
    const MessageScript script;
    shown.grid->SelectCell(2, 2);
    shown.Key(Qt::Key_Delete);
    shown.Keys(u"x"_s);
    QVERIFY(!shown.IsEditing());
    // An editor that was opened and left as it was stores nothing, whatever the cell holds.
    for (int row = 1; row <= 3; ++row) {
        shown.grid->SelectCell(row, 2);
        shown.Key(Qt::Key_F2);
        QVERIFY(shown.IsEditing());
        shown.Key(Qt::Key_Return);
        QVERIFY(!shown.IsEditing());
    }
    shown.grid->SelectCell(1, 2);
    shown.Keys(u"9"_s);
    shown.Key(Qt::Key_Escape);
    QVERIFY(!shown.IsEditing());
    QCOMPARE(shown.session->table().Column(2), QStringList({u"1.50"_s, u"abc"_s, u""_s}));
    QVERIFY(!shown.session->canUndo());
    QVERIFY2(script.Done(), qPrintable(script.Report()));
}

void GridTest::CurrentRowIsTold() {
    ShownGrid shown({u"0"_s, u"1"_s, u"2"_s}, {u"1"_s, u"2"_s, u"3"_s});
    shown.grid->SelectCell(1, 1);
    QSignalSpy entered(shown.grid.get(), &CGridControl::RowEntered);
    QSignalSpy left(shown.grid.get(), &CGridControl::RowLeft);
    shown.grid->SelectCell(3, 2);
    QCOMPARE(left.takeFirst().first().toInt(), 1);
    QCOMPARE(entered.takeFirst().first().toInt(), 3);
    // A header cell is no row.
    QTest::mouseClick(shown.grid->verticalHeader()->viewport(), Qt::LeftButton, {}, QPoint(5, 150));
    QCOMPARE(entered.size(), 0);
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
