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
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

const QString kNoRow = u"Impossible de copier:\nAucune ligne n'est sélectionnée !"_s;
const QString kManyColumns = u"Impossible de copier plusieurs\ncolonnes à la fois !"_s;
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

// A grid on the screen. A function gets as many points as asked for, (1, 1), (2, 2), ...
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

    // Row 0 presses the column's header.
    void Select(int row, int column, int last_row = 0, int last_column = 0) {
        if (row == 0) {
            QHeaderView* const header = grid->horizontalHeader();
            const int x = header->sectionViewportPosition(column - 1) + 20;
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(x, 8));
            return;
        }
        const auto* const model = grid->model();
        grid->selectionModel()->select(
            QItemSelection(
                model->index(row - 1, column - 1),
                model->index(std::max(row, last_row) - 1, std::max(column, last_column) - 1)),
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
    // Rows as "time value", a line each.
    QString Points() const {
        QString points;
        for (int row = 1; row <= session->table().RowCount(); ++row)
            points += session->table().CellText(row, 1) + u' ' + session->table().CellText(row, 2) +
                      u'\n';
        return points;
    }

    QTemporaryDir folder;
    QStringList texts;
    MessageScript messages;
    std::unique_ptr<ProfileSession> session;
    std::unique_ptr<QAbstractItemModelTester> tester;
    std::unique_ptr<CGridControl> grid;
};

}  // namespace

class PasteTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QDir::setCurrent(m_start_folder); }

    void Copy_data();
    void Copy();
    void EmptyGrid();
    void ForeignText_data();
    void ForeignText();
    void OwnText();
    void OwnTextLeavesWithTheClipboard();
    void RowsGoneSinceTheCopy();
    void WholeColumn_data();
    void WholeColumn();
    void RefusedBulkPaste_data();
    void RefusedBulkPaste();
    void BulkPasteIsOneStep();
    void PastedTimes_data();
    void PastedTimes();
    void EachCellIsAStep();
    void ViewOnly();

private:
    const QString m_start_folder = QDir::currentPath();
};

void PasteTest::Copy_data() {
    QTest::addColumn<int>("points");
    QTest::addColumn<QList<int>>("cells");  // arguments of Select
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("copied");
    using Cells = QList<int>;
    QTest::newRow("nothing selected") << 5 << Cells() << kNoRow << "";
    QTest::newRow("two columns") << 5 << Cells{2, 1, 2, 2} << kManyColumns << "";
    QTest::newRow("two columns of 26 rows") << 30 << Cells{1, 1, 26, 2} << kManyColumns << "";
    QTest::newRow("26 rows") << 30 << Cells{3, 2, 28, 2} << kManyRows << "";
    QTest::newRow("25 rows") << 30 << Cells{2, 2, 26, 2} << "" << Numbers(26).mid(1).join(u'\n');
    QTest::newRow("two times") << 5 << Cells{2, 1, 3, 1} << kManyTimes << "";
    QTest::newRow("one time") << 5 << Cells{2, 1} << ""
                              << "2";
    QTest::newRow("header, 24 rows") << 24 << Cells{0, 2} << "" << Numbers(24).join(u'\n');
    QTest::newRow("header, 25 rows") << 25 << Cells{0, 2} << kManyRows << "";
    QTest::newRow("header of the times") << 1 << Cells{0, 1} << kManyTimes << "";
}

void PasteTest::Copy() {
    QFETCH(int, points);
    QFETCH(QList<int>, cells);
    QFETCH(QString, message);
    QFETCH(QString, copied);
    ShownGrid shown(ProfileKind::Function, points);
    // What was copied before stays when a copy is refused.
    shown.Select(1, 2);
    QVERIFY(shown.grid->CopySelection());
    shown.grid->clearSelection();
    if (!cells.isEmpty())
        shown.Select(cells.value(0), cells.value(1), cells.value(2), cells.value(3));
    if (!message.isEmpty())
        shown.messages.Expect(message);
    QCOMPARE(shown.grid->CopySelection(), message.isEmpty());
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
    QCOMPARE(ClipboardText(), message.isEmpty() ? copied : u"1"_s);
    if (!message.isEmpty()) {
        shown.Select(points, 1);
        shown.messages.Expect(WrongColumn(2, 1));
        shown.grid->PasteSelection();
        QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
    }
    QCOMPARE(shown.Joined(2), Numbers(points).join(u'|'));
}

