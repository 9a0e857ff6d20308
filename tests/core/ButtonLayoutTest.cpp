#include "chart/ButtonLayout.h"

#include "VectorFile.h"

#include <QTest>

class ButtonLayoutTest : public QObject {
    Q_OBJECT

private slots:
    void Inset_data() { AddVectorRows("chart", "inset"); }
    void Inset() {
        QFETCH(const QJsonObject, vector);
        for (const auto& [size, inset] :
             VectorPairs(vector[u"input"][u"inset"], vector[u"expected"]))
            QCOMPARE(FocusInset({size[0].toInt(), size[1].toInt()}), inset.toInt());
    }

    void Places() {
        struct Case {
            ButtonLayout layout;
            ButtonContent content;
            std::optional<QPoint> image;
            std::optional<QPoint> text;
        };
        const ButtonLayout beside;
        const ButtonLayout at = {false, {5, 6}, {30, 7}};
        const ButtonLayout centred = {false, {kCentred, kCentred}, {kCentred, kCentred}};
        const QSize client(70, 24);
        const QSize image(16, 16);
        const QSize text(23, 13);
        const Case cases[] = {
            {beside, {client, 0, image, text}, {{4, 4}}, {{28 + 9, 4}}},
            {beside, {client, 0, image, text, true}, {{5, 5}}, {{38, 5}}},  // pressed
            {beside, {client, 1, image, text}, {{5, 4}}, {{37, 4}}},        // black border
            {beside, {{40, 10}, 0, image, text}, {{4, -3}}, {{28, -3}}},    // no room
            {beside, {client, 1, image, {}}, {{27, 4}}, {}},
            {beside, {client, 0, {}, text}, {}, {{23, 4}}},
            {at, {client, 1, image, text}, {{5, 6}}, {{30, 7}}},
            {at, {client, 0, image, text, true}, {{6, 7}}, {{31, 8}}},
            {centred, {client, 0, image, text}, {{27, 4}}, {{23, 4}}},
            {centred, {{15, 13}, 0, image, {{22, 16}}}, {{-1, -2}}, {{-4, -3}}}};  // too large
        for (const Case& one : cases) {
            if (one.image)
                QCOMPARE(ImagePlace(one.layout, one.content), *one.image);
            if (one.text)
                QCOMPARE(TextPlace(one.layout, one.content), *one.text);
        }
    }
};

QTEST_APPLESS_MAIN(ButtonLayoutTest)
#include "ButtonLayoutTest.moc"
