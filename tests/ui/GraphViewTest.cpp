// SPDX-License-Identifier: GPL-3.0-or-later
#include "ChartWindow.h"
#include "SessionChecks.h"
#include "SystemSkips.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "chart/DragRules.h"
#include "chart/FittedText.h"
#include "chart/ReadOutOverlay.h"
#include "chart/ZoomBar.h"

#include <QDialog>
#include <QSignalSpy>
#include <QToolTip>

#include <cmath>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

using enum ProfileKind;

const QColor kRed(255, 0, 0);
const QColor kOrange(255, 207, 54);
const QColor kFrame(56, 102, 224);  // of a bar

bool IsSquare(const QImage& picture, QPoint centre, QColor colour) {
    for (int y = -2; y <= 2; ++y) {
        for (int x = -2; x <= 2; ++x) {
            if (picture.pixelColor(centre + QPoint(x, y)) != colour)
                return false;
        }
    }
    return true;
}

}  // namespace

class GraphViewTest : public QObject {
    Q_OBJECT

private slots:
    void init() { SkipOnThisSystem(); }

    void markersHaveExactColours() {
        // Neither axes nor ticks nor grid lines cut them.
        ChartWindow window(Function, u"0|10|5|10"_s, u"0|4|0|0"_s);
        for (const bool marked : {false, true, false}) {
            window.control->SetHighlighted(1, marked);
            for (int i = 0; i < 4; ++i)
                QVERIFY(
                    IsSquare(window.Picture(), window.At(i), i == 1 && marked ? kOrange : kRed));
        }
    }

    // The face of a bar half way up, and one pixel inside its left side.
    void barsHaveExactColours() {
        ChartWindow window(Daily);
        const QColor blue(115, 170, 232);
        for (const bool marked : {false, true, false}) {
            window.control->SetHighlighted(5, marked);
            const QImage picture = window.Picture();
            for (const int index : {4, 5}) {
                QPoint at = window.At(index, 0.5);
                QCOMPARE(picture.pixelColor(at), blue);
                while (picture.pixelColor(at) == blue)
                    at.rx() -= 1;
                QCOMPARE(picture.pixelColor(at), index == 5 && marked ? kRed : kFrame);
            }
        }
    }

    // Bars of height 0, or of less than a pixel, stand on the zero line.
    void flatBarsAreSeen() {
        const ChartWindow window(Monthly);
        for (const QString& values : {u"0.0002*12"_s, u"0*12"_s, u"-0.0002*12"_s}) {
            window.session->EnterColumn(Texts(values), 1);
            const QImage picture = window.Picture();
            for (int i = 0; i < 12; ++i)
                QCOMPARE(picture.pixelColor(window.At(i, 0.0) - QPoint(0, 1)), kFrame);
        }
    }

    void zeroLineHasNoGaps() {
        const ChartWindow window(Function, u"0|10"_s, u"-5|5"_s);
        const QImage picture = window.Picture();
        const QPoint middle = window.view->Scale().ToPixels({5.0, 0.0}).toPoint();
        for (int x = window.At(0).x() + 1; x < window.At(1).x(); ++x) {
            if (std::abs(x - middle.x()) > 5)
                QCOMPARE(picture.pixelColor(x, middle.y()), QColor(Qt::black));
        }
    }

    void turnedLabelsAreAllThere() {
        const ChartWindow window(Function, u"1000000000|1000000050"_s);
        const QImage picture = window.Picture();
        const QColor ground = window.view->palette().color(QPalette::Base);
        const PlotScale scale = window.view->Scale();
        for (double time = 1e9; time <= 1e9 + 50.0; time += 10.0) {
            const int mark = static_cast<int>(scale.x.ToPixel(time));
            const QRect label(mark - 30, static_cast<int>(scale.y.from) + 10, 20, 22);
            int ink = 0;
            for (int i = 0; i < label.width() * label.height(); ++i)
                ink += picture.pixelColor(label.left() + i % label.width(),
                                          label.top() + i / label.width()) != ground;
            QVERIFY2(ink > 20, qPrintable(QString::number(time)));
        }
    }

