// SPDX-License-Identifier: GPL-3.0-or-later
#include "Contrast.h"
#include "dialog/BitmapButton.h"
#include "dialog/CSXButton.h"

#include <QApplication>
#include <QBitmap>
#include <QDialog>
#include <QPainter>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QSvgRenderer>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

QPalette ColorsOf(QRgb face, QRgb text) {
    QPalette palette;
    palette.setColor(QPalette::Button, QColor::fromRgb(face));
    palette.setColor(QPalette::ButtonText, QColor::fromRgb(text));
    palette.setColor(QPalette::Highlight, QColor::fromRgb(ButtonPicture::kFocusMark));
    return palette;
}

// The colours that the drawings themselves hold, and those of a dark theme.
QPalette Drawn() {
    return ColorsOf(qRgb(239, 239, 239), ButtonPicture::kInk);
}
QPalette Dark() {
    return ColorsOf(qRgb(53, 53, 53), qRgb(255, 255, 255));
}

template <typename Paint>
QImage Painted(QSize size, qreal ratio, Paint paint) {
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter);
    return image;
}

QImage Shot(QWidget& widget, qreal ratio = 1.0) {
    return Painted(widget.size(), ratio,
                   [&](QPainter& painter) { widget.render(&painter, {}, {}, {}); });
}

// Is the picture what its drawing gives at the device's own size, not one that was blown up?
bool IsDrawing(const QImage& image, const QString& name) {
    constexpr int kRounding = 2;  // of 255: round corners are drawn by slightly other curves
    const QSize size = image.deviceIndependentSize().toSize();
    const QImage drawing = Painted(size, image.devicePixelRatio(), [&](QPainter& painter) {
        QSvgRenderer(QStringLiteral(DRAWINGS_DIR) + name + u".svg"_s)
            .render(&painter, QRectF(QPointF(), size));
    });
    return std::equal(image.constBits(), image.constBits() + image.sizeInBytes(),
                      drawing.constBits(), drawing.constBits() + drawing.sizeInBytes(),
                      [](uchar one, uchar other) { return std::abs(one - other) <= kRounding; });
}

// Pixels of a picture that stand out from the button's face. Its frame does so by itself.
int ClearPixels(const ButtonPicture& picture, const QPalette& palette) {
    const QColor face = palette.color(QPalette::Button);
    const QRect all(QPoint(), picture.size());
    const QImage image = Painted(all.size(), 1.0, [&](QPainter& painter) {
        painter.fillRect(all, face);
        picture.Draw(painter, all, palette);
    });
    const QRect inner = all.adjusted(4, 4, -4, -4);
    int clear = 0;
    for (int i = 0; i < inner.width() * inner.height(); ++i) {
        const QPoint at = inner.topLeft() + QPoint(i % inner.width(), i / inner.width());
        clear += Contrast(image.pixel(at), face.rgb()) >= 3.0;
    }
    return clear;
}

constexpr int kAddPicture = 5034;
constexpr QRgb kAddGreen = 0xff2b9a4b;

// Where the green of "Add" stands, in pixels of the image.
QRect GreenArea(const QImage& image) {
    return QRegion(QBitmap::fromImage(image.createMaskFromColor(kAddGreen, Qt::MaskOutColor)))
        .boundingRect();
}

}  // namespace

class ButtonsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setStyle(QStyleFactory::create(u"Fusion"_s)); }

    // What the program paints is what the drawing shows, and enough of it in every theme.
    void Pictures() {
        QStringList names = {u"5034"_s, u"5035"_s, u"5036"_s, u"function-editor"_s};
        for (const QChar letter : u"UDFX"_s) {
            for (const char* const caption :
                 {"OUVRIR", "ENREG", "ENREGSOUS", "UNDO", "REDO", "COPY", "PASTE"})
                names << QLatin1StringView(caption) + letter;
        }
        for (const QString& name : std::as_const(names)) {
            const ButtonPicture picture(name);
            for (const double ratio : {1.0, 1.25, 2.0}) {
                const QImage image = picture.Image(picture.size(), ratio, Drawn());
                QVERIFY2(!picture.isNull() && IsDrawing(image, name), qPrintable(name));
            }
            for (const QPalette& palette : {Drawn(), Dark()})
                QVERIFY2(name.endsWith(u'X') || ClearPixels(picture, palette) >= 16,
                         qPrintable(name));
        }
        QVERIFY(ButtonPicture(u"NOTHING"_s).isNull());
    }

    // A tool button and a push button, what is done to them, and what they show then.
    void States() {
        QDialog window;
        window.resize(120, 80);
        BitmapButton tool(&window);
        tool.setGeometry(10, 10, 24, 23);
        tool.setFocusPolicy(Qt::TabFocus);
        tool.setPalette(Drawn());
        QVERIFY(tool.AutoLoad(u"UNDO"_s));
        CSXButton button(&window);
        button.setGeometry(40, 40, 60, 20);
        const QRect inner = button.rect().adjusted(3, 3, -3, -3);
        const QImage plain = Shot(button).copy(inner);
        const QSignalSpy tool_clicked(&tool, &QAbstractButton::clicked);
        const QSignalSpy button_clicked(&button, &QAbstractButton::clicked);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));

        using State = BitmapButton::State;
        struct Step {
            std::function<void()> action;
            State tool;
            QChar letter;  // of the drawing
            ButtonState button;
        };
        const ButtonState focused{.focused = true};
        const ButtonState disabled{.disabled = true};
        const Step steps[] = {
            {[&] { button.setFocus(Qt::OtherFocusReason); }, State::Up, u'U', focused},
            {[&] { QTest::mousePress(&tool, Qt::LeftButton); }, State::Down, u'D', focused},
            {[&] { QTest::mouseRelease(&tool, Qt::LeftButton); }, State::Up, u'U', focused},
            {[&] { QTest::keyClick(&button, Qt::Key_Tab); }, State::Focused, u'F', {}},
            {[&] { QTest::keyPress(&tool, Qt::Key_Space); }, State::Down, u'D', {}},
            {[&] { QTest::keyRelease(&tool, Qt::Key_Space); }, State::Focused, u'F', {}},
            {[&] { QTest::keyClick(&tool, Qt::Key_Tab); }, State::Up, u'U', focused},
            {[&] { QTest::keyClick(&window, Qt::Key_Return); }, State::Up, u'U', focused},
            {[&] { QTest::keyClick(&button, Qt::Key_Space); }, State::Up, u'U', focused},
            {[&] { tool.setEnabled(false); }, State::Disabled, u'X', focused},
            {[&] { QVERIFY(!tool.AutoLoad(u"NOTHING"_s)); }, State::Disabled, u'X', focused},
            {[&] { button.setEnabled(false); }, State::Disabled, u'X', disabled}};
        for (const auto& [action, state, letter, pushed] : steps) {
            action();
            QCOMPARE(tool.ShownState(), state);
            for (const double ratio : {1.0, 1.5, 3.0})
                QVERIFY2(IsDrawing(Shot(tool, ratio), u"UNDO"_s + letter), qPrintable(letter));
            const QImage shot = Shot(button).copy(inner);
            QCOMPARE(button.lastState(), pushed);
            QVERIFY(pushed.disabled || (shot != plain) == pushed.focused);
        }
        QCOMPARE(tool_clicked.count(), 2);
        QCOMPARE(button_clicked.count(), 1);
        const QImage up = Shot(button);
        button.setDown(true);
        QVERIFY(Shot(button) != up);
        QCOMPARE(button.lastState(), (ButtonState{.pressed = true, .disabled = true}));
    }

    // What is done to a button with the green picture of "Add", and where the green stands then.
    void PictureFollowsState() {
        using Change = std::function<void(CSXButton&)>;
        const auto mapped = [](CSXButton::ColorMapping mapping) -> Change {
            return [=](CSXButton& b) { b.SetBitmap(kAddPicture, 16, 16, kAddGreen, mapping); };
        };
        QPixmap red(16, 16);
        red.fill(Qt::red);
        const QRect up(6, 6, 12, 12);
        const std::tuple<const char*, Change, QRect> cases[] = {
            {"pressed", [](CSXButton& b) { b.setDown(true); }, up.translated(1, 1)},
            {"border", [](CSXButton& b) { b.SetBlackBorder(true); }, up.translated(1, 0)},
            {"border and corner",
             [](CSXButton& b) {
                 b.SetBlackBorder(true);
                 b.SetCornerMark(kAddGreen);
             },
             up.translated(1, 0) | QRect(2, 2, 7, 7)},
            {"greyed", [](CSXButton& b) { b.setEnabled(false); }, {}},
            {"no such bitmap", [](CSXButton& b) { QVERIFY(!b.SetBitmap(1, 16, 16)); }, up},
            {"no size", [](CSXButton& b) { QVERIFY(!b.SetBitmap(kAddPicture, 0, 16)); }, up},
            {"an icon goes before it", [&](CSXButton& b) { b.setIcon(red); }, {}},
            {"a mapped colour becomes that of the face", mapped(CSXButton::ColorMapping::On), {}},
            {"not mapped", mapped(CSXButton::ColorMapping::Off), up}};
        for (const auto& [name, change, green] : cases) {
            for (const int ratio : {1, 2}) {
                CSXButton button;
                button.setPalette(Drawn());
                button.resize(70, 24);
                button.setText(u"Add"_s);
                button.setIcon(red);  // dropped with the next line
                QVERIFY(button.SetBitmap(kAddPicture, 16, 16));
                change(button);
                const QImage shot = Shot(button, ratio);
                const QRect area(green.topLeft() * ratio, green.size() * ratio);
                QCOMPARE(GreenArea(shot), area);
                const QRgb edge = shot.pixel(20, 0);
                QCOMPARE(edge == qRgb(0, 0, 0), QByteArray(name).startsWith("border"));
                // A greyed picture can still be seen.
                const QPoint centre = up.center() * ratio;
                const QPoint beside = (up.topLeft() + QPoint(2, 2)) * ratio;
                QVERIFY(button.isEnabled() ||
                        Contrast(shot.pixel(centre), shot.pixel(beside)) > 1.2);
            }
        }
    }
};

QTEST_MAIN(ButtonsTest)
#include "ButtonsTest.moc"
