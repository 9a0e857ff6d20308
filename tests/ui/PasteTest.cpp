// Copy and paste between the grid and the system clipboard.

#include "KindDialog.h"
#include "SessionBench.h"
#include "grid/CGridControl.h"
#include "grid/PasteStore.h"
#include "profiles/EntryStore.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QRandomGenerator>
#include <QSignalSpy>

#include <numeric>

using namespace Qt::StringLiterals;

namespace {

using enum ProfileKind;

const QString kNoRow = u"Impossible de copier:\nAucune ligne n'est sélectionnée !"_s;
const QString kManyRows = u"Veuillez ne pas sélectionner\nplus de 25 lignes à la fois."_s;
const QString kManyTimes =
    u"Veuillez ne pas copier d'un coup\nplusieurs lignes de la 1ère colonne."_s;
const QString kWrong = u"La valeur entrée\nn'est pas correcte."_s;
const QString kSeparators =
    u"Le nombre entré comporte plusieurs virgules !\nVeuillez rectifier la saisie."_s;
const QString kPlace = u"Impossible d'appliquer la sélection\nprécédente à cet endroit:\n"_s;
const QString kNoRoom = kPlace + u"il n'y a pas assez de place dans\nle tableau !"_s;
const QString kFewRows = kPlace + u"il n'y a pas assez de lignes sélectionnées !"_s;
const QString kAnnualBound = u"L'une des valeur est négative\nou supérieure à 5 !"_s;
const QString kDailyBound =
    u"L'une des valeur est négative\nou supérieure à la consommation\njournalière !"_s;

QString WrongColumn(int from, int to) {
    return u"Impossible de copier les données\nde la colonne %1 à la colonne %2."_s.arg(from).arg(
        to);
}

QString NotPasted(int count, int row) {
    return u"%1 cellules n'ont pas été collées,\nla première à la ligne %2."_s.arg(count).arg(row);
}

// 1, 2, 3, ... a line each.
QString Numbers(int count, QChar separator = u'\n') {
    QStringList texts;
    for (int i = 1; i <= count; ++i)
        texts.append(QString::number(i));
    return texts.join(separator);
}

QString ClipboardText() {
    return QGuiApplication::clipboard()->text();
}

// The cells from (top, left) to (bottom, right); row 0 presses the column's header.
struct Cells {
    int top = -1;  // none
    int left = 0;
    int bottom = top;
    int right = left;
};

// A grid on the screen. A function gets as many points as asked for, (1, 1), (2, 2), ...
struct ShownGrid : SessionBench {
    explicit ShownGrid(ProfileKind kind, int points = 5, DisplayMode mode = DisplayMode::Edit)
        : SessionBench(kind == Function ? Numbers(points, u'|') : QString()) {
        QGuiApplication::clipboard()->clear();
        for (const QString& file : {u"bas.dat"_s, u"haut.dat"_s})
            WriteAll(Path(u"Data/Profils/Journalier/"_s + file), {});
        if (mode == DisplayMode::View)
            dialogs.ExpectOpen({});
        Start(Setup(kind, mode));
        tester = std::make_unique<QAbstractItemModelTester>(&session->table());
        grid = std::make_unique<CGridControl>(session.get());
        grid->InitGrid();
        grid->resize(300, 420);
        grid->show();
    }

    void Select(Cells cells) {
        if (cells.top == 0) {
            QHeaderView* const header = grid->horizontalHeader();
            const int x = header->sectionViewportPosition(cells.left - 1) + 20;
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(x, 8));
        } else if (cells.top > 0) {
            const auto* const model = grid->model();
            grid->selectionModel()->select(
                QItemSelection(model->index(cells.top - 1, cells.left - 1),
                               model->index(cells.bottom - 1, cells.right - 1)),
                QItemSelectionModel::ClearAndSelect);
        }
    }
    bool Copy(Cells cells) {
        Select(cells);
        return grid->CopySelection();
    }
    void Paste(Cells cells, const QString& message = {}) {
        if (!message.isEmpty())
            messages.Expect(message);
        Select(cells);
        grid->PasteSelection();
    }
    void PasteText(const QString& text) {
        QGuiApplication::clipboard()->setText(text);
        grid->PasteSelection();
    }
    QString Joined(int column) const { return Column(column).join(u'|'); }
    QStringList AllCells() const { return {Joined(1), Joined(2), Joined(3)}; }
    QString Headers() const {
        QStringList headers;
        for (int column = 1; column <= session->table().ColumnCount(); ++column)
            headers += session->table().HeaderText(column);
        return headers.join(u'|');
    }

