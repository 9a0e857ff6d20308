#include "app/EnglishAtof.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "chart/DragRules.h"
#include "profiles/ProfileSession.h"

#include <QDialog>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int kFunction = static_cast<int>(ProfileKind::Function);

// A shown chart of a session, in the size the dialog gives it.
struct ChartWindow {
    QString name = u"Nom"_s;
    QStringList times;
    QStringList values;
    std::unique_ptr<ProfileSession> session;
    std::unique_ptr<CGraphControl> control;
    std::unique_ptr<CGraphView> view;

    explicit ChartWindow(int kind_number, const QStringList& time_texts = {},
                         const QStringList& value_texts = {})
        : times(time_texts), values(value_texts) {
        const auto kind = static_cast<ProfileKind>(kind_number);
        SessionSetup setup;
        setup.kind = kind;
        setup.name = &name;
        setup.times = &times;
        setup.values = &values;
        session = std::make_unique<ProfileSession>(setup);
        if (kind == ProfileKind::Function)
            session->InitialFill();
        control = std::make_unique<CGraphControl>();
        if (kind == ProfileKind::Function)
            control->BuildFunctionChart();
        else
            control->BuildProfileChart(kind);
        control->Attach(&session->table(), kind);
        view = std::make_unique<CGraphView>(session.get(), control.get());
        view->resize(435, 375);
        view->show();
        Picture();
    }

    QImage Picture() const { return view->grab().toImage(); }

    // Where item `index` stands, or would stand with another value.
    QPoint At(int index) const {
        return view->Scale().ToPixels(control->document().Place(index)).toPoint();
    }
    QPoint At(int index, double value) const {
        return view->Scale().ToPixels({control->document().Place(index).x(), value}).toPoint();
    }

    // What a drag to the height of `point` stores.
    QString Dragged(QPoint point) const {
        const double value = view->Scale().y.ToValue(point.y());
        const auto accepted = AcceptDrag(session->kind(), value);
        return accepted ? accepted->text : QString();
    }

    QString Cell(int row, int column = 2) const { return session->table().CellText(row, column); }
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
    void markersHaveExactColours();
    void barsHaveExactColours();
    void densePointsShowHighlightOnly();
    void oddRowsAreDrawn_data();
    void oddRowsAreDrawn();
    void dragStoresOneStep_data();
    void dragStoresOneStep();
    void dragRebalances();
    void dragOutsideTheWindow();
    void refusedValueKeepsTheLast();
    void otherButtonsAndKeysDuringDrag();
    void dialogEndsDrag();
    void undoEndsDrag();
    void removalEndsDrag();
    void clickPicksWithoutChange();
    void tolerancePick_data();
    void tolerancePick();
    void tips_data();
    void tips();
    void axesFollowDataButNotDrags();
};