    // Long names are wrapped before they shrink, and cut last.
    void titlesFit() {
        const QFont font = QGuiApplication::font();
        const QSize band(300, 45);
        const QString name = u"Crèche du hameau près de l'église à Noël"_s;
        const FittedText two = FitText(u"Profil Annuel : "_s + name, font, 14, 9, band);
        QCOMPARE(two.font.pixelSize(), 14);
        QCOMPARE(two.text.count(u'\n'), 1);
        QCOMPARE(QString(two.text).remove(u'\n'), u"Profil Annuel : "_s + name);
        const FittedText cut = FitText(name.repeated(9), font, 14, 9, band);
        QCOMPARE(cut.font.pixelSize(), 9);
        QVERIFY(cut.text.endsWith(u'…'));
        QVERIFY(QFontMetrics(cut.font).size(0, cut.text).height() <= band.height());
    }

    void freePointsAreSeenAmongMany() {
        QStringList times;
        QStringList values;
        for (int i = 0; i < 8760; ++i) {
            times.append(QString::number(i < 8758 ? i : 15000 + i));
            values.append(i == 4321 ? u"900"_s : u"100"_s);
        }
        ChartWindow window(Function, times.join(u'|'), values.join(u'|'));
        window.control->SetHighlighted(4321, true);
        const QImage picture = window.Picture();
        QVERIFY(IsSquare(picture, window.At(4321), kOrange));
        for (const int free : {8758, 8759})
            QVERIFY(IsSquare(picture, window.At(free), kRed));
        // The line shows between the markers of those that stand close together.
        const int width = window.At(4000).x() - window.At(0).x();
        int red = 0;
        for (int i = 0; i <= width; ++i)
            red += picture.pixelColor(window.At(0) + QPoint(i, 0)) == kRed;
        QVERIFY(red > width / 2 && red < width);
    }

    // Limits are finite whatever the rows hold, and follow the values.
    void axes() {
        const std::tuple<QString, QString, double> cases[] = {
            {{}, {}, 1e3},
            {u"3|3"_s, u"7|7"_s, 1e3},
            {u"1e999|2|3"_s, u"1|-1e999|3"_s, 1e3},
            {u"-1e308|0|1e308"_s, u"1e308|-1e308|1e-308"_s, 1e300},
            {u"|abc"_s, u"nan|inf"_s, 1e3},
            {u"0|1"_s, u"0|12345"_s, 20000.0}};
        for (const auto& [times, values, most] : cases) {
            const ChartWindow window(Function, times, values);
            const auto [x, y] = window.view->Scale();
            QVERIFY2(std::isfinite(x.low) && x.low < x.high && std::isfinite(x.high),
                     qPrintable(times));
            QVERIFY2(std::isfinite(y.low) && y.low < y.high && y.high < most, qPrintable(values));
        }
    }

    // One step, over axes that stand still, whatever else is pressed meanwhile.
    void drag() {
        const ChartWindow window(Function);
        const double high = window.view->Scale().y.high;
        const QPoint middle = window.At(0, 9.0);
        const QPoint target(-300, -900);
        // The other button drags nothing.
        window.Press(window.At(0), Qt::RightButton);
        window.Move(middle);
        window.Release(middle, Qt::RightButton);
        QCOMPARE(window.Cell(1), u"1"_s);
        window.Press(window.At(0));
        window.Move(middle);
        window.Picture();
        QCOMPARE(window.view->Scale().y.high, high);
        window.Press(middle, Qt::RightButton);
        QTest::keyClick(window.view.get(), Qt::Key_Escape);
        window.Release(middle, Qt::RightButton);
        QVERIFY(window.session->isDragging());
        window.Move(target);
        window.Release(target);
        QVERIFY(!window.session->isDragging());
        QCOMPARE(window.Cell(1), window.Dragged(target));
        window.Picture();
        QVERIFY(window.view->Scale().y.high > 20.0);
        QVERIFY(window.session->Undo() && !window.session->canUndo());
    }