void PasteTest::EmptyGrid() {
    ShownGrid shown(ProfileKind::Function, 0);
    shown.Select(0, 2);
    shown.messages.Expect(kNoRow);
    QVERIFY(!shown.grid->CopySelection());
    shown.Paste(u"1\n2"_s);
    QCOMPARE(shown.session->table().RowCount(), 0);
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
}

// Text of other programs.
void PasteTest::ForeignText_data() {
    QTest::addColumn<ProfileKind>("kind");
    QTest::addColumn<QList<int>>("cells");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<int>("column");      // looked at afterwards
    QTest::addColumn<QString>("result");  // "" for what it was
    using enum ProfileKind;
    using Cells = QList<int>;
    const QStringList silent;
    const auto weekly = [](const char* name, const Cells& cells, const QString& text,
                           const QStringList& messages, int column, const char* result) {
        QTest::newRow(name) << Weekly << cells << text << messages << column << result;
    };
    const auto points = [](const char* name, const Cells& cells, const QString& text,
                           const QStringList& messages, int column, const char* result) {
        QTest::newRow(name) << Function << cells << text << messages << column << result;
    };
    weekly("lines", {2, 2}, u"1\n2\n3"_s, silent, 2, "100|1|2|3|100|100|100");
    weekly("CR LF and a last line end", {2, 2}, u"1\r\n2\r\n"_s, silent, 2,
           "100|1|2|100|100|100|100");
    weekly("decimal commas, never thousands", {1, 2}, u"1,234\n-0,5\n1.234"_s, silent, 2,
           "1.234|-0.5|1.234|100|100|100|100");
    weekly("too many separators", {1, 2}, u"1\n1,234.5\n3"_s, {kSeparators}, 2,
           "1|100|3|100|100|100|100");
    weekly("a word among numbers", {1, 2}, u"1\nx\n3"_s, {kWrong}, 2, "1|100|3|100|100|100|100");
    weekly("no number each", {1, 2}, u"nan\n0x10\n1e39\n1 234\n2"_s,
           {kWrong, kWrong, kWrong, kWrong}, 2, "100|100|100|100|2|100|100");
    weekly("an empty line", {1, 2}, u"1\n\n3\n\n"_s, {kWrong, kWrong}, 2,
           "1|100|3|100|100|100|100");
    weekly("nothing", {1, 2}, QString(), silent, 2, "");
    weekly("just fits", {1, 2}, Numbers(7).join(u'\n'), silent, 2, "1|2|3|4|5|6|7");
    weekly("one too many", {1, 2}, Numbers(8).join(u'\n'), {kNoRoom}, 2, "");
    weekly("no room at the end", {6, 2}, Numbers(3).join(u'\n'), {kNoRoom}, 2, "");
    weekly("too few rows selected", {1, 2, 2, 2}, Numbers(3).join(u'\n'), {kFewRows}, 2, "");
    weekly("more rows selected", {1, 2, 5, 2}, Numbers(3).join(u'\n'), silent, 2,
           "1|2|3|100|100|100|100");
    weekly("nothing selected", {}, u"1"_s, silent, 2, "");
    weekly("into the labels", {1, 1}, u"1"_s, {WrongColumn(1, 1)}, 1, "");
    weekly("values and names", {1, 2}, u"1\tbas"_s, {WrongColumn(2, 3)}, 2, "");
    weekly("names", {2, 3}, u"bas\nhaut"_s, silent, 3, "|bas|haut||||");
    weekly("a name that is not there", {2, 3}, u"bas\nnone\nVOIR\nhaut"_s, {kWrong, kWrong}, 3,
           "|bas|||haut||");
    points("two columns", {2, 1}, u"2,5\t7\r\n3,5\t8\r\n"_s, silent, 2, "1|7|8|4|5");
    points("three columns", {2, 1}, u"1\t2\t3"_s, {WrongColumn(3, 3)}, 2, "");
    points("two columns beside the values", {2, 2}, u"1\t2"_s, {WrongColumn(2, 3)}, 2, "");
    points("uneven lines", {1, 1}, u"1\t7\n2\n3\t9"_s, silent, 2, "7|2|9|4|5");
    points("wrong cells of two columns", {1, 1}, u"x\t7\n2\ty"_s, {kWrong, kWrong}, 2, "7|2|3|4|5");
    QTest::newRow("annual, the rounding error goes to the pasted value")
        << Annual << Cells{1, 2} << u"5"_s << silent << 2
        << "4.96|0.64|0.64|0.64|0.64|0.64|0.64|0.64|0.64|0.64|0.64|0.64";
}