void GraphViewTest::markersHaveExactColours() {
    ChartWindow window(kFunction, {u"0"_s, u"10"_s, u"5"_s}, {u"1"_s, u"4"_s, u"-2"_s});
    const QColor red(255, 0, 0);
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

void GraphViewTest::barsHaveExactColours() {
    ChartWindow window(3);
    const auto outline = [&window](int index) {
        // One pixel inside the left side of the bar, half way up.
        const QImage picture = window.Picture();
        QPoint at = window.At(index, 0.5);
        while (picture.pixelColor(at) == QColor(115, 170, 232))
            at.rx() -= 1;
        return picture.pixelColor(at);
    };
    QCOMPARE(window.Picture().pixelColor(window.At(5, 0.5)), QColor(115, 170, 232));
    QCOMPARE(outline(5), QColor(56, 102, 224));
    window.control->SetHighlighted(5, true);
    QCOMPARE(window.Picture().pixelColor(window.At(5, 0.5)), QColor(115, 170, 232));
    QCOMPARE(outline(5), QColor(255, 0, 0));
    QCOMPARE(outline(4), QColor(56, 102, 224));
    window.control->SetHighlighted(5, false);
    QCOMPARE(outline(5), QColor(56, 102, 224));
}

void GraphViewTest::densePointsShowHighlightOnly() {
    QStringList times;
    QStringList values;
    for (int i = 0; i < 8760; ++i) {
        times.append(QString::number(i));
        values.append(i == 4321 ? u"900"_s : QString::number(i % 24));
    }
    ChartWindow window(kFunction, times, values);
    window.control->SetHighlighted(4321, true);
    const QImage picture = window.Picture();
    QVERIFY(IsSquare(picture, window.At(4321), QColor(255, 207, 54)));
    QVERIFY(!IsSquare(picture, window.At(100), QColor(255, 0, 0)));
    // Every point is in reach all the same.
    QSignalSpy picked(window.view.get(), &CGraphView::CellPicked);
    QTest::mouseClick(window.view.get(), Qt::LeftButton, {}, window.At(4321));
    QCOMPARE(picked.value(0), QVariantList{4322});
}

void GraphViewTest::oddRowsAreDrawn_data() {
    QTest::addColumn<QStringList>("times");
    QTest::addColumn<QStringList>("values");
    QTest::newRow("none") << QStringList() << QStringList();
    QTest::newRow("one") << QStringList{u"3"_s} << QStringList{u"0"_s};
    QTest::newRow("same place") << QStringList{u"3"_s, u"3"_s} << QStringList{u"7"_s, u"7"_s};
    QTest::newRow("not finite") << QStringList{u"1e999"_s, u"2"_s, u"3"_s}
                                << QStringList{u"1"_s, u"-1e999"_s, u"3"_s};
    QTest::newRow("enormous") << QStringList{u"-1e308"_s, u"0"_s, u"1e308"_s}
                              << QStringList{u"1e308"_s, u"-1e308"_s, u"1e-308"_s};
    QTest::newRow("words") << QStringList{u""_s, u"abc"_s} << QStringList{u"nan"_s, u"inf"_s};
}

void GraphViewTest::oddRowsAreDrawn() {
    QFETCH(const QStringList, times);
    QFETCH(const QStringList, values);
    const ChartWindow window(kFunction, times, values);
    const PlotScale scale = window.view->Scale();
    for (const AxisScale& axis : {scale.x, scale.y})
        QVERIFY(std::isfinite(axis.low) && std::isfinite(axis.high) && axis.low < axis.high);
    // The marks of both axes are there.
    QVERIFY(CountColour(window.Picture(), QColor(255, 0, 0)) > 0);
    QVERIFY(CountColour(window.Picture(), QColor(0, 0, 255)) > 0);
}

void GraphViewTest::dragStoresOneStep_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("item");
    QTest::addColumn<double>("value");
    QTest::newRow("function") << kFunction << 2 << 4.4;
    QTest::newRow("annual") << 0 << 11 << 0.4;
    QTest::newRow("monthly") << 1 << 0 << 333.7;
    QTest::newRow("weekly") << 2 << 6 << 117.0;
    QTest::newRow("daily below zero") << 3 << 23 << -0.1;
}

void GraphViewTest::dragStoresOneStep() {
    QFETCH(const int, kind);
    QFETCH(const int, item);
    QFETCH(const double, value);
    ChartWindow window(kind, {u"0"_s, u"10"_s, u"5"_s}, {u"1"_s, u"8"_s, u"2"_s});
    window.session->SetEdition(true);
    CGraphView* view = window.view.get();
    const QStringList before = window.session->table().Column(2);
    const PlotScale scale = view->Scale();
    const QPoint target = window.At(item, value);
    const QString expected = window.Dragged(target);

    QTest::mousePress(view, Qt::LeftButton, {}, window.At(item));
    QTest::mouseMove(view, window.At(item, value * 0.7));
    QTest::mouseMove(view, target);
    window.Picture();
    QCOMPARE(window.Cell(item + 1), expected);
    QCOMPARE(view->Scale().y.high, scale.y.high);
    QVERIFY(window.session->isDragging());
    QTest::mouseRelease(view, Qt::LeftButton, {}, target);
    QVERIFY(!window.session->isDragging());
    QCOMPARE(window.Cell(item + 1), expected);
    QCOMPARE(window.control->document().Value(item, kind == kFunction ? 1 : 0),
             ParseNumber(expected));

    QVERIFY(window.session->Undo());
    QCOMPARE(window.session->table().Column(2), before);
    QVERIFY(!window.session->canUndo());
    QVERIFY(window.session->Redo());
    QCOMPARE(window.Cell(item + 1), expected);
}

void GraphViewTest::dragRebalances() {
    ChartWindow window(0);
    const QPoint from = window.At(3);
    // The pixel row that stands for the nearest value to 2.00, above the axis.
    const QPoint to = window.At(3, 2.0);
    const QString dragged = window.Dragged(to);
    QTest::mousePress(window.view.get(), Qt::LeftButton, {}, from);
    QTest::mouseMove(window.view.get(), to);
    QCOMPARE(window.Cell(4), dragged);
    QCOMPARE(window.Cell(1), u"1"_s);
    QTest::mouseRelease(window.view.get(), Qt::LeftButton, {}, to);
    double sum = 0.0;
    for (int row = 1; row <= 12; ++row) {
        sum += ParseNumber(window.Cell(row));
        QCOMPARE(window.control->document().Value(row - 1, 0), ParseNumber(window.Cell(row)));
    }
    QVERIFY(std::abs(sum - 12.0) < 0.005);
    QVERIFY(ParseNumber(window.Cell(1)) < 1.0);
}