    // With Shift a point moves in time too, no further than to its neighbours or the axis' end;
    // without, and straight up, it has its time again. One step takes both back.
    void dragInTime() {
        for (const int item : {1, 2}) {
            const ChartWindow window(Function, u"0|4.5|10"_s, u"1|8|3"_s);
            const QStringList times = window.Column(1);
            const QPoint from = window.At(item);
            const QPoint near = from + QPoint(-20, 30);
            const auto cut = [&window](int x) {
                return QString::number(CutToHundredths(window.view->Scale().x.ToValue(x)), 'f', 2);
            };
            const QString end = cut(static_cast<int>(window.view->Scale().x.to));
            const std::tuple<QPoint, Qt::KeyboardModifiers, QString> moves[] = {
                {near, Qt::ShiftModifier, cut(near.x())},
                {near, Qt::NoModifier, times[item]},
                {{-900, 50}, Qt::ShiftModifier, item == 1 ? u"0.00"_s : u"4.50"_s},
                {{from.x(), 90}, Qt::ShiftModifier, times[item]},
                {{2000, 50}, Qt::ShiftModifier, item == 1 ? u"10.00"_s : end},
                {near, Qt::ShiftModifier, cut(near.x())}};
            window.Move(from);
            QCOMPARE(window.view->cursor().shape(), Qt::SizeVerCursor);
            QTest::keyPress(window.view.get(), Qt::Key_Shift);
            QCOMPARE(window.view->cursor().shape(), Qt::SizeAllCursor);
            QTest::keyRelease(window.view.get(), Qt::Key_Shift);
            window.Press(from);
            for (const auto& [at, keys, time] : moves) {
                window.Drag(at, Qt::LeftButton, keys);
                QCOMPARE(window.Column(1)[item], time);
                QCOMPARE(window.Cell(item + 1), window.Dragged(at));
                QCOMPARE(window.view->cursor().shape(),
                         keys == Qt::NoModifier ? Qt::SizeVerCursor : Qt::SizeAllCursor);
                QCOMPARE(CheckChart(window.session->table(), window.control->document()),
                         QString());
            }
            window.Release(near);
            QVERIFY(window.session->Undo() && !window.session->canUndo());
            QCOMPARE(window.Column(1), times);
            QCOMPARE(window.Values(), Texts(u"1|8|3"_s));
        }
        const ChartWindow bars(Monthly);
        bars.Move(bars.At(4, 900.0));
        bars.Press(bars.At(4, 900.0));
        bars.Drag(bars.At(6, 500.0), Qt::LeftButton, Qt::ShiftModifier);
        QCOMPARE(bars.view->cursor().shape(), Qt::SizeVerCursor);
        QCOMPARE(bars.Column(1), RowLabelTexts(Monthly));
    }

    // A box that refuses the open entry takes the release.
    void releaseBeforeDrag() {
        const ChartWindow window(Function);
        QWidget box;
        connect(window.view.get(), &CGraphView::PressBegins, &box,
                [&box] { QTest::mouseRelease(&box, Qt::LeftButton); });
        window.Press(window.At(0));
        window.session->EnterValue(1, u"500"_s);
        window.Picture();
        QVERIFY(window.view->Scale().y.high > 500.0);
    }

    // A modal dialog and the removal of a row each end a drag.
    void dragEnds() {
        for (const bool modal : {true, false}) {
            const ChartWindow window(Function, u"0|5|10|15"_s, u"1|2|3|8"_s);
            const QPoint middle = window.At(3, 3.0);
            window.Press(window.At(3));
            window.Move(middle);
            const QString dragged = window.Dragged(middle);
            QDialog dialog;
            dialog.setWindowModality(Qt::ApplicationModal);
            if (modal)
                dialog.show();
            else
                QVERIFY(window.session->RemoveRows({1, 2}));
            QTRY_VERIFY(!window.session->isDragging());
            dialog.close();
            window.Move(QPoint(200, 120));
            window.Release(QPoint(200, 150));
            QCOMPARE(window.Values(), Texts(modal ? u"1|2|3|"_s + dragged : u"3|"_s + dragged));
            QCOMPARE(window.session->canUndo(), modal);
        }
    }

