#include "Contrast.h"
#include "chart/BitmapButton.h"
#include "chart/CSXButton.h"

#include <QApplication>
#include <QDialog>
#include <QPainter>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QSvgRenderer>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

const QStringList kCaptions = {u"OUVRIR"_s, u"ENREG"_s, u"ENREGSOUS"_s, u"UNDO"_s,
                               u"REDO"_s,   u"COPY"_s,  u"PASTE"_s};

QPalette ColorsOf(QRgb face, QRgb text) {
    QPalette palette;
    palette.setColor(QPalette::Button, QColor::fromRgb(face));
    palette.setColor(QPalette::Window, QColor::fromRgb(face));
    palette.setColor(QPalette::ButtonText, QColor::fromRgb(text));
    palette.setColor(QPalette::Highlight, QColor::fromRgb(ButtonPicture::kFocusMark));
    return palette;
}

// The colours that the drawings themselves hold.
QPalette DrawnColors() {
    return ColorsOf(qRgb(239, 239, 239), ButtonPicture::kInk);
}

QImage Shot(QWidget& widget, qreal ratio = 1.0) {
    QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, {});
    return image;
}

QImage Drawing(const QString& name, QSize size, qreal ratio) {
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(QStringLiteral(DRAWINGS_DIR) + name + u".svg"_s)
        .render(&painter, QRectF(QPointF(), size));
    return image;
}

// The largest difference of a colour between two pictures of one size.
int Difference(const QImage& one, const QImage& other) {
    int largest = 0;
    for (qsizetype i = 0; i < one.sizeInBytes(); ++i)
        largest = std::max(largest, std::abs(one.constBits()[i] - other.constBits()[i]));
    return largest;
}

// What is green on a button that holds nothing else of that colour.
QRect GreenArea(const QImage& image) {
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color.green() > color.red() + 50 && color.green() > color.blue() + 50)
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

// Of 255: the round corners of a frame are drawn by slightly other curves.
constexpr int kRounding = 2;

constexpr int kAddPicture = 5034;
constexpr QRgb kAddGreen = 0xff2b9a4b;

struct AddButton : CSXButton {
    explicit AddButton(QSize size) {
        setPalette(DrawnColors());
        resize(size);
        if (!SetBitmap(kAddPicture, 16, 16))
            qFatal("no picture");
    }
};

}  // namespace

class ButtonsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QApplication::setStyle(QStyleFactory::create(u"Fusion"_s)); }

    void PicturesDiffer() {
        QList<QImage> seen;
        for (const QString& caption : kCaptions) {
            for (const QChar letter : u"UDFX"_s) {
                const ButtonPicture picture(caption + letter);
                QCOMPARE(picture.size(), QSize(24, 23));
                const QImage image = picture.Image(picture.size(), 1.0, DrawnColors());
                QVERIFY2(!seen.contains(image), qPrintable(caption + letter));
                seen.append(image);
            }
        }
    }

    // Enough of a picture stands out from the button's face, whatever the theme.
    void Legible() {
        QStringList names = {u"5034"_s, u"5035"_s, u"5036"_s};
        for (const QString& caption : kCaptions)
            names << caption + u'U' << caption + u'D' << caption + u'F';
        for (const QString& name : std::as_const(names)) {
            const ButtonPicture picture(name);
            QVERIFY(!picture.isNull());
            for (const QPalette& palette : {ColorsOf(qRgb(239, 239, 239), qRgb(0, 0, 0)),
                                            ColorsOf(qRgb(53, 53, 53), qRgb(255, 255, 255))}) {
                const QColor face = palette.color(QPalette::Button);
                QImage image(picture.size(), QImage::Format_RGB32);
                image.fill(face);
                QPainter painter(&image);
                picture.Draw(painter, image.rect(), palette);
                painter.end();
                // Without the frame, which stands out by itself.
                const QRect glyph = image.rect().adjusted(4, 4, -4, -4);
                int clear = 0;
                for (int y = glyph.top(); y <= glyph.bottom(); ++y) {
                    for (int x = glyph.left(); x <= glyph.right(); ++x)
                        clear += Contrast(image.pixel(x, y), face.rgb()) >= 3.0;
                }
                QVERIFY2(clear >= 16, qPrintable(name + face.name() + QString::number(clear)));
            }
        }
    }

    // The button paints what its drawing gives at the device's own size, not a picture blown up.
    void Sharp_data() {
        QTest::addColumn<double>("ratio");
        for (const double ratio : {1.0, 1.5, 2.0, 3.0})
            QTest::addRow("%g", ratio) << ratio;
    }
    void Sharp() {
        QFETCH(const double, ratio);
        BitmapButton tool;
        tool.setPalette(DrawnColors());
        QVERIFY(tool.AutoLoad(u"COPY"_s));
        tool.resize(24, 23);
        QVERIFY(Difference(Shot(tool, ratio), Drawing(u"COPYU"_s, {24, 23}, ratio)) <= kRounding);

        AddButton button({24, 24});
        const int side = static_cast<int>(std::lround(12 * ratio));
        QCOMPARE(GreenArea(Shot(button, ratio)).size(), QSize(side, side));
    }

    // What the program paints is what the drawing shows.
    void PicturesAreTheirDrawings() {
        QStringList names = {u"5034"_s, u"5035"_s, u"5036"_s, u"function-editor"_s};
        for (const QString& caption : kCaptions) {
            for (const QChar letter : u"UDFX"_s)
                names << caption + letter;
        }
        for (const QString& name : std::as_const(names)) {
            const ButtonPicture picture(name);
            QVERIFY2(!picture.isNull(), qPrintable(name));
            for (const double ratio : {1.0, 1.25, 2.0}) {
                const QImage image = picture.Image(picture.size(), ratio, DrawnColors());
                const int difference = Difference(image, Drawing(name, picture.size(), ratio));
                QVERIFY2(difference <= kRounding, qPrintable(name));
            }
        }
        QVERIFY(ButtonPicture(u"NOTHING"_s).isNull());
    }

    void ToolStates() {
        QWidget window;
        BitmapButton other(&window);
        BitmapButton tool(&window);
        QVERIFY(tool.AutoLoad(u"UNDO"_s));
        QVERIFY(tool.text().isEmpty());
        tool.setGeometry(40, 10, 24, 23);
        tool.setFocusPolicy(Qt::TabFocus);
        window.resize(100, 50);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        other.setFocus();

        using State = BitmapButton::State;
        QCOMPARE(tool.ShownState(), State::Up);
        const QImage up = Shot(tool);
        QSignalSpy clicked(&tool, &QAbstractButton::clicked);
        QTest::mousePress(&tool, Qt::LeftButton);
        QCOMPARE(tool.ShownState(), State::Down);
        QVERIFY(Shot(tool) != up);
        QTest::mouseRelease(&tool, Qt::LeftButton);
        QCOMPARE(tool.ShownState(), State::Up);
        QCOMPARE(clicked.count(), 1);
        QTest::keyClick(&other, Qt::Key_Tab);
        QCOMPARE(tool.ShownState(), State::Focused);
        QTest::keyPress(&tool, Qt::Key_Space);
        QCOMPARE(tool.ShownState(), State::Down);
        QTest::keyRelease(&tool, Qt::Key_Space);
        QCOMPARE(clicked.count(), 2);
        tool.setEnabled(false);
        QCOMPARE(tool.ShownState(), State::Disabled);
        const QImage disabled = Shot(tool);
        QVERIFY(!tool.AutoLoad(u"NOTHING"_s));
        QCOMPARE(Shot(tool), disabled);
    }

    void SetBitmap() {
        AddButton button({40, 40});
        const QImage before = Shot(button);
        // Refusals leave the picture.
        QVERIFY(!button.SetBitmap(1, 16, 16));
        QVERIFY(!button.SetBitmap(kAddPicture, 0, 16));
        QCOMPARE(Shot(button), before);

        QPixmap red(16, 16);
        red.fill(Qt::red);
        button.setIcon(QIcon(red));
        QVERIFY(GreenArea(Shot(button)).isNull());
        QVERIFY(button.SetBitmap(kAddPicture, 32, 32));
        QVERIFY(button.icon().isNull());
        QCOMPARE(GreenArea(Shot(button)).size(), QSize(24, 24));

        // A mapped colour becomes that of the face.
        QPalette palette = DrawnColors();
        palette.setColor(QPalette::Button, QColor(255, 0, 255));
        button.setPalette(palette);
        const QColor green = QColor::fromRgb(kAddGreen);
        QVERIFY(button.SetBitmap(kAddPicture, 16, 16, green, CSXButton::ColorMapping::On));
        QCOMPARE(Shot(button).pixelColor(20, 20), QColor(255, 0, 255));
        QVERIFY(button.SetBitmap(kAddPicture, 16, 16, green, CSXButton::ColorMapping::Off));
        QCOMPARE(Shot(button).pixelColor(20, 20), green);
    }

    void PictureFollowsState() {
        AddButton button({70, 24});
        button.setText(u"Add"_s);
        const QRect up = GreenArea(Shot(button));
        QCOMPARE(up, QRect(6, 6, 12, 12));
        button.setDown(true);
        QCOMPARE(GreenArea(Shot(button)), up.translated(1, 1));
        button.setDown(false);
        button.SetBlackBorder(true);
        QCOMPARE(GreenArea(Shot(button)), up.translated(1, 0));

        AddButton grey({24, 24});
        grey.setEnabled(false);
        const QImage shot = Shot(grey);
        QVERIFY(GreenArea(shot).isNull());
        QVERIFY(Contrast(shot.pixel(12, 12), shot.pixel(8, 8)) > 1.2);
    }

    void BorderAndCornerMark() {
        CSXButton button;
        button.setPalette(DrawnColors());
        button.resize(40, 24);
        button.SetBlackBorder(true);
        button.SetCornerMark(QColor(Qt::red));
        const QImage shot = Shot(button);
        for (int x = 0; x < shot.width(); ++x) {
            QCOMPARE(shot.pixelColor(x, 0), QColor(Qt::black));
            QCOMPARE(shot.pixelColor(x, shot.height() - 1), QColor(Qt::black));
        }
        // Seven lines from (2, 2), each one pixel shorter.
        for (int y = 0; y < 12; ++y) {
            for (int x = 0; x < 12; ++x) {
                const bool marked = x >= 2 && y >= 2 && (x - 2) + (y - 2) < 7;
                QCOMPARE(shot.pixelColor(x, y) == QColor(Qt::red), marked);
            }
        }
    }

    void FocusRectangle() {
        QDialog window;
        CSXButton other(&window);
        CSXButton button(&window);
        button.setGeometry(10, 40, 60, 20);
        QSignalSpy clicked(&button, &QAbstractButton::clicked);
        window.resize(100, 80);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        other.setFocus();
        const QImage without = Shot(button);
        // Not moved there by a key, and shown all the same.
        QCOMPARE(button.lastState(), ButtonState());
        button.setFocus(Qt::OtherFocusReason);
        const QImage with = Shot(button);
        QCOMPARE(button.lastAction(), DrawAction::Focus);
        QCOMPARE(button.lastState(), (ButtonState{.focused = true}));
        QCOMPARE(Shot(button), with);
        QCOMPARE(button.lastAction(), DrawAction::Entire);
        const QRect inner = button.rect().adjusted(3, 3, -3, -3);
        QVERIFY(with.copy(inner) != without.copy(inner));
        QTest::keyClick(&window, Qt::Key_Return);
        QCOMPARE(clicked.count(), 0);
        QTest::keyClick(&button, Qt::Key_Space);
        QCOMPARE(clicked.count(), 1);
        button.setEnabled(false);
        const QImage disabled = Shot(button);
        other.setFocus();
        QCOMPARE(Shot(button), disabled);
        // The last state goes on being kept.
        QCOMPARE(button.lastState(), (ButtonState{.disabled = true}));
        button.setDown(true);
        QVERIFY(Shot(button) != disabled);
        QCOMPARE(button.lastState(), (ButtonState{.pressed = true, .disabled = true}));
    }
};

QTEST_MAIN(ButtonsTest)
#include "ButtonsTest.moc"
