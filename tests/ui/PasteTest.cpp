// Copy and paste between the grid and the system clipboard.

#include "MessageScript.h"
#include "grid/CGridControl.h"
#include "profiles/ProfileSession.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QHeaderView>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

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

QStringList Numbers(int count) {
    QStringList texts;
    for (int i = 1; i <= count; ++i)
        texts.append(QString::number(i));
    return texts;
}

QString ClipboardText() {
    return QGuiApplication::clipboard()->text();
}

void SetClipboardText(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

// A grid on the screen. A function gets as many points as asked for, (1, 1), (2, 2), ... Fails the
// running test when other messages came than were expected.
struct ShownGrid {
    explicit ShownGrid(ProfileKind kind, int points = 5, DisplayMode mode = DisplayMode::Edit)
        : texts(Numbers(points)) {
        SetClipboardText({});
        const QDir daily(ProfileFolders(folder.path()).KindFolder(ProfileKind::Daily));
        daily.mkpath(u"."_s);
        for (const QString& file : {u"bas.dat"_s, u"haut.dat"_s})
            QFile(daily.filePath(file)).open(QIODevice::WriteOnly);
        SessionSetup setup;
        setup.kind = kind;
        setup.mode = mode;
        setup.times = setup.values = &texts;
        setup.folders = ProfileFolders(folder.path());
        if (kind != ProfileKind::Function)
            setup.values = nullptr;
        session = std::make_unique<ProfileSession>(setup);
        if (mode == DisplayMode::Edit)
            session->InitialFill();
        tester = std::make_unique<QAbstractItemModelTester>(&session->table());
        grid = std::make_unique<CGridControl>(session.get());
        grid->InitGrid();
        grid->resize(300, 420);
        grid->show();
    }
    ~ShownGrid() {
        QDir::setCurrent(start_folder);  // Some kinds change it.
        if (!messages.Done())
            QTest::qFail(qPrintable(messages.Report()), __FILE__, __LINE__);
    }
    ShownGrid(const ShownGrid&) = delete;
    ShownGrid& operator=(const ShownGrid&) = delete;

    // Row 0 presses the column's header.
    void Select(const QList<int>& cells) {
        const int row = cells.value(0);
        const int column = cells.value(1);
        if (row == 0) {
            QHeaderView* const header = grid->horizontalHeader();
            const int x = header->sectionViewportPosition(column - 1) + 20;
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(x, 8));
            return;
        }
        const auto* const model = grid->model();
        grid->selectionModel()->select(
            QItemSelection(model->index(row - 1, column - 1),
                           model->index(cells.value(2, row) - 1, cells.value(3, column) - 1)),
            QItemSelectionModel::ClearAndSelect);
    }
    void Paste(const QString& text) {
        SetClipboardText(text);
        grid->PasteSelection();
    }
    QString Joined(int column) const { return session->table().Column(column).join(u'|'); }
    QStringList Headers() const {
        QStringList headers;
        for (int column = 1; column <= session->table().ColumnCount(); ++column)
            headers += session->table().HeaderText(column);
        return headers;
    }
    QStringList AllCells() const { return {Joined(1), Joined(2), Joined(3)}; }
    // Rows as "time value", a line each.
    QString Points() const {
        QString points;
        for (int row = 1; row <= session->table().RowCount(); ++row)
            points += session->table().CellText(row, 1) + u' ' + session->table().CellText(row, 2) +
                      u'\n';
        return points;
    }

    const QString start_folder = QDir::currentPath();
    QTemporaryDir folder;
    QStringList texts;
    MessageScript messages;
    std::unique_ptr<ProfileSession> session;
    std::unique_ptr<QAbstractItemModelTester> tester;
    std::unique_ptr<CGridControl> grid;
};

// The rows of a test, each in the column "row".
template <typename Row>
void AddRows(std::initializer_list<std::pair<const char*, Row>> rows) {
    QTest::addColumn<Row>("row");
    for (const auto& [name, row] : rows)
        QTest::newRow(name) << row;
}

