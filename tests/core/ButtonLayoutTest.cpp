#include "chart/ButtonLayout.h"

#include "VectorFile.h"

#include <QTest>

class ButtonLayoutTest : public QObject {
    Q_OBJECT

private slots:
    void Inset_data() { AddVectorRows("chart", "inset"); }
    void Inset() {
        QFETCH(const QJsonObject, vector);
        const QJsonArray sizes = vector[u"input"].toObject()[u"inset"].toArray();
        const QJsonArray expected = vector[u"expected"].toArray();
        QCOMPARE(sizes.size(), expected.size());
        for (qsizetype i = 0; i < sizes.size(); ++i) {
            const QJsonArray size = sizes[i].toArray();
            QCOMPARE(FocusInset({size[0].toInt(), size[1].toInt()}), expected[i].toInt());
        }
    }

    void Places_data() {
        QTest::addColumn<ButtonLayout>("layout");
        QTest::addColumn<ButtonContent>("content");
        QTest::addColumn<QPoint>("image");
        QTest::addColumn<QPoint>("text");
        const ButtonLayout beside;
        const ButtonLayout at = {false, {5, 6}, {30, 7}};
        const ButtonLayout centred = {false, {kCentred, kCentred}, {kCentred, kCentred}};
        const QSize client(70, 24);
        const QSize image(16, 16);
        const QSize text(23, 13);
        QTest::newRow("beside") << beside << ButtonContent{client, 0, image, text} << QPoint(4, 4)
                                << QPoint(28 + 9, 4);
        QTest::newRow("beside, pressed") << beside << ButtonContent{client, 0, image, text, true}
                                         << QPoint(5, 5) << QPoint(38, 5);
        QTest::newRow("beside, black border")
            << beside << ButtonContent{client, 1, image, text} << QPoint(5, 4) << QPoint(37, 4);
        QTest::newRow("beside, no room")
            << beside << ButtonContent{{40, 10}, 0, image, text} << QPoint(4, -3) << QPoint(28, -3);
        QTest::newRow("no caption")
            << beside << ButtonContent{client, 1, image, {}} << QPoint(27, 4) << QPoint();
        QTest::newRow("no image") << beside << ButtonContent{client, 0, {}, text} << QPoint()
                                  << QPoint(23, 4);
        QTest::newRow("explicit") << at << ButtonContent{client, 1, image, text} << QPoint(5, 6)
                                  << QPoint(30, 7);
        QTest::newRow("explicit, pressed")
            << at << ButtonContent{client, 0, image, text, true} << QPoint(6, 7) << QPoint(31, 8);
        QTest::newRow("explicit, centred")
            << centred << ButtonContent{client, 0, image, text} << QPoint(27, 4) << QPoint(23, 4);
        QTest::newRow("explicit, centred, too large")
            << centred << ButtonContent{{15, 13}, 0, image, {{22, 16}}} << QPoint(-1, -2)
            << QPoint(-4, -3);
    }
    void Places() {
        QFETCH(const ButtonLayout, layout);
        QFETCH(const ButtonContent, content);
        if (content.image)
            QTEST(ImagePlace(layout, content), "image");
        if (content.text)
            QTEST(TextPlace(layout, content), "text");
    }
};

QTEST_APPLESS_MAIN(ButtonLayoutTest)
#include "ButtonLayoutTest.moc"
