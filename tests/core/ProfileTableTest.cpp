// SPDX-License-Identifier: GPL-3.0-or-later
// The model of the live rows against plain lists, and a chart that follows it.

#include "SessionChecks.h"
#include "TestFiles.h"
#include "TestRows.h"
#include "chart/CGraphControl.h"
#include "profiles/ProfileTable.h"
#include "profiles/TableText.h"

#include <QAbstractItemModelTester>
#include <QProcess>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct BoundChart {
    explicit BoundChart(ProfileKind kind) : table(kind) {
        if (kind == ProfileKind::Function)
            control.BuildFunctionChart();
        else
            control.BuildProfileChart(kind);
        control.Attach(&table, kind);
    }

    ProfileTable table;
    CGraphControl control;
    const CDocControl& document = control.document();
};

}  // namespace

class ProfileTableTest : public QObject {
    Q_OBJECT

private slots:
    // A spreadsheet takes the numbers of a copied table for numbers, whatever its language.
    void SpreadsheetAddsUpTheCopy_data() {
        QTest::addColumn<QString>("locale");
        for (const char* const locale : {"C.UTF-8", "fr_FR.UTF-8"})
            QTest::newRow(locale) << QString::fromLatin1(locale);
    }
    void SpreadsheetAddsUpTheCopy() {
        QFETCH(const QString, locale);
        if (QStandardPaths::findExecutable(u"ssconvert"_s).isEmpty())
            QSKIP("Gnumeric is not installed.");
        const QTemporaryDir folder;
        const bool is_french = locale.startsWith(u"fr"_s);
        if (is_french)  // it need not be installed
            QProcess::execute(u"localedef"_s,
                              {u"-i"_s, u"fr_FR"_s, u"-f"_s, u"UTF-8"_s, folder.filePath(locale)});
        QProcess convert;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"LOCPATH"_s, folder.path());
        environment.insert(u"LC_ALL"_s, locale);
        convert.setProcessEnvironment(environment);
        ProfileTable table(ProfileKind::Function);
        table.ResetRows({u"0"_s, u"0.5"_s, u"1000"_s}, {u"1.25"_s, u"-2.5"_s, u"3"_s});
        for (const TableFormat& format : {kCopiedTable, kCopiedTableWithCommas}) {
            QVERIFY(WriteAll(folder.filePath(u"in.txt"_s), TableText(table, format).toUtf8()));
            convert.start(u"ssconvert"_s, {u"--import-type=Gnumeric_stf:stf_csvtab"_s, u"--set"_s,
                                           u"D1==sum(A1:B3)"_s, folder.filePath(u"in.txt"_s),
                                           folder.filePath(u"out.csv"_s)});
            QVERIFY(convert.waitForFinished(120'000));
            const QByteArray first_line = ReadAll(folder.filePath(u"out.csv"_s)).split('\n')[0];
            QCOMPARE(first_line, is_french ? "0,\"1,25\",,\"1002,25\"" : "0,1.25,,1002.25");
        }
    }

    void RandomChanges_data() {
        AddRows<ProfileKind>(
            {{"function", ProfileKind::Function}, {"monthly", ProfileKind::Monthly}});
    }
    void RandomChanges() {
        QFETCH(ProfileKind, row);
        BoundChart chart(row);
        ProfileTable& table = chart.table;
        const QAbstractItemModelTester tester(
            &table, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QStringList columns[2];
        QRandomGenerator random(7);
        const auto text = [&random] {
            static const QStringList odd = Texts(u"|abc|inf|1e999|1.5abc"_s);
            return random.bounded(5) == 0 ? odd[random.bounded(5)]
                                          : QString::number(random.bounded(1000) - 500);
        };
        for (int step = 0; step < 3000; ++step) {
            const int count = static_cast<int>(columns[0].size());
            const int at = random.bounded(count + 1) + 1;
            const int to = random.bounded(count + 1) + 1;
            const QStringList texts = {text(), text(), text()};
            switch (const int change = random.bounded(8)) {
                case 0:
                case 1:
                    table.InsertRow(at, texts[0], texts[1]);
                    for (const int column : {0, 1})
                        columns[column].insert(at - 1, texts[column]);
                    break;
                case 2: {
                    const QList<int> gone = {at, to - 1, 0, -1, count + 9, at};
                    table.RemoveRows(gone);
                    for (int number = count; number >= 1; --number) {
                        for (QStringList& column : columns) {
                            if (gone.contains(number))
                                column.removeAt(number - 1);
                        }
                    }
                    break;
                }
                case 3:
                    table.MoveRow(at, to);
                    for (QStringList& column : columns) {
                        if (at <= count && to <= count)
                            column.move(at - 1, to - 1);
                    }
                    break;
                case 4:
                case 5:
                    table.SetCellText(at, change - 3, texts[0]);
                    if (at <= count)
                        columns[change - 4][at - 1] = texts[0];
                    break;
                case 6:
                    table.SetColumn(2, texts);
                    for (int i = 0; i < std::min(count, 3); ++i)
                        columns[1][i] = texts[i];
                    break;
                default:
                    if (random.bounded(10) == 0) {
                        table.ResetRows(texts, {texts[0]});
                        columns[0] = texts;
                        columns[1] = {texts[0], QString(), QString()};
                    }
            }
            QCOMPARE(table.Column(1), columns[0]);
            QCOMPARE(table.Column(2), columns[1]);
            QCOMPARE(CheckChart(chart.table, chart.document), QString());
        }
    }

    void EditsMoveOnlyWhatTheyTouch() {
        BoundChart chart(ProfileKind::Function);
        chart.table.ResetRows(Texts(u"1|2|3"_s), Texts(u"1|2|3"_s));
        QSignalSpy rebuilt(&chart.control, &CGraphControl::Rebuilt);
        QSignalSpy changed(&chart.control, &CGraphControl::ItemsChanged);
        chart.table.SetCellText(2, 2, u"7.5"_s);
        QCOMPARE(chart.document.items.Place(1), QPointF(2.0, 7.5));
        QCOMPARE(changed, (QList<QVariantList>{{1, 1}}));
        QCOMPARE(rebuilt.size(), 0);
        chart.control.BuildFunctionChart();
        QCOMPARE(CheckChart(chart.table, chart.document), QString());

        // The highlight stays with its row.
        changed.clear();
        chart.control.SetHighlighted(1, true);
        QCOMPARE(changed, (QList<QVariantList>{{1, 1}}));
        chart.control.SetHighlighted(-1, true);
        chart.control.SetHighlighted(3, true);
        QCOMPARE(chart.document.items.Highlighted(), std::set{1});
        chart.table.InsertRow(1, u"0"_s, u"0"_s);
        QCOMPARE(chart.document.items.Highlighted(), std::set{2});
        chart.table.RemoveRows({1, 2});
        QCOMPARE(chart.document.items.Highlighted(), std::set{0});
        chart.table.RemoveRows({1});
        QVERIFY(chart.document.items.Highlighted().empty());
    }

    // Many rows that are no neighbours go at once; the chart sees the same rows as before.
    void ScatteredRowsGo() {
        BoundChart chart(ProfileKind::Function);
        QStringList kept;
        QList<int> gone;
        for (int row = 1; row <= 1000; ++row) {
            chart.table.InsertRow(row, QString::number(row), QString::number(row));
            if (row % 3 == 0)
                gone.append(row);
            else
                kept.append(QString::number(row));
        }
        chart.table.RemoveRows(gone);
        QCOMPARE(chart.table.Column(1), kept);
        QCOMPARE(chart.table.Column(2), kept);
        QCOMPARE(CheckChart(chart.table, chart.document), QString());
    }

    void HeadersAndEdges() {
        ProfileTable table(ProfileKind::Monthly);
        table.ResetRows({u"Janvier"_s}, {u"1800"_s}, {u"nom"_s});
        table.SetCellText(0, 2, u"x"_s);
        table.SetCellText(1, 0, u"x"_s);
        table.SetCellText(2, 1, u"x"_s);
        table.SetCellText(1, 4, u"x"_s);
        QCOMPARE(table.CellText(0, 2), u"Besoin l/j"_s);
        QCOMPARE(table.CellText(1, 0), QString());
        QCOMPARE(table.CellText(1, 3), u"nom"_s);
        QCOMPARE(table.Column(4), QStringList());
        QCOMPARE(table.headerData(2, Qt::Horizontal, Qt::DisplayRole).toString(),
                 u"Profil Journalier"_s);

        // The same text again is no change that anyone is told of.
        const QSignalSpy changes(&table, &QAbstractItemModel::dataChanged);
        table.SetCellText(1, 2, u"1800"_s);
        QCOMPARE(changes.size(), 0);
        table.SetColumn(2, {u"5"_s, u"6"_s, u"7"_s});
        QCOMPARE(changes.size(), 1);
        QCOMPARE(table.Column(2), QStringList{u"5"_s});

        ProfileTable none(static_cast<ProfileKind>(7));
        QCOMPARE(none.rowCount(), 0);
        QCOMPARE(none.columnCount(), 0);
        none.InsertRow(1, u"a"_s, u"b"_s);
        none.MoveRow(1, 1);
        QCOMPARE(none.RowCount(), 0);
    }

    void LocksAndHook() {
        ProfileTable table(ProfileKind::Annual);
        table.ResetRows({u"Janvier"_s, u"Février"_s}, {u"1"_s, u"1"_s});
        const QModelIndex label = table.index(0, 0);
        const QModelIndex value = table.index(1, 1);
        QVERIFY(!table.flags(label).testFlag(Qt::ItemIsEditable));
        QVERIFY(!table.setData(label, u"x"_s, Qt::EditRole));
        QVERIFY(!table.setData(value, u"2"_s, Qt::EditRole));

        QStringList entries;
        table.SetEntryHook([&entries](int row, int column, const QString& text) {
            entries.append(u"%1 %2 %3"_s.arg(row).arg(column).arg(text));
            return false;
        });
        QVERIFY(!table.setData(value, u"3"_s, Qt::EditRole));
        QCOMPARE(entries, QStringList{u"2 2 3"_s});
        QCOMPARE(table.CellText(2, 2), u"1"_s);
        table.SetLocked(2, true);
        QVERIFY(!table.setData(value, u"4"_s, Qt::EditRole));
        QCOMPARE(entries.size(), 1);
    }
};

QTEST_GUILESS_MAIN(ProfileTableTest)
#include "ProfileTableTest.moc"