using enum ProfileKind;

struct CopyRow {
    int points;
    QList<int> cells;  // to select; none when empty
    QString message;
    QString copied;
};

struct ForeignRow {
    ProfileKind kind;
    QList<int> cells;
    QString text;
    QStringList messages;
    int column;      // looked at afterwards
    QString result;  // "" for what it was
};

struct RefusedRow {
    ProfileKind kind;
    QString text;
    QString message;
};

struct TimesRow {
    int row;
    QString text;
    QString points;
};

}  // namespace

class PasteTest : public QObject {
    Q_OBJECT

private slots:
    void Copy_data() {
        AddRows<CopyRow>({{"nothing selected", {5, {}, kNoRow, {}}},
                          {"26 rows", {30, {3, 2, 28, 2}, kManyRows, {}}},
                          {"25 rows", {30, {2, 2, 26, 2}, {}, Numbers(26).mid(1).join(u'\n')}},
                          {"one time", {5, {2, 1}, {}, u"2"_s}},
                          {"header, 24 rows", {24, {0, 2}, {}, Numbers(24).join(u'\n')}},
                          {"header, 25 rows", {25, {0, 2}, kManyRows, {}}},
                          {"header of the times", {1, {0, 1}, kManyTimes, {}}}});
    }
    void Copy() {
        QFETCH(CopyRow, row);
        const bool copies = row.message.isEmpty();
        ShownGrid shown(Function, row.points);
        // What was copied before stays when a copy is refused.
        shown.Select({1, 2});
        QVERIFY(shown.grid->CopySelection());
        shown.grid->clearSelection();
        if (!row.cells.isEmpty())
            shown.Select(row.cells);
        if (!copies)
            shown.messages.Expect(row.message);
        QCOMPARE(shown.grid->CopySelection(), copies);
        QCOMPARE(ClipboardText(), copies ? row.copied : u"1"_s);
        if (!copies) {
            shown.Select({row.points, 1});
            shown.messages.Expect(WrongColumn(2, 1));
            shown.grid->PasteSelection();
        }
        QCOMPARE(shown.Joined(2), Numbers(row.points).join(u'|'));
    }

    void EmptyGrid() {
        ShownGrid shown(Function, 0);
        shown.Select({0, 2});
        shown.messages.Expect(kNoRow);
        QVERIFY(!shown.grid->CopySelection());
        shown.Paste(u"1\n2"_s);
        QCOMPARE(shown.session->table().RowCount(), 0);
    }

