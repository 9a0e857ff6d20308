// Where parts of a button stand, what the mouse on the chart does, and colours that can be told
// apart.

#include "VectorFile.h"
#include "base/ColourContrast.h"
#include "chart/DragRules.h"
#include "dialog/ButtonLayout.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

QPointF PointOf(const QJsonValue& value) {
    return {value[0].toDouble(), value[1].toDouble()};
}

Colour ColourOf(const QJsonValue& value) {
    const auto part = [&value](int i) { return static_cast<std::uint8_t>(value[i].toInt()); };
    return {part(0), part(1), part(2)};
}

// Where between the weakest and the strongest of its parts a colour's red, green and blue lie.
std::array<double, 3> Hue(Colour colour) {
    const auto [low, high] = std::minmax({int{colour.red}, int{colour.green}, int{colour.blue}});
    const double range = std::max(high - low, 1);
    return {(colour.red - low) / range, (colour.green - low) / range, (colour.blue - low) / range};
}

}  // namespace

class ChartRulesTest : public QObject {
    Q_OBJECT

private slots:
    void Tip_data() { AddVectorRows("chart", "tip"); }
    void Tip() {
        QFETCH(const QJsonObject, vector);
        for (const auto& [row, tip] : VectorPairs(vector[u"input"][u"tip"], vector[u"expected"])) {
            const ProfileKind kind = VectorKind(row[0]);
            QCOMPARE(
                kind == ProfileKind::Function
                    ? FunctionTip(row[1].toString().toDouble(), row[2].toString().toDouble())
                    : ProfileTip(kind, row[1].toString(), row[2].toString(), row[3].toString()),
                tip.toString());
        }
    }

    void Drag_data() { AddVectorRows("chart", "drag"); }
    void Drag() {
        QFETCH(const QJsonObject, vector);
        for (const auto& [drag, expected] :
             VectorPairs(vector[u"input"][u"drag"], vector[u"expected"])) {
            const auto stored = AcceptDrag(VectorKind(drag[0]), drag[1].toString().toDouble());
            QCOMPARE(stored.has_value(), expected[u"accepted"].toBool());
            if (stored) {
                QCOMPARE(stored->text, expected[u"text"].toString());
                QCOMPARE(stored->value, expected[u"text"].toString().toDouble());
            }
        }
    }

    void Cut() {
        const std::pair<double, double> cases[] = {
            {0.29, 0.29},         // a hundredth just below itself
            {1.0799951, 1.08},    // within the slack below
            {1.079994, 1.07},     // beyond it
            {-0.2899951, -0.29},  // within the slack, negative
            {-0.289994, -0.28}};  // beyond it
        for (const auto& [value, cut] : cases)
            QCOMPARE(CutToHundredths(value), cut);
    }

    void Refused() {
        const double infinity = std::numeric_limits<double>::infinity();
        for (const double value : {infinity, -infinity, std::nan(""), 1e300})
            QVERIFY(!AcceptDrag(ProfileKind::Function, value));
        QVERIFY(!AcceptDrag(static_cast<ProfileKind>(7), 1.0));
        const auto zero = AcceptDrag(ProfileKind::Annual, -0.004);
        QVERIFY(zero);
        QCOMPARE(zero->text, u"0.00"_s);
    }

    void Pick_data() { AddVectorRows("chart", "pick"); }
    void Pick() {
        QFETCH(const QJsonObject, vector);
        const QJsonValue input = vector[u"input"];
        QList<QPointF> points;
        const QJsonArray rows = input[u"rows"].toArray();
        for (const QJsonValue& row : rows)
            points.append(PointOf(row));
        for (const auto& [press, expected] : VectorPairs(input[u"pick"], vector[u"expected"])) {
            const auto picked = PickPoint(points, PointOf(press));
            QCOMPARE(picked.has_value(), !expected.isNull());
            QCOMPARE(picked.value_or(-1) + 1, expected.toInt());
        }
    }

    // The bounds hold although no axis value comes out of a pixel exactly.
    void PickBounds() {
        const std::pair<QPointF, bool> cases[] = {{{0.1 - 3.6, 0.2}, false},       // left, open
                                                  {{0.1 + 3.0, 0.2}, true},        // right, closed
                                                  {{0.1, 0.2 - 2.6}, false},       // below, open
                                                  {{0.1, 0.2 + 2.1}, true},        // above, closed
                                                  {{0.1 - 3.59999, 0.2}, true},    // left, inside
                                                  {{0.1, 0.2 + 2.10001}, false}};  // above, outside
        for (const auto& [press, picked] : cases)
            QCOMPARE(PickPoint({QPointF(0.1, 0.2)}, press).has_value(), picked);
    }

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

    void Ratio_data() { AddVectorRows("chart", "contrast"); }
    void Ratio() {
        QFETCH(const QJsonObject, vector);
        for (const auto& [pair, ratio] :
             VectorPairs(vector[u"input"][u"contrast"], vector[u"expected"])) {
            const double contrast = Contrast(ColourOf(pair[0]), ColourOf(pair[1]));
            QVERIFY(std::abs(contrast - ratio.toDouble()) < 0.01);
            QCOMPARE(Contrast(ColourOf(pair[1]), ColourOf(pair[0])), contrast);
        }
    }

    // Every colour is legible on every grey, is changed only if it was not, and keeps its hue.
    void Legible() {
        constexpr Colour kBlack = {0, 0, 0};
        constexpr Colour kWhite = {255, 255, 255};
        for (int grey = 0; grey < 256; ++grey) {
            const auto part = static_cast<std::uint8_t>(grey);
            const Colour background = {part, part, part};
            for (const Colour colour :
                 {kBlack, kWhite, {255, 0, 0}, {0, 0, 255}, {0, 128, 0}, {230, 230, 230}}) {
                const Colour legible = LegibleOn(background, colour);
                QVERIFY(Contrast(background, legible) >= 3.0);
                QCOMPARE(legible == colour, Contrast(background, colour) >= 3.0);
                for (size_t i = 0; legible != kWhite && legible != kBlack && i < 3; ++i)
                    QVERIFY(std::abs(Hue(legible)[i] - Hue(colour)[i]) < 0.02);
                const Colour line = GridLineOn(background, colour);
                const double contrast = Contrast(background, line);
                QVERIFY(IsDark(background) ? contrast >= 3.0 && contrast < 3.2 : line == colour);
            }
        }
    }
};

QTEST_APPLESS_MAIN(ChartRulesTest)
#include "ChartRulesTest.moc"