    // What is picked by a press at a point, and whether the value follows a move of some pixels.
    void picks() {
        struct Case {
            ProfileKind kind;
            QPointF point;  // in units of the axes
            QPoint move;
            int row;
            bool drags;
        };
        const Case cases[] = {{Function, {20, 20}, {0, 40}, 2, true},
                              {Function, {22.5, 20}, {0, 40}, 2, false},  // near
                              {Monthly, {4, 900}, {1, 1}, 5, false},      // a trembling hand
                              {Monthly, {4, 900}, {0, 40}, 5, true},      // anywhere in the bar
                              {Annual, {3, 1.1}, {0, 40}, 0, false}};     // above it
        for (const auto& [kind, point, move, row, drags] : cases) {
            const ChartWindow window(kind, u"0|20|40"_s, u"0|20|0"_s);
            window.session->SetEdition(false);
            QStringList order;
            connect(window.view.get(), &CGraphView::PressBegins, this,
                    [&] { order.append(u"press"_s); });
            connect(window.view.get(), &CGraphView::CellPicked, this,
                    [&](int picked) { order.append(QString::number(picked)); });
            const QPoint at = window.view->Scale().ToPixels(point).toPoint();
            window.Press(at);
            QCOMPARE(order.value(0), u"press"_s);
            QCOMPARE(order.value(1).toInt(), row);
            window.Move(at + move);
            window.Release(at + move);
            QCOMPARE(window.session->canUndo(), drags);
        }
        // A drag call with nothing in hand marks the session and does nothing else.
        const ChartWindow window(Monthly);
        window.view->DragPoint(QPoint(100, 100));
        QVERIFY(window.session->isModified() && !window.session->canUndo());
    }

    // Wheel, middle button and bar change what is seen; the left button goes on as it did.
    void zooms() {
        QStringList hours;
        for (int i = 0; i <= 100; ++i)
            hours.append(QString::number(i));
        const ChartWindow window(Function, hours.join(u'|'),
                                 QString(u"5|"_s).repeated(101).chopped(1));
        const PlotScale all = window.view->Scale();
        const QSignalSpy zoomed(&window.view->Zoom(), &ViewZoom::ZoomedChanged);
        const QSignalSpy picked(window.view.get(), &CGraphView::CellPicked);
        const auto shown = [&window] {
            window.Picture();
            return window.view->Scale();
        };
        const QPoint at = window.At(70);
        const auto is_at = [&, place = all.x.ToValue(at.x())] {
            return std::abs(shown().x.ToPixel(place) - at.x());
        };
        window.Wheel(at, 120);
        QVERIFY(std::abs((all.x.high - all.x.low) / (shown().x.high - shown().x.low) - 1.25) <
                1e-9);
        QVERIFY(is_at() < 0.01 && shown().y.high == all.y.high);
        // Two turns of a touchpad come between two paintings.
        for (int i = 0; i < 40; ++i)
            window.Wheel(at, 30);
        QVERIFY(is_at() < 0.01);
        QVERIFY(shown().x.high - shown().x.low < 14.0);
        window.Wheel(at, 240, Qt::ControlModifier);
        QVERIFY(shown().y.high - shown().y.low < 0.7 * (all.y.high - all.y.low) && is_at() < 0.01);
        // Points and labels beside the axes are out of reach.
        window.Press(QPoint(static_cast<int>(shown().x.from) - 12, at.y()));
        window.Release(QPoint(static_cast<int>(shown().x.from) - 12, at.y()));
        QCOMPARE(picked.count(), 0);

        const double low = shown().x.low;
        window.Press(at, Qt::MiddleButton);
        window.Drag(at - QPoint(60, 20), Qt::MiddleButton);
        window.Drag(at - QPoint(120, 0), Qt::MiddleButton);
        window.Release(at - QPoint(120, 0), Qt::MiddleButton);
        QVERIFY(std::abs(shown().x.ToPixel(all.x.ToValue(at.x())) - at.x() + 120.0) < 0.01);
        window.Wheel(at, 120, Qt::ShiftModifier);
        window.Wheel(at, 120, Qt::ShiftModifier);
        QVERIFY(shown().x.low < low + 4.0);
        auto* const bar = window.view->findChild<ZoomBar*>();
        QTest::mousePress(bar, Qt::LeftButton, {}, {bar->width() - 1, 3});
        QTest::mouseRelease(bar, Qt::LeftButton, {}, {bar->width() - 1, 3});
        QCOMPARE(shown().x.high, all.x.high);
        window.view->BringIntoView(3);
        QVERIFY(shown().x.low < 2.0 && shown().x.high < 16.0);

        window.Press(window.At(2));
        window.Drag(window.At(2, 5.2), Qt::LeftButton);
        window.Release(window.At(2, 5.2));
        QVERIFY(window.Cell(3) != u"5"_s && window.Cell(4) == u"5"_s);
        QCOMPARE(zoomed.count(), 1);
        QTest::mouseDClick(window.view.get(), Qt::LeftButton, {}, window.At(2, 5.9));
        window.Release(window.At(2, 5.9));  // the test's double click leaves the button down
        QCOMPARE(zoomed.count(), 2);
        QVERIFY(shown().x.low == all.x.low && shown().x.high == all.x.high && bar->isHidden());
    }