    std::unique_ptr<QAbstractItemModelTester> tester;
    std::unique_ptr<CGridControl> grid;
};

}  // namespace

Q_DECLARE_METATYPE(Cells)

class PasteTest : public QObject {
    Q_OBJECT

private slots:
    void Copy_data() {
        QTest::addColumn<int>("points");
        QTest::addColumn<Cells>("cells");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("copied");
        const QString none;
        QTest::newRow("nothing selected") << 5 << Cells{} << kNoRow << none;
        QTest::newRow("26 rows") << 30 << Cells{3, 2, 28} << kManyRows << none;
        QTest::newRow("25 rows") << 30 << Cells{2, 2, 26} << none << Numbers(26).mid(2);
        QTest::newRow("one time") << 5 << Cells{2, 1} << none << u"2"_s;
        QTest::newRow("header, 24 rows") << 24 << Cells{0, 2} << none << Numbers(24);
        QTest::newRow("header, 25 rows") << 25 << Cells{0, 2} << kManyRows << none;
        QTest::newRow("header of the times") << 1 << Cells{0, 1} << kManyTimes << none;
    }
    void Copy() {
        QFETCH(int, points);
        QFETCH(Cells, cells);
        QFETCH(QString, message);
        QFETCH(QString, copied);
        const bool copies = message.isEmpty();
        ShownGrid shown(Function, points);
        // What was copied before stays when a copy is refused.
        QVERIFY(shown.Copy({1, 2}));
        shown.grid->clearSelection();
        if (!copies)
            shown.messages.Expect(message);
        QCOMPARE(shown.Copy(cells), copies);
        QCOMPARE(ClipboardText(), copies ? copied : u"1"_s);
        if (!copies)
            shown.Paste({points, 1}, WrongColumn(2, 1));
        QCOMPARE(shown.Joined(2), Numbers(points, u'|'));
    }

    void EmptyGrid() {
        ShownGrid shown(Function, 0);
        shown.messages.Expect(kNoRow);
        QVERIFY(!shown.Copy({0, 2}));
        shown.PasteText(u"1\n2"_s);
        QCOMPARE(shown.session->table().RowCount(), 0);
    }

