#include "chart/ColourContrast.h"

#include <QTest>

#include <algorithm>
#include <array>

namespace {

constexpr ChartColour kBlack = {0, 0, 0};
constexpr ChartColour kWhite = {255, 255, 255};
constexpr ChartColour kRed = {255, 0, 0};
constexpr ChartColour kBlue = {0, 0, 255};
constexpr ChartColour kGreen = {0, 128, 0};
constexpr ChartColour kLightGrey = {230, 230, 230};

// Where between the weakest and the strongest of its parts a colour's red, green and blue lie.
std::array<double, 3> Hue(ChartColour colour) {
    const auto [low, high] = std::minmax({int{colour.red}, int{colour.green}, int{colour.blue}});
    const double range = std::max(high - low, 1);
    return {(colour.red - low) / range, (colour.green - low) / range, (colour.blue - low) / range};
}

}  // namespace

class ColourContrastTest : public QObject {
    Q_OBJECT

private slots:
    void KnownRatios_data() {
        QTest::addColumn<ChartColour>("one");
        QTest::addColumn<ChartColour>("other");
        QTest::addColumn<double>("ratio");
        QTest::newRow("black, white") << kBlack << kWhite << 21.0;
        QTest::newRow("the same") << kRed << kRed << 1.0;
        QTest::newRow("white, grey") << kWhite << ChartColour{118, 118, 118} << 4.54;
        QTest::newRow("red, white") << kRed << kWhite << 4.0;
        QTest::newRow("white, green") << kWhite << kGreen << 5.14;
        QTest::newRow("blue, white") << kBlue << kWhite << 8.59;
        QTest::newRow("dark grey, black") << ChartColour{10, 10, 10} << kBlack << 1.06;
    }
    void KnownRatios() {
        QFETCH(const ChartColour, one);
        QFETCH(const ChartColour, other);
        QFETCH(const double, ratio);
        QVERIFY(std::abs(Contrast(one, other) - ratio) < 0.01);
        QCOMPARE(Contrast(other, one), Contrast(one, other));
    }

    void OnBackgrounds_data() {
        QTest::addColumn<int>("grey");
        for (const int grey : {0, 20, 59, 90, 117, 128, 160, 200, 240, 255})
            QTest::addRow("%d", grey) << grey;
    }
    void OnBackgrounds() {
        QFETCH(const int, grey);
        const auto part = static_cast<std::uint8_t>(grey);
        const ChartColour background = {part, part, part};
        for (const ChartColour colour : {kBlack, kRed, kBlue, kGreen, kLightGrey, kWhite}) {
            const ChartColour legible = LegibleOn(background, colour);
            QVERIFY(Contrast(background, legible) >= 3.0);
            QCOMPARE(legible == colour, Contrast(background, colour) >= 3.0);
            for (size_t i = 0; legible != kWhite && legible != kBlack && i < 3; ++i)
                QVERIFY(std::abs(Hue(legible)[i] - Hue(colour)[i]) < 0.02);
            const ChartColour line = GridLineOn(background, colour);
            const double contrast = Contrast(background, line);
            if (IsDark(background))
                QVERIFY(contrast >= 3.0 && contrast < 3.2);
            else
                QCOMPARE(line, colour);
        }
    }
};

QTEST_APPLESS_MAIN(ColourContrastTest)
#include "ColourContrastTest.moc"
