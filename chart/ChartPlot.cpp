// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ChartPlot.h"

#include "base/ColourContrast.h"
#include "base/QtColour.h"
#include "base/ShownText.h"
#include "chart/ChartFrame.h"
#include "chart/IndexLabels.h"
#include "chart/ItemPainter.h"

#include <qcustomplot.h>

#include <QCoreApplication>
#include <QFontMetrics>
#include <QFontMetricsF>
#include <QPainter>
#include <QPicture>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// Pixels.
constexpr int kAxisTextHeight = 11;
constexpr int kSmallestTitleHeight = 9;
constexpr int kTickLength = 4;
constexpr int kSubTickLength = 2;
constexpr int kFrameWidth = 1;
constexpr int kMarkerRoom = 5;
constexpr double kPixelCentre = 0.5;

// Labels at the places of the plan. Items bring their own texts.
class PlanTicker : public QCPAxisTicker {
public:
    PlanTicker(const AxisPlan& plan, const ChartItems* items) : m_plan(plan), m_items(items) {}

    double SmallStep() { return m_plan.step / (getSubTickCount(m_plan.step) + 1); }

protected:
    QVector<double> createTickVector(double, const QCPRange&) override {
        const std::vector<double> ticks = m_plan.Ticks();
        return {ticks.cbegin(), ticks.cend()};
    }

    double getTickStep(const QCPRange&) override { return m_plan.step; }

    // The marks stand in the middle between two items.
    int getSubTickCount(double step) override {
        return m_items != nullptr ? 1 : QCPAxisTicker::getSubTickCount(step);
    }

    QString getTickLabel(double tick, const QLocale&, QChar, int) override {
        return m_items != nullptr ? m_items->Label(static_cast<int>(std::lround(tick)))
                                  : m_plan.LabelText(tick);
    }

private:
    AxisPlan m_plan;
    const ChartItems* m_items;
};

// The view repaints after each change of its size, so the plot need not.
class Plot : public QCustomPlot {
public:
    using QCustomPlot::QCustomPlot;

protected:
    void resizeEvent(QResizeEvent*) override { setViewport(rect()); }
};

Qt::PenStyle PenStyleOf(LinePattern pattern) {
    switch (pattern) {
        case LinePattern::Solid: return Qt::SolidLine;
        case LinePattern::Dotted: return Qt::DotLine;
        case LinePattern::Dashed: break;
    }
    return Qt::DashLine;
}

Qt::Alignment AlignmentOf(TitleAlignment alignment) {
    switch (alignment) {
        case TitleAlignment::Left: return Qt::AlignLeft | Qt::AlignVCenter;
        case TitleAlignment::Centre: return Qt::AlignHCenter | Qt::AlignVCenter;
        case TitleAlignment::Right: break;
    }
    return Qt::AlignRight | Qt::AlignVCenter;
}

}  // namespace

// The chart's items as one layer of the plot.
class ChartPlot::Items : public QCPAbstractPlottable {
public:
    Items(QCPAxis* x, QCPAxis* y, const ChartPlot& owner)
        : QCPAbstractPlottable(x, y), m_owner(owner) {}

    double selectTest(const QPointF&, bool, QVariant*) const override { return -1.0; }
    QCPRange getKeyRange(bool& found, QCP::SignDomain) const override {
        found = false;
        return {};
    }
    QCPRange getValueRange(bool& found, QCP::SignDomain, const QCPRange&) const override {
        found = false;
        return {};
    }

protected:
    // Markers on an axis are not clipped.
    QRect clipRect() const override {
        return QCPAbstractPlottable::clipRect().adjusted(-kMarkerRoom, -kMarkerRoom, kMarkerRoom,
                                                         kMarkerRoom);
    }

    void draw(QCPPainter* painter) override {
        // The plot's painter shifts its origin while it smooths; that would blur the markers.
        painter->setAntialiasing(false);
        if (painter->modes().testFlag(QCPPainter::pmVectorized))
            painter->translate(-kPixelCentre, -kPixelCentre);
        PlotScale scale = m_owner.Scale();
        const QPoint origin = mParentPlot->pos();
        scale.x.from -= origin.x();
        scale.x.to -= origin.x();
        scale.y.from -= origin.y();
        scale.y.to -= origin.y();
        const QColor base = m_owner.m_look.palette.color(QPalette::Base);
        PaintItems(*painter, m_owner.m_chart, scale, ToColour(base),
                   mParentPlot->bufferDevicePixelRatio());
    }

    void drawLegendIcon(QCPPainter*, const QRectF&) const override {}

private:
    const ChartPlot& m_owner;
};