    // Text of other programs.
    void ForeignText_data() {
        AddRows<ForeignRow>(
            {{"CR LF and a last line end",
              {Weekly, {2, 2}, u"1\r\n2\r\n"_s, {}, 2, u"100|1|2|100|100|100|100"_s}},
             {"decimal commas, never thousands",
              {Weekly,
               {1, 2},
               u"1,234\n-0,5\n1.234"_s,
               {},
               2,
               u"1.234|-0.5|1.234|100|100|100|100"_s}},
             {"too many separators",
              {Weekly, {1, 2}, u"1\n1,234.5\n3"_s, {kSeparators}, 2, u"1|100|3|100|100|100|100"_s}},
             {"no number each",
              {Weekly,
               {1, 2},
               u"x\n0x10\n1e39\n1 234\n2\nnan"_s,
               {kWrong, kWrong, kWrong, kWrong, kWrong},
               2,
               u"100|100|100|100|2|100|100"_s}},
             {"an empty line",
              {Weekly, {1, 2}, u"1\n\n3\n\n"_s, {kWrong, kWrong}, 2, u"1|100|3|100|100|100|100"_s}},
             {"nothing", {Weekly, {1, 2}, {}, {}, 2, {}}},
             {"nothing selected", {Weekly, {}, u"1"_s, {}, 2, {}}},
             {"just fits", {Weekly, {1, 2}, Numbers(7).join(u'\n'), {}, 2, u"1|2|3|4|5|6|7"_s}},
             {"no room", {Weekly, {6, 2}, Numbers(3).join(u'\n'), {kNoRoom}, 2, {}}},
             {"too few rows selected",
              {Weekly, {1, 2, 2, 2}, Numbers(3).join(u'\n'), {kFewRows}, 2, {}}},
             {"more rows selected",
              {Weekly, {1, 2, 5, 2}, Numbers(3).join(u'\n'), {}, 2, u"1|2|3|100|100|100|100"_s}},
             {"values and names", {Weekly, {1, 2}, u"1\tbas"_s, {WrongColumn(2, 3)}, 2, {}}},
             {"names", {Weekly, {2, 3}, u"bas\nhaut"_s, {}, 3, u"|bas|haut||||"_s}},
             {"a name that is not there",
              {Weekly,
               {2, 3},
               u"bas\nnone\nVOIR\nhaut"_s,
               {kWrong, kWrong},
               3,
               u"|bas|||haut||"_s}},
             {"two columns", {Function, {2, 1}, u"2,5\t7\r\n3,5\t8\r\n"_s, {}, 2, u"1|7|8|4|5"_s}},
             {"three columns", {Function, {2, 1}, u"1\t2\t3"_s, {WrongColumn(3, 3)}, 2, {}}},
             {"uneven lines", {Function, {1, 1}, u"1\t7\n2\n3\t9"_s, {}, 2, u"7|2|9|4|5"_s}},
             {"wrong cells of two columns",
              {Function, {1, 1}, u"x\t7\n2\ty"_s, {kWrong, kWrong}, 2, u"7|2|3|4|5"_s}},
             {"annual, the rounding error goes to the pasted value",
              {Annual, {1, 2}, u"5"_s, {}, 2, u"4.96"_s + u"|0.64"_s.repeated(11)}}});
    }
    void ForeignText() {
        QFETCH(ForeignRow, row);
        ShownGrid shown(row.kind);
        if (!row.cells.isEmpty())
            shown.Select(row.cells);
        for (const QString& message : row.messages)
            shown.messages.Expect(message);
        const QStringList before = shown.AllCells();
        shown.Paste(row.text);
        if (row.result.isEmpty())
            QCOMPARE(shown.AllCells(), before);
        else
            QCOMPARE(shown.Joined(row.column), row.result);
        QCOMPARE(shown.session->canUndo(), !row.result.isEmpty());
        QVERIFY(!shown.session->isSaved());
    }

    // The grid's own copies know the column they came from.
    void OwnText() {
        ShownGrid shown(Weekly);
        shown.session->EnterName(1, u"haut"_s);
        shown.session->EnterValue(2, u"7.50"_s);
        const auto copy = [&](const QList<int>& cells) {
            shown.Select(cells);
            return shown.grid->CopySelection();
        };
        const auto paste = [&](const QList<int>& cells, const QString& message) {
            if (!message.isEmpty())
                shown.messages.Expect(message);
            shown.Select(cells);
            shown.grid->PasteSelection();
        };
        QVERIFY(copy({1, 2, 3, 2}));
        paste({1, 1}, WrongColumn(2, 1));
        paste({1, 3}, WrongColumn(2, 3));
        paste({6, 2}, kNoRoom);
        paste({1, 2, 2, 2}, kFewRows);
        paste({5, 2}, {});
        QCOMPARE(shown.Joined(2), u"100|7.50|100|100|100|7.50|100"_s);
        QVERIFY(copy({1, 3}));
        paste({4, 3}, {});
        paste({4, 2}, WrongColumn(3, 2));
        // A label may go among the names, but is none.
        QVERIFY(copy({1, 1}));
        paste({5, 3}, kWrong);
        QCOMPARE(shown.Joined(3), u"haut|||haut|||"_s);
    }