void PasteTest::ForeignText() {
    QFETCH(ProfileKind, kind);
    QFETCH(QList<int>, cells);
    QFETCH(QString, text);
    QFETCH(QStringList, messages);
    QFETCH(int, column);
    QFETCH(QString, result);
    ShownGrid shown(kind);
    if (!cells.isEmpty())
        shown.Select(cells.value(0), cells.value(1), cells.value(2), cells.value(3));
    for (const QString& message : messages)
        shown.messages.Expect(message);
    const QStringList before = {shown.Joined(1), shown.Joined(2), shown.Joined(3)};
    shown.Paste(text);
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
    if (result.isEmpty())
        QCOMPARE(QStringList({shown.Joined(1), shown.Joined(2), shown.Joined(3)}), before);
    else
        QCOMPARE(shown.Joined(column), result);
    QCOMPARE(shown.session->canUndo(), !result.isEmpty());
    QVERIFY(!shown.session->isSaved());
}

// The grid's own copies know the column they came from.
void PasteTest::OwnText() {
    ShownGrid shown(ProfileKind::Weekly);
    shown.session->EnterName(1, u"haut"_s);
    shown.session->EnterValue(2, u"7.50"_s);
    shown.Select(1, 2, 3, 2);
    QVERIFY(shown.grid->CopySelection());
    shown.messages.Expect(WrongColumn(2, 1));
    shown.messages.Expect(WrongColumn(2, 3));
    shown.messages.Expect(kNoRoom);
    shown.messages.Expect(kFewRows);
    for (const QList<int>& cells :
         {QList<int>{1, 1, 1, 1}, {1, 3, 1, 3}, {6, 2, 6, 2}, {1, 2, 2, 2}}) {
        shown.Select(cells[0], cells[1], cells[2], cells[3]);
        shown.grid->PasteSelection();
    }
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
    shown.Select(5, 2);
    shown.grid->PasteSelection();
    QCOMPARE(shown.Joined(2), u"100|7.50|100|100|100|7.50|100"_s);

    shown.Select(1, 3);
    QVERIFY(shown.grid->CopySelection());
    shown.Select(4, 3);
    shown.grid->PasteSelection();
    QCOMPARE(shown.Joined(3), u"haut|||haut|||"_s);
    shown.messages.Expect(WrongColumn(3, 2));
    shown.Select(4, 2);
    shown.grid->PasteSelection();
    // A label may go among the names, but is none.
    shown.Select(1, 1);
    QVERIFY(shown.grid->CopySelection());
    shown.messages.Expect(kWrong);
    shown.Select(5, 3);
    shown.grid->PasteSelection();
    QCOMPARE(shown.Joined(3), u"haut|||haut|||"_s);
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
}

void PasteTest::OwnTextLeavesWithTheClipboard() {
    ShownGrid shown(ProfileKind::Function);
    shown.Select(2, 2, 4, 2);
    QVERIFY(shown.grid->CopySelection());
    shown.Select(1, 1);
    shown.Paste(u"0.5"_s);
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
    QCOMPARE(shown.Joined(1), u"0.5|2|3|4|5"_s);
}