ChartPlot::ChartPlot(const CDocControl& chart, QWidget* widget)
    : m_chart(chart), m_plot(std::make_unique<Plot>(widget)) {
    m_plot->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_plot->setFocusPolicy(Qt::NoFocus);
    m_plot->setContextMenuPolicy(Qt::NoContextMenu);
    // The topmost layer stays empty and needs no buffer.
    m_plot->layer(u"overlay"_s)->setMode(QCPLayer::lmLogical);
    // An entry of the hidden legend would be measured, in a font that nothing else uses.
    m_plot->setAutoAddPlottableToLegend(false);
    // The plot asks to be drawn as soon as it is made; there is nothing to draw before `Style`.
    QCoreApplication::removePostedEvents(m_plot.get(), QEvent::MetaCall);
    // The plot owns its items. Points on an axis are drawn over it, and over its ticks.
    auto* const items = new Items(m_plot->xAxis, m_plot->yAxis, *this);
    items->setLayer(m_plot->xAxis->layer());
}

ChartPlot::~ChartPlot() = default;

PlotScale ChartPlot::Scale() const {
    const QRect area = m_plot->axisRect()->rect().translated(m_plot->pos());
    const double left = area.left();
    const double bottom = area.bottom();
    return {{m_plans.items.low, m_plans.items.high, left, left + area.width()},
            {m_plans.values.low, m_plans.values.high, bottom, bottom - area.height()}};
}

double ChartPlot::SmallMark() const {
    return PlanTicker(m_plans.values, nullptr).SmallStep();
}

QRect ChartPlot::PartRect(const PercentRect& part) const {
    const QRectF area = QRectF(QPointF(), m_look.size)
                            .adjusted(kFrameWidth, kFrameWidth, -kFrameWidth, -kFrameWidth);
    const QPointF from(area.left() + area.width() * part.left / 100.0,
                       area.top() + area.height() * part.top / 100.0);
    const QPointF to(area.left() + area.width() * part.right / 100.0,
                     area.top() + area.height() * part.bottom / 100.0);
    return QRect(from.toPoint(), to.toPoint() - QPoint(1, 1));
}