    void RowsAndClipboardAfterTheCopy() {
        ShownGrid shown(Function, 6);
        shown.Select({2, 2, 6, 2});
        QVERIFY(shown.grid->CopySelection());
        QVERIFY(shown.session->RemoveRows({4, 5, 6}));
        shown.Select({3, 2});
        shown.grid->PasteSelection();
        QCOMPARE(shown.Joined(2), u"1|2|2"_s);
        shown.Select({1, 1});
        shown.Paste(u"0.5"_s);
        QCOMPARE(shown.Joined(1), u"0.5|2|3"_s);
    }

    // A press on the header takes the whole column, and a paste there renames the columns.
    void WholeColumn_data() {
        AddRows<std::pair<ProfileKind, QString>>({{"function", {Function, u"Time|Value"_s}},
                                                  {"annual", {Annual, u"Mois|Conso."_s}},
                                                  {"monthly", {Monthly, u"Mois|Conso.|Profil"_s}},
                                                  {"weekly", {Weekly, u"Jour|Conso.|Profil"_s}},
                                                  {"daily", {Daily, u"Heure|Conso."_s}}});
    }
    void WholeColumn() {
        using Row = std::pair<ProfileKind, QString>;
        QFETCH(Row, row);
        ShownGrid shown(row.first);
        const int rows = shown.session->table().RowCount();
        const QStringList first_headers = shown.Headers();
        shown.Select({0, 2});
        QVERIFY(shown.grid->CopySelection());
        QCOMPARE(ClipboardText(), shown.Joined(2).replace(u'|', u'\n'));
        // All rows without the header are no whole column.
        shown.Select({1, 2});
        shown.Select({1, 2, rows, 2});
        shown.grid->PasteSelection();
        QCOMPARE(shown.Headers(), first_headers);
        shown.Select({0, 2});
        shown.messages.Expect(kNoRoom);
        shown.Paste(Numbers(rows + 1).join(u'\n'));
        QCOMPARE(shown.Headers(), first_headers);
        shown.Paste(QStringList(rows, u"1,0"_s).join(u'\n'));
        QCOMPARE(shown.Headers().join(u'|'), row.second);
        const QStringList column = shown.session->table().Column(2);
        QCOMPARE(column.count(u"1.0"_s) + column.count(u"1.00"_s), rows);
        QCOMPARE(column.size(), rows);
    }

    void RefusedBulkPaste_data() {
        AddRows<RefusedRow>({{"annual, above", {Annual, u"1\n5.01\n1"_s, kAnnualBound}},
                             {"annual, negative", {Annual, u"-0,01"_s, kAnnualBound}},
                             {"daily, above", {Daily, u"24,5"_s, kDailyBound}},
                             {"daily, negative", {Daily, u"1\n1\n-1"_s, kDailyBound}},
                             {"a word", {Daily, u"1\nx\n25"_s, kWrong}},
                             {"separators", {Annual, u"9\n1.2.3"_s, kSeparators}},
                             {"empty line", {Annual, u"1\n\n1"_s, kWrong}},
                             {"no room", {Annual, Numbers(12).join(u'\n'), kNoRoom}},
                             {"two columns", {Annual, u"1\t1"_s, WrongColumn(2, 3)}}});
    }
    void RefusedBulkPaste() {
        QFETCH(RefusedRow, row);
        ShownGrid shown(row.kind);
        shown.session->EnterValue(1, u"2"_s);
        const QString edited_once = shown.Joined(2);
        shown.session->EnterValue(2, u"0.5"_s);
        const QString edited_twice = shown.Joined(2);
        QVERIFY(shown.session->Undo());
        shown.Select({3, 2});
        shown.messages.Expect(row.message);
        shown.Paste(row.text);
        QCOMPARE(shown.Joined(2), edited_once);
        QVERIFY(shown.session->canUndo() && shown.session->canRedo());
        QVERIFY(shown.session->Redo());
        QCOMPARE(shown.Joined(2), edited_twice);
        QVERIFY(shown.session->Undo() && shown.session->Undo() && !shown.session->canUndo());
    }