void GraphViewTest::dragOutsideTheWindow() {
    ChartWindow window(kFunction, {u"0"_s, u"10"_s}, {u"1"_s, u"8"_s});
    CGraphView* view = window.view.get();
    QTest::mousePress(view, Qt::LeftButton, {}, window.At(0));
    const QPoint far(-300, -900);
    QTest::mouseMove(view, far);
    const QString expected = window.Dragged(far);
    QVERIFY(ParseNumber(expected) > 20.0);
    QCOMPARE(window.Cell(1), expected);
    QTest::mouseRelease(view, Qt::LeftButton, {}, far);
    QVERIFY(!window.session->isDragging());
    window.Picture();
    QVERIFY(view->Scale().y.high > ParseNumber(expected));
    QTest::mousePress(view, Qt::RightButton, {}, window.At(0));
    QTest::mouseMove(view, QPoint(10, 10));
    QTest::mouseRelease(view, Qt::RightButton, {}, QPoint(10, 10));
    QCOMPARE(window.Cell(1), expected);
}

void GraphViewTest::refusedValueKeepsTheLast() {
    ChartWindow window(0);
    window.session->SetEdition(true);
    CGraphView* view = window.view.get();
    const QPoint accepted = window.At(0, 1.3);
    QTest::mousePress(view, Qt::LeftButton, {}, window.At(0));
    QTest::mouseMove(view, accepted);
    QTest::mouseMove(view, window.At(0, 13.0));
    QTest::mouseRelease(view, Qt::LeftButton, {}, window.At(0, 13.0));
    QCOMPARE(window.Cell(1), window.Dragged(accepted));
}

void GraphViewTest::otherButtonsAndKeysDuringDrag() {
    ChartWindow window(kFunction, {u"0"_s, u"10"_s}, {u"1"_s, u"8"_s});
    CGraphView* view = window.view.get();
    const QPoint middle = window.At(0, 3.0);
    const QPoint target = window.At(0, 5.0);
    QTest::mousePress(view, Qt::LeftButton, {}, window.At(0));
    QTest::mouseMove(view, middle);
    QTest::mousePress(view, Qt::RightButton, {}, middle);
    QTest::keyClick(view, Qt::Key_Escape);
    QTest::keyClick(view, Qt::Key_A);
    QTest::mouseRelease(view, Qt::RightButton, {}, middle);
    QVERIFY(window.session->isDragging());
    QTest::mouseMove(view, target);
    QTest::mouseRelease(view, Qt::LeftButton, {}, target);
    QCOMPARE(window.Cell(1), window.Dragged(target));
    QVERIFY(window.session->Undo());
    QCOMPARE(window.Cell(1), u"1"_s);
}

void GraphViewTest::dialogEndsDrag() {
    ChartWindow window(kFunction, {u"0"_s, u"10"_s}, {u"1"_s, u"8"_s});
    CGraphView* view = window.view.get();
    const QPoint middle = window.At(0, 3.0);
    QTest::mousePress(view, Qt::LeftButton, {}, window.At(0));
    QTest::mouseMove(view, middle);
    QDialog dialog;
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.show();
    QTRY_VERIFY(!window.session->isDragging());
    dialog.close();
    QCOMPARE(window.Cell(1), window.Dragged(middle));
    QVERIFY(window.session->canUndo());
}

void GraphViewTest::undoEndsDrag() {
    ChartWindow window(kFunction, {u"0"_s, u"10"_s}, {u"1"_s, u"8"_s});
    CGraphView* view = window.view.get();
    QTest::mousePress(view, Qt::LeftButton, {}, window.At(0));
    QTest::mouseMove(view, window.At(0, 3.0));
    window.session->Undo();
    QTest::mouseMove(view, window.At(0, 5.0));
    QTest::mouseMove(view, window.At(0, 6.0));
    QTest::mouseRelease(view, Qt::LeftButton, {}, window.At(0, 6.0));
    QCOMPARE(window.Cell(1), u"1"_s);
    QVERIFY(!window.session->canUndo());
}

void GraphViewTest::removalEndsDrag() {
    ChartWindow window(kFunction, {u"0"_s, u"5"_s, u"10"_s}, {u"1"_s, u"3"_s, u"8"_s});
    CGraphView* view = window.view.get();
    QTest::mousePress(view, Qt::LeftButton, {}, window.At(2));
    QVERIFY(window.session->RemoveRows({1}));
    QTest::mouseMove(view, QPoint(200, 120));
    QTest::mouseMove(view, QPoint(200, 150));
    QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(200, 150));
    QCOMPARE(window.session->table().Column(2), (QStringList{u"3"_s, u"8"_s}));
}