    // Text of other programs.
    void ForeignText_data() {
        QTest::addColumn<ProfileKind>("kind");
        QTest::addColumn<Cells>("cells");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");  // in the third column or else the second; "" for none
        QTest::addColumn<QStringList>("messages");
        const auto add = [](const char* name, ProfileKind kind, Cells cells, const QString& text,
                            const char* result, const QStringList& messages = {}) {
            QTest::newRow(name) << kind << cells << text << result << messages;
        };
        add("CR LF and a last line end", Weekly, {2, 2}, u"1\r\n2\r\n"_s, "100|1|2|100*4");
        add("decimal commas, never thousands", Weekly, {1, 2}, u"1,234\n-0,5\n1.234"_s,
            "1.234|-0.5|1.234|100*4");
        add("too many separators", Weekly, {1, 2}, u"1\n1,234.5\n3"_s, "1|100|3|100*4",
            {kSeparators});
        add("no number each", Weekly, {1, 2}, u"x\n0x10\n1e39\n1 234\n2\nnan"_s, "100*4|2|100*2",
            {kWrong, NotPasted(5, 1)});
        add("an empty line", Weekly, {1, 2}, u"1\n\n3\n\n"_s, "1|100|3|100*4",
            {kWrong, NotPasted(2, 2)});
        add("nothing", Weekly, {1, 2}, {}, "");
        add("nothing selected", Weekly, {}, u"1"_s, "");
        add("just fits", Weekly, {1, 2}, Numbers(7), "1|2|3|4|5|6|7");
        add("no room", Weekly, {6, 2}, Numbers(3), "", {kNoRoom});
        add("too few rows selected", Weekly, {1, 2, 2}, Numbers(3), "", {kFewRows});
        add("more rows selected", Weekly, {1, 2, 5}, Numbers(3), "1|2|3|100*4");
        add("values and names", Weekly, {1, 2}, u"1\tbas"_s, "", {WrongColumn(2, 3)});
        add("names", Weekly, {2, 3}, u"bas\nhaut"_s, "|bas|haut|*4");
        add("names with CR LF", Weekly, {2, 3}, u"bas\r\nhaut\r\n"_s, "|bas|haut|*4");
        add("a name that is not there", Weekly, {2, 3}, u"bas\nnone\nVOIR\nhaut"_s,
            "|bas|||haut|*2", {kWrong, NotPasted(2, 3)});
        add("a label", Weekly, {3, 1}, u"1"_s, "", {WrongColumn(1, 1)});
        add("two columns", Function, {2, 1}, u"2,5\t7\r\n3,5\t8\r\n"_s, "1|7|8|4|5");
        add("two columns beside the table", Function, {1, 2}, u"1\t2"_s, "", {WrongColumn(2, 3)});
        add("three columns", Function, {2, 1}, u"1\t2\t3"_s, "", {WrongColumn(3, 3)});
        add("uneven lines", Function, {1, 1}, u"1\t7\n2\n3\t9"_s, "7|2|9|4|5");
        add("wrong cells of two columns", Function, {1, 1}, u"x\t7\n2\t1,2,3"_s, "7|2|3|4|5",
            {kSeparators, NotPasted(2, 2)});
        add("annual, the rounding error goes to the pasted value", Annual, {1, 2}, u"5"_s,
            "4.96|0.64*11");
    }
    void ForeignText() {
        QFETCH(ProfileKind, kind);
        QFETCH(Cells, cells);
        QFETCH(QString, text);
        QFETCH(QString, result);
        QFETCH(QStringList, messages);
        ShownGrid shown(kind);
        shown.Select(cells);
        for (const QString& message : messages)
            shown.messages.Expect(message);
        const QStringList before = shown.AllCells();
        shown.PasteText(text);
        if (result.isEmpty())
            QCOMPARE(shown.AllCells(), before);
        else
            QCOMPARE(shown.Column(cells.left == 3 ? 3 : 2), Texts(result));
        QCOMPARE(shown.session->canUndo(), !result.isEmpty());
        QVERIFY(!shown.session->isSaved());
    }

    // The grid's own copies know the column they came from.
    void OwnText() {
        ShownGrid shown(Weekly);
        shown.session->EnterName(1, u"haut"_s);
        shown.session->EnterValue(2, u"7.50"_s);
        QVERIFY(shown.Copy({1, 2, 3}));
        shown.Paste({1, 1}, WrongColumn(2, 1));
        shown.Paste({6, 3}, WrongColumn(2, 3));
        shown.Paste({6, 2}, kNoRoom);
        shown.Paste({6, 2, 7}, kNoRoom);
        shown.Paste({1, 2, 2}, kFewRows);
        shown.Paste({5, 2});
        QCOMPARE(shown.Joined(2), u"100|7.50|100|100|100|7.50|100"_s);
        QVERIFY(shown.Copy({1, 3}));
        shown.Paste({4, 3});
        shown.Paste({4, 2}, WrongColumn(3, 2));
        // A label may go among the names, but is none; labels stay as they are.
        QVERIFY(shown.Copy({1, 1}));
        shown.Paste({5, 3}, kWrong);
        shown.Paste({5, 1}, WrongColumn(1, 1));
        QCOMPARE(shown.Joined(3), u"haut|||haut|||"_s);
        // An empty cell is copied like any other; among numbers it is wrong.
        QVERIFY(shown.Copy({2, 3}));
        shown.Paste({1, 3});
        QCOMPARE(shown.Joined(3), u"|||haut|||"_s);
        shown.session->table().SetCellText(3, 2, {});
        QVERIFY(shown.Copy({2, 2, 3}));
        shown.Paste({6, 2}, kWrong);
        QCOMPARE(shown.Joined(2), u"100|7.50||100|100|7.50|100"_s);
    }

