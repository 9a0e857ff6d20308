#include "grid/PasteRules.h"

#include "VectorFile.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QList<int> Numbers(const QJsonValue& value) {
    QList<int> numbers;
    const QJsonArray array = value.toArray();
    for (const QJsonValue& one : array)
        numbers.append(one.toInt());
    return numbers;
}

// Null in a vector stands for no message.
QString Message(const QJsonObject& expected) {
    return expected[u"message"].toString();
}

}  // namespace

class PasteRulesTest : public QObject {
    Q_OBJECT

private slots:
    void Clipboard_data() { AddVectorRows("clipboard"); }
    void Clipboard() {
        QFETCH(const QJsonObject, vector);
        const QJsonObject input = vector[u"input"].toObject();
        const QJsonObject expected = vector[u"expected"].toObject();
        if (input.contains(u"copied_column"_s)) {
            PasteRequest request;
            request.copied_column = input[u"copied_column"].toInt();
            request.copied_rows = input[u"copied_rows"].toInt();
            request.rows = Numbers(input[u"rows"]);
            request.columns = Numbers(input[u"columns"]);
            request.row_count = input[u"row_count"].toInt();
            QCOMPARE(PasteRefusal(request), Message(expected));
            if (!expected[u"filled"].isNull())
                QCOMPARE(PastedRowCount(request), expected[u"filled"].toInt());
        } else if (input.contains(u"kind"_s)) {
            const auto kind = static_cast<ProfileKind>(input[u"kind"].toInt());
            QCOMPARE(BulkRefusal(kind, VectorStrings(input[u"column"])), Message(expected));
        } else {
            QCOMPARE(CopyRefusal(Numbers(input[u"rows"]), Numbers(input[u"columns"])),
                     Message(expected));
        }
    }

    void Refusals_data() {
        QTest::addColumn<PasteRequest>("request");
        QTest::addColumn<QString>("refusal");
        const auto column = [](int from, int to) {
            return u"Impossible de copier les données\nde la colonne %1 à la colonne %2."_s
                .arg(from)
                .arg(to);
        };
        const QString place =
            u"Impossible d'appliquer la sélection\nprécédente à cet endroit:\n"
            "il n'y a pas assez de place dans\nle tableau !"_s;
        const QString selection =
            u"Impossible d'appliquer la sélection\nprécédente à cet endroit:\n"
            "il n'y a pas assez de lignes sélectionnées !"_s;
        const auto function = ProfileKind::Function;
        const auto monthly = ProfileKind::Monthly;

        QTest::newRow("nothing selected") << PasteRequest{2, 1, {}, {}, 12} << u""_s;
        QTest::newRow("no room for two rows in the last one")
            << PasteRequest{2, 2, {12}, {2}, 12} << place;
        QTest::newRow("a larger selection does") << PasteRequest{2, 2, {3, 4, 5}, {2}, 12} << u""_s;
        QTest::newRow("a whole column starts at row 1")
            << PasteRequest{2, 3, {0, 1, 2, 3}, {2}, 3} << u""_s;
        QTest::newRow("column before room") << PasteRequest{2, 2, {12}, {3}, 12} << column(2, 3);
        QTest::newRow("room before selection") << PasteRequest{2, 5, {10, 11}, {2}, 12} << place;
        QTest::newRow("times onto times of points")
            << PasteRequest{1, 1, {3}, {1}, 12, false, 1, function} << u""_s;
        QTest::newRow("month names stay")
            << PasteRequest{1, 1, {3}, {1}, 12, false, 1, monthly} << column(1, 1);
        QTest::newRow("foreign values") << PasteRequest{0, 5, {8}, {2}, 12, true} << u""_s;
        QTest::newRow("foreign times") << PasteRequest{0, 5, {8}, {1}, 12, true} << u""_s;
        QTest::newRow("foreign lines need room") << PasteRequest{0, 5, {9}, {2}, 12, true} << place;
        QTest::newRow("foreign lines beyond the table")
            << PasteRequest{0, 13, {1}, {2}, 12, true} << place;
        QTest::newRow("foreign lines need a selection")
            << PasteRequest{0, 5, {3, 4}, {2}, 12, true} << selection;
        QTest::newRow("foreign names")
            << PasteRequest{0, 1, {3}, {3}, 12, true, 1, monthly} << u""_s;
        QTest::newRow("foreign label")
            << PasteRequest{0, 1, {3}, {1}, 12, true, 1, monthly} << column(1, 1);
        QTest::newRow("foreign points")
            << PasteRequest{0, 5, {1}, {1}, 12, true, 2, function} << u""_s;
        QTest::newRow("foreign points beside the table")
            << PasteRequest{0, 5, {1}, {2}, 12, true, 2, function} << column(2, 3);
        QTest::newRow("foreign points onto names")
            << PasteRequest{0, 5, {1}, {2}, 12, true, 2, monthly} << column(2, 3);
    }
    void Refusals() {
        QFETCH(const PasteRequest, request);
        QFETCH(const QString, refusal);
        QCOMPARE(PasteRefusal(request), refusal);
    }
};

QTEST_APPLESS_MAIN(PasteRulesTest)
#include "PasteRulesTest.moc"
