// What may be typed and pasted, and where Tab goes.

#include "MessageScript.h"
#include "VectorFile.h"
#include "base/EnglishAtof.h"
#include "base/NumberText.h"
#include "grid/PasteRules.h"
#include "grid/TabMoves.h"
#include "profiles/EntryRules.h"
#include "profiles/ProfileTable.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class GridRulesTest : public QObject {
    Q_OBJECT

    // Both kinds of text pass the separator; those typed into a cell have to keep its bound too.
    static void CheckTexts(const QString& key) {
        QFETCH(const QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        for (const auto& [entry, expected] : VectorPairs(input[key], vector[u"expected"])) {
            MessageScript script;
            if (!expected[u"message"].isNull())
                script.Expect(expected[u"message"].toString());
            QString text = entry.toString();
            const bool separated = CheckDecimalSeparator(text);
            bool accepted = separated;
            if (key == u"separator") {
                QCOMPARE(accepted, expected[u"accepted"].toBool());
                if (accepted)
                    QCOMPARE(text, expected[u"text"].toString());
            } else if (separated) {
                const float value = EnglishAtof(text);
                QCOMPARE(double{value}, expected[u"value"].toDouble());
                accepted = CheckTypedBound(VectorKind(input[u"kind"]), value);
            } else {
                QVERIFY(expected[u"value"].isNull());
            }
            QCOMPARE(accepted, expected[u"message"].isNull());
            QCOMPARE(script.LastIcon(),
                     separated && !accepted ? MessageIcon::Information : MessageIcon::None);
        }
    }

    static QList<int> Numbers(const QJsonValue& value) {
        QList<int> numbers;
        const QJsonArray array = value.toArray();
        for (const QJsonValue& one : array)
            numbers.append(one.toInt());
        return numbers;
    }

private slots:
    void Separator_data() { AddVectorRows("numbers", "separator"); }
    void Separator() { CheckTexts(u"separator"_s); }
    void Typed_data() { AddVectorRows("numbers", "typed"); }
    void Typed() { CheckTexts(u"typed"_s); }

    void TimeMoves_data() { AddVectorRows("time_moves"); }
    void TimeMoves() {
        QFETCH(const QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        const QJsonObject expected = vector[u"expected"].toObject();
        QStringList times;
        QStringList values;
        const QJsonArray rows = input[u"rows"].toArray();
        for (const QJsonValue& row : rows) {
            times.append(row[0].toString());
            values.append(row[1].toString());
        }

        MessageScript script;
        if (!expected[u"message"].isNull())
            script.Expect(expected[u"message"].toString());
        QString entry = input[u"entry"].toString();
        const bool accepted = CheckDecimalSeparator(entry);
        QCOMPARE(accepted, !expected[u"target"].isNull());
        if (!accepted)
            return;
        const int row = input[u"row"].toInt();
        const int target = TargetRow(times, row, EnglishAtof(entry));
        QCOMPARE(target, expected[u"target"].toInt());

        // Which row stands where, told by its value: the values of a case differ.
        ProfileTable table(ProfileKind::Function);
        table.ResetRows(times, values);
        // What is no number counts as 0; it is left to others to keep such entries out.
        const QString time = IsNumber(entry) ? entry : NumberText13(ParseNumber(entry));
        table.SetCellText(row, 1, time);
        table.MoveRow(row, target, RewrittenNumber);
        const QJsonArray order = expected[u"order"].toArray();
        QCOMPARE(order.size(), times.size());
        const QJsonObject cells = expected[u"cells"].toObject();
        for (int i = 1; i <= table.RowCount(); ++i) {
            QCOMPARE(table.CellText(i, 2), values[order[i - 1].toInt() - 1]);
            const bool moved = i >= std::min(row, target) && i <= std::max(row, target);
            const QJsonValue cell = cells[QString::number(i)];
            QCOMPARE(!cell.isUndefined(), moved && row != target);
            if (!cell.isUndefined())
                QCOMPARE((QStringList{table.CellText(i, 1), table.CellText(i, 2)}),
                         VectorStrings(cell));
        }
    }

    void InsertionRows_data() { AddVectorRows("add_points"); }
    void InsertionRows() {
        QFETCH(const QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        const QJsonObject expected = vector[u"expected"].toObject();
        const float time = EnglishAtof(input[u"x"].toString());
        const float value = EnglishAtof(input[u"y"].toString());
        QCOMPARE(InsertionRow(VectorStrings(input[u"times"]), time), expected[u"row"].toInt());
        const QStringList cells = {NumberText7(double{time}), NumberText7(double{value})};
        QCOMPARE(cells, VectorStrings(expected[u"cells"]));
    }

    void Clipboard_data() { AddVectorRows("clipboard"); }
    void Clipboard() {
        QFETCH(const QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        const QJsonObject expected = vector[u"expected"].toObject();
        const QString message = expected[u"message"].toString();
        if (input.contains(u"copied_column"_s)) {
            PasteRequest request;
            request.copied_column = input[u"copied_column"].toInt();
            request.copied_rows = input[u"copied_rows"].toInt();
            request.rows = Numbers(input[u"rows"]);
            request.columns = Numbers(input[u"columns"]);
            request.row_count = input[u"row_count"].toInt();
            QCOMPARE(PasteRefusal(request), message);
            if (!expected[u"filled"].isNull())
                QCOMPARE(PastedRowCount(request), expected[u"filled"].toInt());
        } else if (input.contains(u"kind"_s)) {
            QCOMPARE(BulkRefusal(VectorKind(input[u"kind"]), VectorStrings(input[u"column"])),
                     message);
        } else {
            QCOMPARE(CopyRefusal(Numbers(input[u"rows"]), Numbers(input[u"columns"])), message);
        }
    }

    void HeaderIsNoRow() {
        QCOMPARE(PasteRefusal({2, 3, {0, 1, 2, 3}, {2}, 3}), QString());
        QCOMPARE(PasteRefusal({0, 4, {0, 1, 2, 3}, {2}, 3, true}),
                 u"Impossible d'appliquer la sélection\nprécédente à cet endroit:\n"
                 "il n'y a pas assez de place dans\nle tableau !"_s);
    }

    // From headers, and from a cell that is no longer there, a move ends on a data cell.
    void StaysInTheGrid() {
        for (int kind = -1; kind <= 3; ++kind) {
            for (const TabDirection direction : {TabDirection::Forward, TabDirection::Backward}) {
                for (const CellPosition from : {CellPosition{0, 0}, {0, 2}, {3, 0}, {9, 9}}) {
                    const auto to = TabMove(static_cast<ProfileKind>(kind), 3, 2, from, direction);
                    QVERIFY(to && to->row >= 1 && to->row <= 3 && to->column >= 1 &&
                            to->column <= 2);
                }
                QVERIFY(!TabMove(static_cast<ProfileKind>(kind), 0, 2, {}, direction));
            }
        }
        QCOMPARE(TabMove(ProfileKind::Function, 3, 2, CellPosition{0, 1}, TabDirection::Forward),
                 (CellPosition{1, 2}));
    }
};

QTEST_APPLESS_MAIN(GridRulesTest)
#include "GridRulesTest.moc"
