// SPDX-License-Identifier: GPL-3.0-or-later
#include "SessionBench.h"
#include "base/EnglishAtof.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "chart/DragRules.h"
#include "chart/FittedText.h"

#include <QDialog>
#include <QSignalSpy>
#include <QToolTip>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

using enum ProfileKind;

// A shown chart of a session, in the size the dialog gives it.
struct ChartWindow : SessionBench {
    explicit ChartWindow(ProfileKind kind, const QString& time_texts = u"0|10"_s,
                         const QString& value_texts = u"1|8"_s) {
        if (kind == Function) {
            times = Texts(time_texts);
            values = Texts(value_texts);
        }
        Start(Setup(kind));
        control = std::make_unique<CGraphControl>();
        if (kind == Function)
            control->BuildFunctionChart();
        else
            control->BuildProfileChart(kind);
        control->Attach(&session->table(), kind);
        view = std::make_unique<CGraphView>(session.get(), control.get());
        view->resize(435, 375);
        view->show();
        Picture();
    }

    std::unique_ptr<CGraphControl> control;
    std::unique_ptr<CGraphView> view;

    QImage Picture() const { return view->grab().toImage(); }

    // Where item `index` stands, or would stand with another value.
    QPoint At(int index) const { return At(index, control->document().items.Place(index).y()); }
    QPoint At(int index, double value) const {
        return view->Scale()
            .ToPixels({control->document().items.Place(index).x(), value})
            .toPoint();
    }

    // What a drag to the height of `point` stores.
    QString Dragged(QPoint point) const {
        const double value = view->Scale().y.ToValue(point.y());
        return AcceptDrag(session->kind(), value).value_or(QString());
    }

    QString Cell(int row) const { return session->table().CellText(row, 2); }

    void Press(QPoint at, Qt::MouseButton button = Qt::LeftButton) const {
        QTest::mousePress(view.get(), button, {}, at);
    }
    void Move(QPoint at) const { QTest::mouseMove(view.get(), at); }
    void Release(QPoint at, Qt::MouseButton button = Qt::LeftButton) const {
        QTest::mouseRelease(view.get(), button, {}, at);
    }
};