void PasteTest::RowsGoneSinceTheCopy() {
    ShownGrid shown(ProfileKind::Function, 6);
    shown.Select(2, 2, 6, 2);
    QVERIFY(shown.grid->CopySelection());
    QVERIFY(shown.session->RemoveRows({4, 5, 6}));
    shown.Select(3, 2);
    shown.grid->PasteSelection();
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
    QCOMPARE(shown.Joined(2), u"1|2|2"_s);
}

// A press on the header takes the whole column, and a paste there renames the columns.
void PasteTest::WholeColumn_data() {
    QTest::addColumn<ProfileKind>("kind");
    QTest::addColumn<QStringList>("headers");
    using enum ProfileKind;
    QTest::newRow("function") << Function << QStringList{u"Time"_s, u"Value"_s};
    QTest::newRow("annual") << Annual << QStringList{u"Mois"_s, u"Conso."_s};
    QTest::newRow("monthly") << Monthly << QStringList{u"Mois"_s, u"Conso."_s, u"Profil"_s};
    QTest::newRow("weekly") << Weekly << QStringList{u"Jour"_s, u"Conso."_s, u"Profil"_s};
    QTest::newRow("daily") << Daily << QStringList{u"Heure"_s, u"Conso."_s};
}

void PasteTest::WholeColumn() {
    QFETCH(ProfileKind, kind);
    QFETCH(QStringList, headers);
    ShownGrid shown(kind);
    const int rows = shown.session->table().RowCount();
    const QStringList first_headers = shown.Headers();
    const QString before = shown.Joined(2);
    shown.Select(0, 2);
    QVERIFY(shown.grid->CopySelection());
    QCOMPARE(ClipboardText(), QString(before).replace(u'|', u'\n'));
    // All rows without the header are no whole column.
    shown.Select(1, 2);
    shown.Select(1, 2, rows, 2);
    shown.grid->PasteSelection();
    QCOMPARE(shown.Headers(), first_headers);
    shown.Select(0, 2);
    shown.messages.Expect(kNoRoom);
    shown.Paste(Numbers(rows + 1).join(u'\n'));
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
    QCOMPARE(shown.Headers(), first_headers);
    shown.Paste(QStringList(rows, u"1,0"_s).join(u'\n'));
    QCOMPARE(shown.Headers(), headers);
    QCOMPARE(shown.session->table().Column(2).count(u"1.0"_s) +
                 shown.session->table().Column(2).count(u"1.00"_s),
             rows);
    QCOMPARE(shown.session->table().RowCount(), rows);
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
}

void PasteTest::RefusedBulkPaste_data() {
    QTest::addColumn<ProfileKind>("kind");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");
    using enum ProfileKind;
    QTest::newRow("annual, above") << Annual << "1\n5.01\n1" << kAnnualBound;
    QTest::newRow("annual, negative") << Annual << "-0,01" << kAnnualBound;
    QTest::newRow("daily, above") << Daily << "24,5" << kDailyBound;
    QTest::newRow("daily, negative") << Daily << "1\n1\n-1" << kDailyBound;
    QTest::newRow("a word") << Daily << "1\nx\n25" << kWrong;
    QTest::newRow("separators") << Annual << "9\n1.2.3" << kSeparators;
    QTest::newRow("empty line") << Annual << "1\n\n1" << kWrong;
    QTest::newRow("no room") << Annual << Numbers(12).join(u'\n') << kNoRoom;
    QTest::newRow("two columns") << Annual << "1\t1" << WrongColumn(2, 3);
}

void PasteTest::RefusedBulkPaste() {
    QFETCH(ProfileKind, kind);
    QFETCH(QString, text);
    QFETCH(QString, message);
    ShownGrid shown(kind);
    shown.session->EnterValue(1, u"2"_s);
    const QString edited_once = shown.Joined(2);
    shown.session->EnterValue(2, u"0.5"_s);
    const QString edited_twice = shown.Joined(2);
    QVERIFY(shown.session->Undo());
    shown.Select(3, 2);
    shown.messages.Expect(message);
    shown.Paste(text);
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
    QCOMPARE(shown.Joined(2), edited_once);
    QVERIFY(shown.session->canUndo() && shown.session->canRedo());
    QVERIFY(shown.session->Redo());
    QCOMPARE(shown.Joined(2), edited_twice);
    QVERIFY(shown.session->Undo() && shown.session->Undo() && !shown.session->canUndo());
}

