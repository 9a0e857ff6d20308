#include "grid/PasteRules.h"

#include "VectorFile.h"

#include <QTest>

using namespace Qt::StringLiterals;

class PasteRulesTest : public QObject {
    Q_OBJECT

    static QList<int> Numbers(const QJsonValue& value) {
        QList<int> numbers;
        const QJsonArray array = value.toArray();
        for (const QJsonValue& one : array)
            numbers.append(one.toInt());
        return numbers;
    }

private slots:
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

    void HeaderIsNoRow() { QCOMPARE(PasteRefusal({2, 3, {0, 1, 2, 3}, {2}, 3}), QString()); }
};

QTEST_APPLESS_MAIN(PasteRulesTest)
#include "PasteRulesTest.moc"