// The number of pixels of exactly that colour.
qsizetype CountColour(const QImage& picture, QColor colour) {
    qsizetype count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixel(x, y) == colour.rgb();
    }
    return count;
}

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
    void markersHaveExactColours() {
        const QColor red(255, 0, 0);
        // Neither axes nor ticks nor grid lines cut them.
        const ChartWindow on_axes(Function, u"0|10|5|10"_s, u"0|4|0|0"_s);
        for (int i = 0; i < 4; ++i)
            QVERIFY(IsSquare(on_axes.Picture(), on_axes.At(i), red));
        ChartWindow window(Function, u"0|10|5"_s, u"1|4|-2"_s);
        const QColor orange(255, 207, 54);
        for (int i = 0; i < 3; ++i)
            QVERIFY(IsSquare(window.Picture(), window.At(i), red));
        window.control->SetHighlighted(1, true);
        QVERIFY(IsSquare(window.Picture(), window.At(1), orange));
        QVERIFY(IsSquare(window.Picture(), window.At(0), red));
        window.control->SetHighlighted(1, false);
        QCOMPARE(CountColour(window.Picture(), orange), 0);
        QVERIFY(IsSquare(window.Picture(), window.At(1), red));
    }

    void barsHaveExactColours() {
        ChartWindow window(Daily);
        // The face of a bar half way up, and one pixel inside its left side.
        const auto colours = [&window](int index) {
            const QImage picture = window.Picture();
            QPoint at = window.At(index, 0.5);
            const QColor face = picture.pixelColor(at);
            while (picture.pixelColor(at) == face)
                at.rx() -= 1;
            return QList<QColor>{face, picture.pixelColor(at)};
        };
        const QList<QColor> normal = {QColor(115, 170, 232), QColor(56, 102, 224)};
        QCOMPARE(colours(5), normal);
        window.control->SetHighlighted(5, true);
        QCOMPARE(colours(5), (QList<QColor>{QColor(115, 170, 232), QColor(255, 0, 0)}));
        QCOMPARE(colours(4), normal);
        window.control->SetHighlighted(5, false);
        QCOMPARE(colours(5), normal);
    }

    // Bars of height 0, or of less than a pixel, stand on the zero line.
    void flatBarsAreSeen() {
        const ChartWindow window(Monthly);
        for (const QString& values : {u"0.0002*12"_s, u"0*12"_s, u"-0.0002*12"_s}) {
            window.session->table().SetColumn(2, Texts(values));
            const QImage picture = window.Picture();
            for (int i = 0; i < 12; ++i)
                QCOMPARE(picture.pixelColor(window.At(i, 0.0) - QPoint(0, 1)),
                         QColor(56, 102, 224));
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
        QVERIFY(IsSquare(picture, window.At(4321), QColor(255, 207, 54)));
        for (const int free : {8758, 8759})
            QVERIFY(IsSquare(picture, window.At(free), QColor(255, 0, 0)));
        // The line shows between the markers of those that stand close together.
        const QRect close(window.At(0), window.At(4000));
        const QImage part = picture.copy(close);
        const qsizetype red = CountColour(part, QColor(255, 0, 0));
        QVERIFY(red > part.width() / 2 && red < part.width());
        // Every point is in reach all the same.
        QSignalSpy picked(window.view.get(), &CGraphView::CellPicked);
        QTest::mouseClick(window.view.get(), Qt::LeftButton, {}, window.At(4321));
        QCOMPARE(picked.value(0), QVariantList{4322});
    }

    void oddRowsAreDrawn() {
        const std::pair<QString, QString> cases[] = {
            {{}, {}},
            {u"3|3"_s, u"7|7"_s},
            {u"1e999|2|3"_s, u"1|-1e999|3"_s},
            {u"-1e308|0|1e308"_s, u"1e308|-1e308|1e-308"_s},
            {u"|abc"_s, u"nan|inf"_s}};
        for (const auto& [times, values] : cases) {
            const ChartWindow window(Function, times, values);
            const PlotScale scale = window.view->Scale();
            for (const AxisScale& axis : {scale.x, scale.y}) {
                QVERIFY2(std::isfinite(axis.low) && std::isfinite(axis.high), qPrintable(times));
                QVERIFY2(axis.low < axis.high, qPrintable(times));
            }
            // The marks of both axes are there.
            QVERIFY(CountColour(window.Picture(), QColor(255, 0, 0)) > 0);
            QVERIFY(CountColour(window.Picture(), QColor(0, 0, 255)) > 0);
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
        QTest::keyClick(window.view.get(), Qt::Key_A);
        window.Release(middle, Qt::RightButton);
        QVERIFY(window.session->isDragging());
        window.Move(target);
        window.Release(target);
        QVERIFY(!window.session->isDragging());
        QCOMPARE(window.Cell(1), window.Dragged(target));
        QVERIFY(ParseNumber(window.Cell(1)) > 20.0);
        window.Picture();
        QVERIFY(window.view->Scale().y.high > ParseNumber(window.Cell(1)));
        QVERIFY(window.session->Undo() && !window.session->canUndo());
        QCOMPARE(window.Cell(1), u"1"_s);
    }

    // A box that refuses the open entry takes the release.
    void releaseBeforeDrag() {
        const ChartWindow window(Function);
        QWidget box;
        connect(window.view.get(), &CGraphView::PressBegins, &box,
                [&box] { QTest::mouseRelease(&box, Qt::LeftButton); });
        window.Press(window.At(0));
        window.session->table().SetCellText(1, 2, u"500"_s);
        window.Picture();
        QVERIFY(window.view->Scale().y.high > 500.0);
    }

    // A modal dialog and the removal of a row each end a drag.
    void dragEnds() {
        const ChartWindow covered(Function);
        const QPoint middle = covered.At(0, 3.0);
        covered.Press(covered.At(0));
        covered.Move(middle);
        QDialog dialog;
        dialog.setWindowModality(Qt::ApplicationModal);
        dialog.show();
        QTRY_VERIFY(!covered.session->isDragging());
        dialog.close();
        QCOMPARE(covered.Cell(1), covered.Dragged(middle));
        QVERIFY(covered.session->canUndo());

        const ChartWindow cut(Function, u"0|5|10|15"_s, u"1|2|3|8"_s);
        cut.Press(cut.At(3));
        QVERIFY(cut.session->RemoveRows({1, 2}));
        QCOMPARE(cut.control->document().items.Count(), 2);
        cut.Move(QPoint(200, 120));
        cut.Move(QPoint(200, 150));
        cut.Release(QPoint(200, 150));
        QCOMPARE(cut.Values(), Texts(u"3|8"_s));
    }

    void clickPicksWithoutChange() {
        const ChartWindow window(Monthly);
        window.session->SetEdition(false);
        const QStringList before = window.Values();
        QStringList order;
        connect(window.view.get(), &CGraphView::PressBegins, this,
                [&] { order.append(u"press"_s); });
        connect(window.view.get(), &CGraphView::CellPicked, this,
                [&](int row) { order.append(QString::number(row)); });
        // Anywhere in the bar; a trembling hand is no drag.
        const QPoint at = window.At(4, 900.0);
        window.Press(at);
        window.Move(at + QPoint(1, 1));
        window.Release(at + QPoint(1, 1));
        QCOMPARE(order.mid(0, 2), (QStringList{u"press"_s, u"5"_s}));
        QCOMPARE(window.Values(), before);
        QVERIFY(!window.session->canUndo());
        // A drag call with nothing in hand marks the session and does nothing else.
        window.view->DragPoint(QPoint(100, 100));
        QVERIFY(window.session->isModified());
        QCOMPARE(window.Values(), before);
    }

    // A press near a point picks its row but takes nothing in hand.
    void tolerancePick() {
        const ChartWindow window(Function, u"0|20|40"_s, u"0|20|0"_s);
        QSignalSpy near(window.view.get(), &CGraphView::CellPicked);
        const QPoint at = window.view->Scale().ToPixels({22.5, 20.0}).toPoint();
        window.Press(at);
        QCOMPARE(near.value(0).value(0).toInt(), 2);
        window.Move(at + QPoint(0, 40));
        window.Release(QPoint(5, 5));
        QVERIFY(!window.session->canUndo());
        // Bars have no tolerance: a place above one is no part of it, however near in axis units.
        const ChartWindow bars(Annual);
        QSignalSpy picked(bars.view.get(), &CGraphView::CellPicked);
        const QPoint above = bars.At(3) - QPoint(0, 20);
        bars.Press(above);
        bars.Release(above);
        QCOMPARE(picked.size(), 0);
        bars.Press(bars.At(3));
        bars.Release(bars.At(3));
        QCOMPARE(picked.value(0).value(0).toInt(), 4);
    }

    void tips() {
        const std::pair<ProfileKind, QString> cases[] = {
            {Function, u"(12.50°, 3.00°)"_s},
            {Annual, u"Février, Coefficient = 1.00"_s},
            {Monthly, u"Février, Consommation = 1800, jour a"_s}};
        for (const auto& [kind, tip] : cases) {
            ChartWindow window(kind, u"0|12.5"_s, u"1|3"_s);
            window.session->table().SetCellText(2, 3, u"jour a"_s);
            QToolTip::hideText();
            window.Move(window.At(1));
            QTRY_VERIFY(QToolTip::isVisible());
            QCOMPARE(QToolTip::text(), tip);
            window.Move(QPoint(8, 8));
            QTRY_VERIFY(!QToolTip::isVisible());
        }
    }

    void axesFollowData() {
        ChartWindow window(Weekly);
        window.session->table().SetCellText(1, 2, u"12345"_s);
        window.Picture();
        const double high = window.view->Scale().y.high;
        QVERIFY(high > 12345.0 && high < 20000.0);
        window.session->table().SetColumn(2, Texts(u"10*7"_s));
        window.Picture();
        QVERIFY(window.view->Scale().y.high < 100.0);
    }
};

QTEST_MAIN(GraphViewTest)
#include "GraphViewTest.moc"
