// SPDX-License-Identifier: GPL-3.0-or-later
// What a paste stores, beside the same texts typed. Other cases of copy and paste stand in
// tests/cases/pastes.json.

#include "SessionBench.h"
#include "grid/PasteStore.h"

#include <QRandomGenerator>
#include <QSignalSpy>

#include <numeric>

using namespace Qt::StringLiterals;

namespace {

using enum ProfileKind;

const QString kWrong = u"La valeur entrée\nn'est pas correcte."_s;

QString NotPasted(int count, int row) {
    return u"%1 cellules n'ont pas été collées,\nla première à la ligne %2."_s.arg(count).arg(row);
}

}  // namespace

class PasteTest : public QObject {
    Q_OBJECT

private slots:
    // A paste leaves what the same texts leave that are typed one after the
    // other, whatever the order of the rows and of the texts.
    void PastedAsTyped() {
        const QStringList times = Texts(u"1.0|1|2.50|0|2|3|1e1|7|0.1234567890123456|-4|host"_s);
        const QStringList entries = Texts(u"1,0|1|2.50|0|2|3|11|7.0|0.1234567890123456|-5|x|"_s);
        QRandomGenerator random(12);
        int kinds = 0;  // of texts: the fewer, the more twins
        const auto any = [&](const QStringList& texts) {
            return texts[random.bounded(std::min(static_cast<int>(texts.size()), kinds))];
        };
        for (int round = 0; round < 1000; ++round) {
            SessionBench pasted;
            SessionBench typed;
            kinds = 1 + round % 13;
            const int count = 1 + random.bounded(round % 7 == 0 ? 60 : 8);
            for (int row = 0; row < count; ++row) {
                pasted.times += round % 2 == 0 ? any(times) : QString::number(row / 2);
                pasted.values += QString::number(row % (1 + round % 4)) +
                                 (round % 3 == 0 ? u".50"_s : QString());
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
                        typed.session->Enter(from, column, cells[i][column - first_column]);
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
};

QTEST_MAIN(PasteTest)
#include "PasteTest.moc"