    void RowsAndClipboardAfterTheCopy() {
        ShownGrid shown(Function, 6);
        QVERIFY(shown.Copy({2, 2, 6}));
        QVERIFY(shown.session->RemoveRows({4, 5, 6}));
        shown.Paste({3, 2});
        QCOMPARE(shown.Joined(2), u"1|2|2"_s);
        shown.Select({1, 1});
        shown.PasteText(u"0.5"_s);
        QVERIFY(shown.Copy({2, 1}));
        shown.Paste({3, 1});
        QCOMPARE(shown.Joined(1), u"0.5|2|2"_s);
    }

    // A press on the header takes the whole column, and a paste there renames the columns.
    void WholeColumn() {
        const std::pair<ProfileKind, QString> cases[] = {{Function, u"Time|Value"_s},
                                                         {Annual, u"Mois|Conso."_s},
                                                         {Monthly, u"Mois|Conso.|Profil"_s},
                                                         {Weekly, u"Jour|Conso.|Profil"_s},
                                                         {Daily, u"Heure|Conso."_s}};
        for (const auto& [kind, renamed] : cases) {
            ShownGrid shown(kind);
            const int rows = shown.session->table().RowCount();
            const QString headers = shown.Headers();
            QVERIFY(shown.Copy({0, 2}));
            QCOMPARE(ClipboardText(), shown.Joined(2).replace(u'|', u'\n'));
            // All rows without the header are no whole column.
            shown.Select({1, 2});
            shown.Paste({1, 2, rows});
            QCOMPARE(shown.Headers(), headers);
            shown.Select({0, 2});
            shown.messages.Expect(kNoRoom);
            shown.PasteText(Numbers(rows + 1));
            QCOMPARE(shown.Headers(), headers);
            QTest::mouseClick(shown.grid->viewport(), Qt::RightButton, {}, QPoint(10, 30));
            shown.PasteText(QStringList(rows, u"1,0"_s).join(u'\n'));
            QCOMPARE(shown.Headers(), renamed);
            const QStringList column = shown.Column(2);
            QCOMPARE(column.count(u"1.0"_s) + column.count(u"1.00"_s), rows);
            QCOMPARE(column.size(), rows);
        }
    }

    void RefusedBulkPaste() {
        const std::tuple<ProfileKind, QString, QString> cases[] = {
            {Annual, u"1\n5.01\n1"_s, kAnnualBound}, {Annual, u"-0,01"_s, kAnnualBound},
            {Daily, u"24,5"_s, kDailyBound},         {Daily, u"1\n1\n-1"_s, kDailyBound},
            {Daily, u"1\nx\n25"_s, kWrong},          {Annual, u"9\n1.2.3"_s, kSeparators},
            {Annual, u"1\n\n1"_s, kWrong},           {Annual, Numbers(12), kNoRoom},
            {Annual, u"1\t1"_s, WrongColumn(2, 3)}};
        for (const auto& [kind, text, message] : cases) {
            ShownGrid shown(kind);
            shown.session->EnterValue(1, u"2"_s);
            const QString edited_once = shown.Joined(2);
            shown.session->EnterValue(2, u"0.5"_s);
            const QString edited_twice = shown.Joined(2);
            QVERIFY(shown.session->Undo());
            shown.Select({3, 2});
            shown.messages.Expect(message);
            shown.PasteText(text);
            QCOMPARE(shown.Joined(2), edited_once);
            QVERIFY(shown.session->canUndo() && shown.session->Redo());
            QCOMPARE(shown.Joined(2), edited_twice);
            QVERIFY(shown.session->Undo() && shown.session->Undo() && !shown.session->canUndo());
        }
    }

