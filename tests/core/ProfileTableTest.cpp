// The model of the live rows against a plain list of rows.

#include "profiles/ProfileTable.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class ProfileTableTest : public QObject {
    Q_OBJECT

private slots:
    void RandomChanges();
    void HeadersAndEdges();
    void LocksAndHook();
};

void ProfileTableTest::RandomChanges() {
    ProfileTable table(ProfileKind::Function);
    const QAbstractItemModelTester tester(&table,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    using Row = std::pair<QString, QString>;
    QList<Row> rows;
    QRandomGenerator random(7);
    for (int step = 0; step < 3000; ++step) {
        const int count = static_cast<int>(rows.size());
        const int row = random.bounded(count + 1) + 1;
        const QString text = QString::number(step);
        switch (random.bounded(6)) {
            case 0:
            case 1:
                table.InsertRow(row, text, u"v"_s + text);
                rows.insert(row - 1, {text, u"v"_s + text});
                break;
            case 2: {
                QList<int> gone = {row, random.bounded(count + 2), 0, -1, count + 9, row};
                table.RemoveRows(gone);
                std::sort(gone.begin(), gone.end(), std::greater<>());
                gone.erase(std::unique(gone.begin(), gone.end()), gone.end());
                for (const int number : std::as_const(gone)) {
                    if (number >= 1 && number <= rows.size())
                        rows.removeAt(number - 1);
                }
                break;
            }
            case 3: {
                const int to = random.bounded(count + 1) + 1;
                table.MoveRow(row, to);
                if (row <= count && to <= count)
                    rows.move(row - 1, to - 1);
                break;
            }
            case 4:
                table.SetCellText(row, ProfileTable::kValueColumn, text);
                if (row <= count)
                    rows[row - 1].second = text;
                break;
            default:
                if (random.bounded(100) == 0) {
                    table.ResetRows({text, text}, {text});
                    rows = {{text, text}, {text, QString()}};
                }
                break;
        }
        QCOMPARE(table.RowCount(), rows.size());
        for (int i = 0; i < rows.size(); ++i)
            QCOMPARE(Row(table.CellText(i + 1, 1), table.CellText(i + 1, 2)), rows[i]);
    }
}

void ProfileTableTest::HeadersAndEdges() {
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

void ProfileTableTest::LocksAndHook() {
    ProfileTable table(ProfileKind::Annual);
    table.ResetRows({u"Janvier"_s, u"Février"_s}, {u"1"_s, u"1"_s});
    const QModelIndex label = table.index(0, 0);
    const QModelIndex value = table.index(1, 1);
    QVERIFY(!table.flags(label).testFlag(Qt::ItemIsEditable));
    QVERIFY(!table.setData(label, u"x"_s, Qt::EditRole));
    QVERIFY(table.setData(value, u"2"_s, Qt::EditRole));
    QCOMPARE(table.CellText(2, 2), u"2"_s);

    QStringList entries;
    table.SetEntryHook([&entries](int row, int column, const QString& text) {
        entries.append(u"%1 %2 %3"_s.arg(row).arg(column).arg(text));
        return false;
    });
    QVERIFY(!table.setData(value, u"3"_s, Qt::EditRole));
    QCOMPARE(entries, QStringList{u"2 2 3"_s});
    QCOMPARE(table.CellText(2, 2), u"2"_s);
    table.SetLocked(2, true);
    QVERIFY(!table.setData(value, u"4"_s, Qt::EditRole));
    QCOMPARE(entries.size(), 1);
}

QTEST_GUILESS_MAIN(ProfileTableTest)
#include "ProfileTableTest.moc"