void PasteTest::BulkPasteIsOneStep() {
    ShownGrid shown(ProfileKind::Annual);
    const QString before = shown.Joined(2);
    shown.session->SetEdition(true);
    shown.Select(3, 2);
    shown.Paste(u"5\n0,25"_s);
    QCOMPARE(shown.Joined(2), u"1|1|5|0.25|1|1|1|1|1|1|1|1"_s);
    // All rows are looked at, also those that were typed beyond the bound of a paste.
    shown.session->EnterValue(12, u"7"_s);
    shown.messages.Expect(kAnnualBound);
    shown.Paste(u"1"_s);
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
    QVERIFY(shown.session->Undo() && shown.session->Undo() && !shown.session->canUndo());
    QCOMPARE(shown.Joined(2), before);
    // The pasted row keeps its value, the others follow.
    shown.session->SetEdition(false);
    shown.Select(1, 2);
    shown.Paste(u"2"_s);
    QCOMPARE(shown.Joined(2), u"1.99|0.91|0.91|0.91|0.91|0.91|0.91|0.91|0.91|0.91|0.91|0.91"_s);
    QVERIFY(shown.session->Undo() && !shown.session->canUndo());
}

// Each text goes to the row it was pasted on, however the rows move meanwhile.
void PasteTest::PastedTimes_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("points");
    QTest::newRow("both move") << 2 << "4.5\n0"
                               << "0 3\n1 1\n4 4\n4.5 2\n5 5\n";
    QTest::newRow("the other order") << 2 << "0\n4.5"
                                     << "0 2\n1 1\n4 4\n4.5 3\n5 5\n";
    QTest::newRow("all turned round") << 1 << "5\n4\n3\n2\n1"
                                      << "1 5\n2 4\n3 3\n4 2\n5 1\n";
    QTest::newRow("past each other") << 1 << "10\n9\n8"
                                     << "4 4\n5 5\n8 3\n9 2\n10 1\n";
    QTest::newRow("with their values") << 2 << "9\t90\n8\t80\n0\t0"
                                       << "0 0\n1 1\n5 5\n8 80\n9 90\n";
}

void PasteTest::PastedTimes() {
    QFETCH(int, row);
    QFETCH(QString, text);
    ShownGrid shown(ProfileKind::Function);
    shown.Select(row, 1);
    shown.Paste(text);
    QTEST(shown.Points(), "points");
    while (shown.session->Undo()) {
    }
    QCOMPARE(shown.Points(), u"1 1\n2 2\n3 3\n4 4\n5 5\n"_s);
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
}

void PasteTest::EachCellIsAStep() {
    ShownGrid shown(ProfileKind::Weekly);
    shown.Select(1, 2);
    shown.messages.Expect(kWrong);
    shown.Paste(u"1\n-\n100\n4"_s);
    QCOMPARE(shown.Joined(2), u"1|100|100|4|100|100|100"_s);
    QVERIFY(shown.session->Undo());
    QCOMPARE(shown.Joined(2), u"1|100|100|100|100|100|100"_s);
    QVERIFY(shown.session->Undo() && !shown.session->canUndo());
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
}

void PasteTest::ViewOnly() {
    ShownGrid shown(ProfileKind::Annual, 0, DisplayMode::View);
    const QString before = shown.Joined(2);
    shown.Select(1, 2);
    QVERIFY(!shown.grid->CopySelection());
    QCOMPARE(ClipboardText(), QString());
    shown.Paste(u"2"_s);
    QCOMPARE(shown.Joined(2), before);
    shown.Select(0, 2);
    shown.Paste(Numbers(12).join(u'\n'));
    QCOMPARE(shown.Joined(2), before);
    QCOMPARE(shown.Headers()[1], u"Coef. multiplicateur"_s);
    QVERIFY2(shown.messages.Done(), qPrintable(shown.messages.Report()));
}

QTEST_MAIN(PasteTest)
#include "PasteTest.moc"