    void BulkPasteIsOneStep() {
        ShownGrid shown(Annual);
        const QString before = shown.Joined(2);
        shown.session->SetEdition(true);
        shown.Select({3, 2});
        shown.PasteText(u"5\n0,25"_s);
        QCOMPARE(shown.Column(2), Texts(u"1|1|5|0.25|1*8"_s));
        // All rows are looked at, also those that were typed beyond the bound of a paste.
        shown.session->EnterValue(12, u"7"_s);
        shown.messages.Expect(kAnnualBound);
        shown.PasteText(u"1"_s);
        QVERIFY(shown.session->Undo() && shown.session->Undo() && !shown.session->canUndo());
        QCOMPARE(shown.Joined(2), before);
        // The pasted row keeps its value, the others follow.
        shown.session->SetEdition(false);
        shown.Select({1, 2});
        shown.PasteText(u"2"_s);
        QCOMPARE(shown.Column(2), Texts(u"1.99|0.91*11"_s));
        QVERIFY(shown.session->Undo() && !shown.session->canUndo());
    }

    // Each text goes to the row it was pasted on, however the rows move meanwhile.
    void PastedTimes() {
        const std::tuple<int, QString, QString, QString> cases[] = {
            {2, u"4.5\n0"_s, u"0|1|4|4.5|5"_s, u"3|1|4|2|5"_s},
            {2, u"0\n4.5"_s, u"0|1|4|4.5|5"_s, u"2|1|4|3|5"_s},
            {1, u"5\n4\n3\n2\n1"_s, u"1|2|3|4|5"_s, u"5|4|3|2|1"_s},
            {1, u"10\n9\n8"_s, u"4|5|8|9|10"_s, u"4|5|3|2|1"_s},
            {2, u"9\t90\n8\t80\n0\t0"_s, u"0|1|5|8|9"_s, u"0|1|5|80|90"_s}};
        for (const auto& [row, text, times, values] : cases) {
            ShownGrid shown(Function);
            shown.Select({row, 1});
            shown.PasteText(text);
            QCOMPARE(shown.Joined(1), times);
            QCOMPARE(shown.Joined(2), values);
            while (shown.session->Undo()) {
            }
            QCOMPARE(shown.AllCells().join(u' '), u"1|2|3|4|5 1|2|3|4|5 "_s);
        }
    }

    // A paste leaves what the same texts leave that are typed one after the other, whatever the
    // order of the rows and of the texts.
    void PastedAsTyped() {
        const QStringList times = Texts(u"0|1|1.0|2|2.50|3|1e1|7|0.1234567890123456|-4|host"_s);
        const QStringList entries = Texts(u"0|1|1,0|2|2.5|3|11|7.0|0.1234567890123456|-5|x|"_s);
        QRandomGenerator random(12);
        const auto any = [&](const QStringList& texts) {
            return texts[random.bounded(static_cast<int>(texts.size()))];
        };
        for (int round = 0; round < 300; ++round) {
            SessionBench pasted;
            SessionBench typed;
            const int count = 1 + random.bounded(round % 50 == 0 ? 400 : 20);
            for (int row = 0; row < count; ++row) {
                pasted.times += round % 2 == 0 ? any(times) : QString::number(row / 2);
                pasted.values += round % 3 == 0 ? u"1"_s : QString::number(row) + u".50"_s;
            }
            typed.times = pasted.times;
            typed.values = pasted.values;
            QVERIFY(pasted.Start(pasted.Setup(Function)) && typed.Start(typed.Setup(Function)));
            const int first = 1 + random.bounded(count);
            const int first_column = 1 + random.bounded(2);
            QList<QStringList> cells(1 + random.bounded(count + 1 - first));
            for (QStringList& line : cells)
                line = {any(entries), any(entries)};
            if (first_column == 2 || random.bounded(2) == 0) {
                for (QStringList& line : cells)
                    line.removeLast();
            }

            QList<int> refused;
            for (int column = 2; column >= first_column; --column) {
                QList<int> rows(cells.size());
                std::iota(rows.begin(), rows.end(), first);
                for (qsizetype i = 0; i < cells.size(); ++i) {
                    if (column - first_column >= cells[i].size())
                        continue;
                    const int from = rows[i];
                    const auto to =
                        StoreEntry(*typed.session, from, column, cells[i][column - first_column]);
                    if (!to) {
                        refused.append(first + static_cast<int>(i));
                        continue;
                    }
                    for (int& row : rows) {
                        if (row > from && row <= *to)
                            --row;
                        else if (row < from && row >= *to)
                            ++row;
                    }
                    rows[i] = *to;
                }
            }
            MessageScript messages;
            if (!refused.isEmpty())
                messages.Expect(kWrong);
            if (refused.size() > 1)
                messages.Expect(NotPasted(static_cast<int>(refused.size()), refused.first()));
            const QSignalSpy changes(&pasted.session->table(), &QAbstractItemModel::dataChanged);
            StorePaste(*pasted.session, cells, first, first_column, PasteSource::Foreign);
            QVERIFY2(messages.Done(), qPrintable(messages.Report()));
            QVERIFY(changes.size() <= 3);
            QCOMPARE(pasted.session->isModified(), typed.session->isModified());
            bool undone = true;
            while (undone) {
                QCOMPARE(pasted.Column(1), typed.Column(1));
                QCOMPARE(pasted.Column(2), typed.Column(2));
                undone = typed.session->Undo();
                QCOMPARE(pasted.session->Undo(), undone);
            }
            while (typed.session->Redo())
                QVERIFY(pasted.session->Redo());
            QCOMPARE(pasted.Column(1), typed.Column(1));
            QCOMPARE(pasted.Column(2), typed.Column(2));
        }
    }