    // Nothing shows before the mouse comes; the line then follows it, and what is drawn.
    void readsOut() {
        const ChartWindow window(Function, u"0|10|20"_s, u"4|8|4"_s);
        const auto line = [&window] {
            window.Picture();
            return window.view->accessibleDescription();
        };
        const auto* const overlay = window.view->findChild<ReadOutOverlay*>();
        const QString whole = u"3 points, 0 ... 20 h, 4 ... 8, moyenne 6"_s;
        QVERIFY(overlay->isHidden() && line().isEmpty());
        const QImage before = window.Picture();
        window.Drag(QPoint(8, 8), Qt::NoButton);
        QCOMPARE(line(), whole);
        const QPoint at = window.At(1, 5.0) + QPoint(40, 0);
        window.Drag(at, Qt::NoButton);
        QVERIFY2(line().startsWith(u"t = 12."_s) && line().contains(u"   f(t) = 7."_s) &&
                     line().endsWith(u"   point 2 : 10 | 8"_s),
                 qPrintable(line()));
        // The hair line stands under the pointer, and nothing else has changed below the text.
        const QImage read = window.Picture();
        const int top = static_cast<int>(window.view->Scale().y.to);
        for (int y = top; y < read.height(); y += 7) {
            for (int x = 0; x < read.width(); ++x)
                QVERIFY(read.pixelColor(x, y) == before.pixelColor(x, y) || x == at.x());
        }
        QVERIFY(read.pixelColor(at) != before.pixelColor(at));
        window.control->SetLineForm(LineForm::Steps);
        QVERIFY(line().contains(u"   f(t) = 8   "_s));
        QCOMPARE(window.Picture().pixelColor(window.At(1, 8.0) + QPoint(60, 0)),
                 QColor(56, 102, 224));
        window.Wheel(at, 240);
        QVERIFY(line().contains(u"f(t) = 8"_s));
        window.control->SetHighlighted(1, true);
        window.Press(window.At(1));
        window.Drag(window.At(1, 7.0), Qt::LeftButton);
        QVERIFY2(line().endsWith(u" | "_s + window.Cell(2)), qPrintable(line()));
        window.Release(window.At(1, 7.0));
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(window.view.get(), &leave);
        QVERIFY(line().startsWith(u"3 points, "_s));
    }

    // Of a title that fills its band nothing stands in the room of the text.
    void longTitleLeavesRoom() {
        const ChartWindow window(Annual);
        window.control->SetTitle(u"Crèche du hameau près de l'église à Noël "_s.repeated(9));
        const int top = static_cast<int>(window.view->Scale().y.to);
        const auto ink = [&] {
            const QImage picture = window.Picture();
            int pixels = 0;
            for (int x = 300; x < picture.width() - 2; ++x)
                pixels += picture.pixelColor(x, top - 14) != Qt::white;
            return pixels;
        };
        QVERIFY(ink() > 0);
        window.Drag(window.At(0), Qt::NoButton);
        QCOMPARE(ink(), 0);
        QCOMPARE(static_cast<int>(window.view->Scale().y.to), top);
    }

    void tips() {
        const ChartWindow window(Function, u"0|12.5"_s, u"1|3"_s);
        window.Move(window.At(1));
        QTRY_COMPARE(QToolTip::text(), u"(12.50°, 3.00°)"_s);
        window.Move(QPoint(8, 8));
        QTRY_VERIFY(!QToolTip::isVisible());
    }
};

QTEST_MAIN(GraphViewTest)
#include "GraphViewTest.moc"