void GraphViewTest::clickPicksWithoutChange() {
    ChartWindow window(1);
    window.session->SetEdition(false);
    CGraphView* view = window.view.get();
    const QStringList before = window.session->table().Column(2);
    QStringList order;
    connect(view, &CGraphView::PressBegins, view, [&order] { order.append(u"press"_s); });
    connect(view, &CGraphView::CellPicked, view,
            [&order](int row) { order.append(QString::number(row)); });
    // Anywhere in the bar; a trembling hand is no drag.
    const QPoint at = window.At(4, 900.0);
    QTest::mousePress(view, Qt::LeftButton, {}, at);
    QTest::mouseMove(view, at + QPoint(1, 1));
    QTest::mouseRelease(view, Qt::LeftButton, {}, at + QPoint(1, 1));
    QCOMPARE(order.value(0), u"press"_s);
    QCOMPARE(order.value(1), u"5"_s);
    QCOMPARE(window.session->table().Column(2), before);
    QVERIFY(!window.session->canUndo());
    // A drag call with nothing in hand marks the session and does nothing else.
    ChartWindow other(kFunction, {u"0"_s, u"10"_s}, {u"1"_s, u"8"_s});
    other.view->DragPoint(QPoint(100, 100));
    QVERIFY(other.session->isModified());
    QCOMPARE(other.session->table().Column(2), (QStringList{u"1"_s, u"8"_s}));
}

void GraphViewTest::tolerancePick_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<QPointF>("place");
    QTest::addColumn<int>("row");
    QTest::newRow("right of a point") << kFunction << QPointF(22.5, 20.0) << 2;
    QTest::newRow("below a point") << kFunction << QPointF(20.0, 18.0) << 2;
    QTest::newRow("near none") << kFunction << QPointF(30.0, 10.0) << 0;
    QTest::newRow("no tolerance for bars") << 2 << QPointF(1.0, 102.0) << 0;
}

// A press near a point picks its row but takes nothing in hand.
void GraphViewTest::tolerancePick() {
    QFETCH(const int, kind);
    QFETCH(const QPointF, place);
    QFETCH(const int, row);
    ChartWindow window(kind, {u"0"_s, u"20"_s, u"40"_s}, {u"0"_s, u"20"_s, u"0"_s});
    if (kind >= 0)
        window.session->table().SetCellText(1, 2, u"1000"_s);
    window.Picture();
    QSignalSpy picked(window.view.get(), &CGraphView::CellPicked);
    QPoint at = window.view->Scale().ToPixels(place).toPoint();
    if (kind >= 0)
        at.ry() -= 20;
    QTest::mousePress(window.view.get(), Qt::LeftButton, {}, at);
    QCOMPARE(picked.value(0).value(0).toInt(), row);
    QTest::mouseMove(window.view.get(), at + QPoint(0, 40));
    QTest::mouseRelease(window.view.get(), Qt::LeftButton, {}, QPoint(5, 5));
    QVERIFY(!window.session->canUndo());
}

void GraphViewTest::tips_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("tip");
    QTest::newRow("function") << kFunction << u"(12.50°, 3.00°)"_s;
    QTest::newRow("annual") << 0 << u"Février, Coefficient = 1.00"_s;
    QTest::newRow("monthly") << 1 << u"Février, Consommation = 1800, jour a"_s;
    QTest::newRow("daily") << 3 << u"1 h, Coefficient = 1.00"_s;
}

void GraphViewTest::tips() {
    QFETCH(const int, kind);
    ChartWindow window(kind, {u"0"_s, u"12.5"_s}, {u"1"_s, u"3"_s});
    window.session->table().SetCellText(2, 3, u"jour a"_s);
    QToolTip::hideText();
    QTest::mouseMove(window.view.get(), window.At(1));
    QTRY_VERIFY(QToolTip::isVisible());
    QTEST(QToolTip::text(), "tip");
    QTest::mouseMove(window.view.get(), QPoint(8, 8));
    QTRY_VERIFY(!QToolTip::isVisible());
}

void GraphViewTest::axesFollowDataButNotDrags() {
    ChartWindow window(2);
    window.session->table().SetCellText(1, 2, u"12345"_s);
    window.Picture();
    const double high = window.view->Scale().y.high;
    QVERIFY(high > 12345.0 && high < 20000.0);
    window.session->table().SetColumn(2, QStringList(7, u"10"_s));
    window.Picture();
    QVERIFY(window.view->Scale().y.high < 100.0);
}

QTEST_MAIN(GraphViewTest)
#include "GraphViewTest.moc"