QFont ChartPlot::ChartFont(int pixels, bool bold) const {
    QFont font = m_look.font;
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

void ChartPlot::Resize(QSize size) {
    m_look.size = size;
    m_plot->setGeometry(PartRect(m_chart.display_rect));
}

void ChartPlot::Style(const ChartLook& look) {
    m_look = look;
    Resize(look.size);
    m_plot->setBackground(look.palette.brush(QPalette::Base));

    const auto lines = [this](size_t axis) {
        return axis < m_chart.grid_lines.size() ? m_chart.grid_lines[axis] : GridLines();
    };
    QCPAxis& values = *m_plot->yAxis;
    QCPAxis& items = *m_plot->xAxis;
    values.setVisible(m_chart.has_scales && m_chart.value_axis_on);
    items.setVisible(m_chart.has_scales && m_chart.index_axis_on);
    StyleAxis(values, m_chart.value_label, lines(0), m_plot->height() - kBesideAxes.height());
    StyleAxis(items, m_chart.index_label, lines(1), m_plot->width() - kBesideAxes.width());
    values.grid()->setZeroLinePen(QPen(look.palette.color(QPalette::Text), 1));
    items.grid()->setZeroLinePen(Qt::NoPen);
    for (const TickMarks& marks : m_chart.tick_marks)
        StyleTicks(marks.axis == ChartAxis::Values ? values : items, marks);

    m_title_band = PartRect(m_chart.title.rect).adjusted(kPlotMargin, 0, -kPlotMargin, 0);
    m_title = FitTitle(m_title_band.size());
}

FittedText ChartPlot::FitTitle(QSize room) const {
    const ChartTitle& title = m_chart.title;
    return FitText(ShownText(title.text, kMaxMessageLength), ChartFont(title.text_height, true),
                   title.text_height, kSmallestTitleHeight, room);
}

// `length` is the room for a title beside the axis.
void ChartPlot::StyleAxis(QCPAxis& axis, const AxisLabel& label, const GridLines& lines,
                          int length) {
    const QColor text = m_look.palette.color(QPalette::Text);
    axis.setBasePen(QPen(text, 1));
    axis.setTickLabelFont(ChartFont(kAxisTextHeight));
    axis.setTickLabelColor(text);
    axis.setTickLabelPadding(3);
    axis.setLabelPadding(3);
    // Without a set of marks there is not even a dot on the axis.
    axis.setTickPen(Qt::NoPen);
    axis.setSubTickPen(Qt::NoPen);
    QColor title_colour = text;
    title_colour.setAlpha(label.opacity);
    const QFont title_font = ChartFont(kAxisTextHeight, label.bold);
    const FittedText title = FitText(label.text, title_font, kAxisTextHeight, kSmallestTitleHeight,
                                     {length, QFontMetrics(title_font).lineSpacing()});
    axis.setLabel(title.text);
    axis.setLabelFont(title.font);
    axis.setLabelColor(title_colour);

    QCPGrid& grid = *axis.grid();
    const Colour base = ToColour(m_look.palette.color(QPalette::Base));
    const bool between = lines.level == MarkLevel::BetweenLabels;
    const QPen pen(ToQColor(GridLineOn(base, lines.colour)), 1, PenStyleOf(lines.pattern));
    grid.setVisible(m_chart.has_scales && lines.on);
    grid.setPen(between ? QPen(Qt::NoPen) : pen);
    grid.setSubGridVisible(between);
    grid.setSubGridPen(pen);
    axis.setSubTicks(between);
}

void ChartPlot::StyleTicks(QCPAxis& axis, const TickMarks& marks) {
    const Colour base = ToColour(m_look.palette.color(QPalette::Base));
    const QPen pen(ToQColor(LegibleOn(base, marks.colour)), 1);
    const bool outside = marks.sides != TickSides::Inside;
    const bool inside = marks.sides != TickSides::Outside;
    if (marks.level == MarkLevel::AtLabels) {
        axis.setTickPen(pen);
        axis.setTickLength(inside ? kTickLength : 0, outside ? kTickLength : 0);
    } else {
        axis.setSubTicks(true);
        axis.setSubTickPen(pen);
        axis.setSubTickLength(inside ? kSubTickLength : 0, outside ? kSubTickLength : 0);
    }
}

AxisPlans ChartPlot::FittedAxes() const {
    return PlanAxes(m_chart, m_plot->size(), QFontMetricsF(ChartFont(kAxisTextHeight)).height());
}

void ChartPlot::SetAxes(const AxisPlans& plans, const AxisPlans& whole) {
    m_plans = plans;
    const bool texts = m_chart.index_scale.labels == ScaleLabels::ItemTexts;
    m_plot->yAxis->setRange(plans.values.low, plans.values.high);
    m_plot->xAxis->setRange(plans.items.low, plans.items.high);
    m_plot->yAxis->setTicker(QSharedPointer<PlanTicker>::create(plans.values, nullptr));
    m_plot->xAxis->setTicker(
        QSharedPointer<PlanTicker>::create(plans.items, texts ? &m_chart.items : nullptr));
    const auto place = [this](const AxisPlan& plan) {
        return PlaceIndexLabels(m_chart, plan, m_plot->width() - kBesideAxes.width(),
                                ChartFont(kAxisTextHeight));
    };
    const IndexLabels labels = place(plans.items);
    m_plot->xAxis->setTickLabelRotation(labels.angle);
    m_plot->axisRect()->setMinimumMargins(labels.margins | place(whole.items).margins);
}

void ChartPlot::Replot() {
    m_plot->replot(QCustomPlot::rpQueuedRefresh);
}

void ChartPlot::PaintGround(QPainter& painter) const {
    const QRect area(QPoint(), m_look.size);
    painter.fillRect(area, ChartFrameColour(m_look.palette));
    painter.fillRect(area.adjusted(kFrameWidth, kFrameWidth, -kFrameWidth, -kFrameWidth),
                     m_look.palette.brush(QPalette::Base));
    PaintTitle(painter);
}

void ChartPlot::PaintTitle(QPainter& painter) const {
    QRect band = m_title_band;
    FittedText title = m_title;
    // A long title moves up, or shrinks, where something stands below it.
    const int end = static_cast<int>(Scale().y.to) - m_free_above_axes;
    const int height = QFontMetrics(title.font).size(0, title.text).height();
    if (m_free_above_axes > 0 && band.center().y() + height / 2 >= end) {
        band.setBottom(end - 1);
        title = FitTitle(band.size());
    }
    painter.setFont(title.font);
    painter.setPen(m_look.palette.color(QPalette::Text));
    painter.drawText(band, static_cast<int>(AlignmentOf(m_chart.title.alignment)), title.text);
}

void ChartPlot::PaintShapes(QPainter& painter, double device_pixels) {
    m_plot->setBufferDevicePixelRatio(device_pixels);
    // The plot draws with a painter of its own kind only; what it draws is recorded for this one.
    QPicture record;
    {
        QCPPainter recorder(&record);
        recorder.setMode(QCPPainter::pmVectorized);
        recorder.translate(m_plot->pos());
        // Lines run through the middle of a pixel, at every scale. Items know that themselves.
        recorder.translate(kPixelCentre, kPixelCentre);
        m_plot->toPainter(&recorder, m_plot->width(), m_plot->height());
    }
    painter.save();
    painter.fillRect(QRect(QPoint(), m_look.size), m_look.palette.brush(QPalette::Base));
    PaintTitle(painter);
    // A record is played in the size that it has on a screen, whatever the painter's scale.
    const QPaintDevice& device = *painter.device();
    painter.scale(double(record.logicalDpiX()) / device.logicalDpiX(),
                  double(record.logicalDpiY()) / device.logicalDpiY());
    record.play(&painter);
    painter.restore();
}