    void BulkPasteIsOneStep() {
        ShownGrid shown(Annual);
        const QString before = shown.Joined(2);
        shown.session->SetEdition(true);
        shown.Select({3, 2});
        shown.Paste(u"5\n0,25"_s);
        QCOMPARE(shown.Joined(2), u"1|1|5|0.25|1|1|1|1|1|1|1|1"_s);
        // All rows are looked at, also those that were typed beyond the bound of a paste.
        shown.session->EnterValue(12, u"7"_s);
        shown.messages.Expect(kAnnualBound);
        shown.Paste(u"1"_s);
        QVERIFY(shown.session->Undo() && shown.session->Undo() && !shown.session->canUndo());
        QCOMPARE(shown.Joined(2), before);
        // The pasted row keeps its value, the others follow.
        shown.session->SetEdition(false);
        shown.Select({1, 2});
        shown.Paste(u"2"_s);
        QCOMPARE(shown.Joined(2), u"1.99"_s + u"|0.91"_s.repeated(11));
        QVERIFY(shown.session->Undo() && !shown.session->canUndo());
    }

    // Each text goes to the row it was pasted on, however the rows move meanwhile.
    void PastedTimes_data() {
        AddRows<TimesRow>(
            {{"both move", {2, u"4.5\n0"_s, u"0 3\n1 1\n4 4\n4.5 2\n5 5\n"_s}},
             {"the other order", {2, u"0\n4.5"_s, u"0 2\n1 1\n4 4\n4.5 3\n5 5\n"_s}},
             {"all turned round", {1, u"5\n4\n3\n2\n1"_s, u"1 5\n2 4\n3 3\n4 2\n5 1\n"_s}},
             {"past each other", {1, u"10\n9\n8"_s, u"4 4\n5 5\n8 3\n9 2\n10 1\n"_s}},
             {"with their values",
              {2, u"9\t90\n8\t80\n0\t0"_s, u"0 0\n1 1\n5 5\n8 80\n9 90\n"_s}}});
    }
    void PastedTimes() {
        QFETCH(TimesRow, row);
        ShownGrid shown(Function);
        shown.Select({row.row, 1});
        shown.Paste(row.text);
        QCOMPARE(shown.Points(), row.points);
        while (shown.session->Undo()) {
        }
        QCOMPARE(shown.Points(), u"1 1\n2 2\n3 3\n4 4\n5 5\n"_s);
    }

    void EachCellIsAStep() {
        ShownGrid shown(Weekly);
        shown.Select({1, 2});
        shown.messages.Expect(kWrong);
        shown.Paste(u"1\n-\n100\n4"_s);
        QCOMPARE(shown.Joined(2), u"1|100|100|4|100|100|100"_s);
        QVERIFY(shown.session->Undo());
        QCOMPARE(shown.Joined(2), u"1|100|100|100|100|100|100"_s);
        QVERIFY(shown.session->Undo() && !shown.session->canUndo());
    }

    void ViewOnly() {
        ShownGrid shown(Annual, 0, DisplayMode::View);
        const QString before = shown.Joined(2);
        shown.Select({1, 2});
        QVERIFY(!shown.grid->CopySelection());
        QCOMPARE(ClipboardText(), QString());
        shown.Paste(u"2"_s);
        shown.Select({0, 2});
        shown.Paste(Numbers(12).join(u'\n'));
        QCOMPARE(shown.Joined(2), before);
        QCOMPARE(shown.Headers()[1], u"Coef. multiplicateur"_s);
    }
};

QTEST_MAIN(PasteTest)
#include "PasteTest.moc"