    // Rows of the same texts that change places are no step.
    void PastedTwins() {
        SessionBench bench(Function, u"5*40"_s);
        StorePaste(*bench.session, QList<QStringList>(40, {u"5"_s}), 1, 1, PasteSource::Foreign);
        QVERIFY(!bench.session->canUndo());
    }

    void EachCellIsAStep() {
        ShownGrid shown(Weekly);
        shown.Select({1, 2});
        shown.messages.Expect(kWrong);
        shown.PasteText(u"1\n-\n100\n4"_s);
        QCOMPARE(shown.Column(2), Texts(u"1|100*2|4|100*3"_s));
        QVERIFY(shown.session->Undo());
        QCOMPARE(shown.Column(2), Texts(u"1|100*6"_s));
        QVERIFY(shown.session->Undo() && !shown.session->canUndo());
    }

    // All keys that the platform has for copying and pasting run the commands, or nothing.
    void Keys() {
        const MessageScript messages;
        for (const auto& [mode, copied] :
             {std::pair(DisplayMode::Edit, u"1100"_s), std::pair(DisplayMode::View, u"old"_s)}) {
            for (const auto& [copy, paste] :
                 {std::pair(Qt::Key_C, Qt::Key_V), std::pair(Qt::Key_Insert, Qt::Key_Insert)}) {
                const KindDialog shown(Function, mode);
                shown.Run([&, copy = copy, paste = paste, copied = copied] {
                    QGuiApplication::clipboard()->setText(u"old"_s);
                    const auto press = [&](Qt::Key key, Qt::KeyboardModifier modifier) {
                        QTest::keyClick(shown.dialog->windowHandle(), key, modifier);
                    };
                    const QString before = shown.Column(2).value(4);
                    shown.Grid()->SelectCell(3, 2);
                    press(copy, Qt::ControlModifier);
                    QCOMPARE(ClipboardText(), copied);
                    shown.Grid()->SelectCell(5, 2);
                    press(paste, paste == Qt::Key_V ? Qt::ControlModifier : Qt::ShiftModifier);
                    QCOMPARE(shown.Column(2).value(4), mode == DisplayMode::View ? before : copied);
                });
            }
        }
    }

    void ViewOnly() {
        ShownGrid shown(Annual, 0, DisplayMode::View);
        const QString before = shown.Joined(2);
        QVERIFY(!shown.Copy({1, 2}));
        QCOMPARE(ClipboardText(), QString());
        shown.PasteText(u"2"_s);
        shown.Select({0, 2});
        shown.PasteText(Numbers(12));
        QCOMPARE(shown.Joined(2), before);
        QVERIFY(shown.Headers().endsWith(u"|Coef. multiplicateur"));
    }
};

QTEST_MAIN(PasteTest)
#include "PasteTest.moc"
