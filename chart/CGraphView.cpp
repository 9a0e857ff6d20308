// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/CGraphView.h"

#include "base/ColourContrast.h"
#include "base/QtColour.h"
#include "base/ShownText.h"
#include "chart/CGraphControl.h"
#include "chart/ChartFrame.h"
#include "chart/ItemPainter.h"

#include <qcustomplot.h>

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <numbers>

using namespace Qt::StringLiterals;

namespace {

// Pixels.
constexpr int kAxisTextHeight = 11;
constexpr int kSmallestTitleHeight = 9;
constexpr int kTickLength = 4;
constexpr int kSubTickLength = 2;
constexpr int kFrameWidth = 1;
constexpr int kPlotMargin = 6;
constexpr int kLabelMargin = 4;
constexpr int kMarkerRoom = 5;
constexpr double kLabelGap = 6.0;
constexpr double kValueLabelDistance = 36.0;
constexpr double kTimeLabelDistance = 60.0;

// About what labels and titles take from the plot beside and below it, for the choice of labels.
constexpr int kSideRoom = 70;
constexpr int kBottomRoom = 60;

// Puts labels where the plan wants them; items have texts of their own.
class PlanTicker : public QCPAxisTicker {
public:
    PlanTicker(const AxisPlan& plan, const CDocControl* items) : m_plan(plan), m_items(items) {}

protected:
    QVector<double> createTickVector(double, const QCPRange&) override {
        const std::vector<double> ticks = m_plan.Ticks();
        return {ticks.cbegin(), ticks.cend()};
    }

    double getTickStep(const QCPRange&) override { return m_plan.step; }

    // Items are told apart in the middle between them.
    int getSubTickCount(double step) override {
        return m_items != nullptr ? 1 : QCPAxisTicker::getSubTickCount(step);
    }

    QString getTickLabel(double tick, const QLocale&, QChar, int) override {
        return m_items != nullptr ? m_items->Label(static_cast<int>(std::lround(tick)))
                                  : m_plan.LabelText(tick);
    }

private:
    AxisPlan m_plan;
    const CDocControl* m_items;
};

// The chart's items as one layer of the plot.
class ItemsPlottable : public QCPAbstractPlottable {
public:
    ItemsPlottable(QCPAxis* x, QCPAxis* y, const CGraphView& view, const CDocControl& chart)
        : QCPAbstractPlottable(x, y), m_view(view), m_chart(chart) {}

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
    // A marker on an axis is seen whole.
    QRect clipRect() const override {
        return QCPAbstractPlottable::clipRect().adjusted(-kMarkerRoom, -kMarkerRoom, kMarkerRoom,
                                                         kMarkerRoom);
    }

    void draw(QCPPainter* painter) override {
        // The plot's painter shifts its origin while it smooths; that would blur the markers.
        painter->setAntialiasing(false);
        PlotScale scale = m_view.Scale();
        const QPoint origin = mParentPlot->pos();
        scale.x.from -= origin.x();
        scale.x.to -= origin.x();
        scale.y.from -= origin.y();
        scale.y.to -= origin.y();
        const QColor base = m_view.palette().color(QPalette::Base);
        PaintItems(*painter, m_chart, scale, ToColour(base), mParentPlot->bufferDevicePixelRatio());
    }

    void drawLegendIcon(QCPPainter*, const QRectF&) const override {}

private:
    const CGraphView& m_view;
    const CDocControl& m_chart;
};

// The view draws anew after each change of its size; the plot itself need not.
class Plot : public QCustomPlot {
public:
    using QCustomPlot::QCustomPlot;

protected:
    void resizeEvent(QResizeEvent*) override { setViewport(rect()); }
};

double WidestText(const QFontMetricsF& metrics, const QVector<QString>& texts) {
    double widest = 0.0;
    for (const QString& text : texts)
        widest = std::max(widest, metrics.horizontalAdvance(text));
    return widest;
}

// QCustomPlot takes -90 to 90 degrees.
double SignedAngle(double degrees) {
    return degrees > 180.0 ? degrees - 360.0 : degrees;
}

Qt::PenStyle PatternStyle(int pattern) {
    constexpr Qt::PenStyle kStyles[] = {Qt::SolidLine, Qt::DotLine, Qt::DashLine};
    return kStyles[std::clamp(pattern, 0, 2)];
}

}  // namespace

CGraphView::CGraphView(ProfileSession* session, CGraphControl* control, QWidget* parent)
    : QWidget(parent), m_session(session), m_control(control), m_plot(new Plot(this)) {
    setObjectName(u"5001_Chart"_s);
    setAccessibleName(u"Chart"_s);
    setMouseTracking(true);
    m_plot->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_plot->setFocusPolicy(Qt::NoFocus);
    m_plot->setContextMenuPolicy(Qt::NoContextMenu);
    // Nothing is ever shown in the topmost layer: it needs no picture of its own.
    m_plot->layer(u"overlay"_s)->setMode(QCPLayer::lmLogical);
    // The plot asks to be drawn as soon as it is made; there is nothing to draw before `Draw`.
    QCoreApplication::removePostedEvents(m_plot, QEvent::MetaCall);
    auto* const items =
        new ItemsPlottable(m_plot->xAxis, m_plot->yAxis, *this, m_control->document());
    // Points on an axis are drawn over it, and over its ticks.
    items->setLayer(m_plot->xAxis->layer());

    connect(m_control, &CGraphControl::Rebuilt, this, [this] {
        // The item in the user's hand may be another one now, or gone.
        FinishDrag();
        m_style_due = true;
        Redraw();
    });
    connect(m_control, &CGraphControl::ItemsChanged, this, &CGraphView::Redraw);
}

// Changes are gathered until the next painting.
void CGraphView::Redraw() {
    m_redraw_due = true;
    update();
}

PlotScale CGraphView::Scale() const {
    const QRect area = m_plot->axisRect()->rect().translated(m_plot->pos());
    const double left = area.left();
    const double bottom = area.bottom();
    return {{m_index_plan.low, m_index_plan.high, left, left + area.width()},
            {m_value_plan.low, m_value_plan.high, bottom, bottom - area.height()}};
}

QRect CGraphView::PartRect(const PercentRect& part) const {
    const QRectF area =
        QRectF(rect()).adjusted(kFrameWidth, kFrameWidth, -kFrameWidth, -kFrameWidth);
    const QPointF from(area.left() + area.width() * part.left / 100.0,
                       area.top() + area.height() * part.top / 100.0);
    const QPointF to(area.left() + area.width() * part.right / 100.0,
                     area.top() + area.height() * part.bottom / 100.0);
    return QRect(from.toPoint(), to.toPoint() - QPoint(1, 1));
}

QFont CGraphView::ChartFont(int pixels, bool bold) const {
    QFont chart_font = font();
    chart_font.setPixelSize(pixels);
    chart_font.setBold(bold);
    return chart_font;
}

void CGraphView::PlanAxes() {
    const CDocControl& chart = m_control->document();
    const bool bars = chart.display.form == DisplayForm::Bars;
    DataBounds bounds = chart.Bounds().value_or(DataBounds{0.0, 1.0, 0.0, 1.0});
    if (bars) {
        bounds.y_low = std::min(bounds.y_low, 0.0);
        bounds.y_high = std::max(bounds.y_high, 0.0);
        if (bounds.y_low == bounds.y_high)
            bounds.y_high = std::max(chart.value_scale.interval, 1.0);
    }
    const QSize room = m_plot->size() - QSize(kSideRoom, kBottomRoom);
    const double line_height = QFontMetricsF(ChartFont(kAxisTextHeight)).height();
    const auto fitting = [](double pixels, double distance, int most) {
        return std::clamp(static_cast<int>(pixels / distance), 2, most);
    };
    m_value_plan = PlanAxis(chart.value_scale, bounds.y_low, bounds.y_high, chart.display.headroom,
                            fitting(room.height(), kValueLabelDistance, kMaxLabels / 2),
                            fitting(room.height(), line_height, kMaxLabels));
    m_index_plan =
        bars ? PlanItemAxis(chart.ItemCount())
             : PlanAxis(chart.index_scale, bounds.x_low, bounds.x_high, chart.display.headroom,
                        fitting(room.width(), kTimeLabelDistance, kMaxLabels / 2), kMaxLabels);
    m_plot->yAxis->setRange(m_value_plan.low, m_value_plan.high);
    m_plot->xAxis->setRange(m_index_plan.low, m_index_plan.high);
    m_plot->yAxis->setTicker(QSharedPointer<PlanTicker>::create(m_value_plan, nullptr));
    m_plot->xAxis->setTicker(QSharedPointer<PlanTicker>::create(
        m_index_plan, chart.index_scale.labels == ScaleLabels::ItemTexts ? &chart : nullptr));
    PlaceIndexLabels(room.width());
}

// Labels stand side by side if they fit, else they are turned.
void CGraphView::PlaceIndexLabels(int width) {
    const CDocControl& chart = m_control->document();
    const bool texts = chart.index_scale.labels == ScaleLabels::ItemTexts;
    const QFontMetricsF metrics(ChartFont(kAxisTextHeight));
    QVector<QString> labels;
    for (double tick : m_index_plan.Ticks())
        labels.append(texts ? chart.Label(static_cast<int>(tick)) : m_index_plan.LabelText(tick));
    const double widest = WidestText(metrics, labels);
    const double distance = width * m_index_plan.step / (m_index_plan.high - m_index_plan.low);
    double angle = 0.0;
    if (widest + kLabelGap > distance) {
        if (!texts)
            angle =
                chart.index_scale.labels_turn ? SignedAngle(chart.index_scale.label_angle) : 0.0;
        else if ((chart.item_style.flags & ItemStyle::kUprightLabel) != 0 ||
                 distance < metrics.height() * 1.5)
            angle = -90.0;
        else
            angle = -45.0;
    }
    m_plot->xAxis->setTickLabelRotation(angle);
    // The plot leaves no room for what stands beyond the axis of its first and its last label, and
    // shows no label that would be cut. Labels turned to the left end at their marks.
    const auto length = [&](const QString& label) { return metrics.horizontalAdvance(label); };
    const double turn = std::abs(angle) * std::numbers::pi / 180.0;
    const double before = labels.isEmpty() ? 0.0
                          : angle == 0.0   ? length(labels.first()) / 2.0
                                           : length(labels.first()) * std::cos(turn) +
                                               metrics.height() / 2.0 * std::sin(turn);
    const double after = labels.isEmpty() || angle != 0.0 ? 0.0 : length(labels.last()) / 2.0;
    m_plot->axisRect()->setMinimumMargins(
        {static_cast<int>(std::ceil(before)) + kLabelMargin, kPlotMargin + kLabelMargin,
         std::max(static_cast<int>(std::ceil(after)), kPlotMargin) + kLabelMargin, 0});
}

void CGraphView::StyleAxes() {
    const CDocControl& chart = m_control->document();
    const QColor text = palette().color(QPalette::Text);
    const Colour base = ToColour(palette().color(QPalette::Base));
    m_plot->setGeometry(PartRect(chart.display_rect));
    m_plot->setBackground(palette().brush(QPalette::Base));

    const AxisLabel* const titles[] = {&chart.value_label, &chart.index_label};
    QCPAxis* const axes[] = {m_plot->yAxis, m_plot->xAxis};
    const int lengths[] = {m_plot->height() - kBottomRoom, m_plot->width() - kSideRoom};
    const bool on[] = {chart.value_axis_on, chart.index_axis_on};
    for (size_t i = 0; i < std::size(axes); ++i) {
        QCPAxis& axis = *axes[i];
        axis.setVisible(chart.has_scales && on[i]);
        axis.setBasePen(QPen(text, 1));
        axis.setTickLabelFont(ChartFont(kAxisTextHeight));
        axis.setTickLabelColor(text);
        axis.setTickLabelPadding(3);
        axis.setLabelPadding(3);
        // Without a set of marks there is not even a dot on the axis.
        axis.setTickPen(Qt::NoPen);
        axis.setSubTickPen(Qt::NoPen);
        QColor title_colour = text;
        title_colour.setAlpha(titles[i]->opacity);
        const QFont title_font = ChartFont(kAxisTextHeight, titles[i]->bold);
        const FittedText title =
            FitText(titles[i]->text, title_font, kAxisTextHeight, kSmallestTitleHeight,
                    {lengths[i], QFontMetrics(title_font).lineSpacing()});
        axis.setLabel(title.text);
        axis.setLabelFont(title.font);
        axis.setLabelColor(title_colour);

        QCPGrid& grid = *axis.grid();
        const GridLines lines = i < chart.grid_lines.size() ? chart.grid_lines[i] : GridLines();
        const QPen line_pen(ToQColor(GridLineOn(base, lines.colour)), 1,
                            PatternStyle(lines.pattern));
        grid.setVisible(chart.has_scales && lines.on != 0);
        grid.setPen(lines.level == 0 ? line_pen : QPen(Qt::NoPen));
        grid.setSubGridVisible(lines.level == 1);
        grid.setSubGridPen(line_pen);
        grid.setZeroLinePen(axes[i] == m_plot->yAxis ? QPen(text, 1) : QPen(Qt::NoPen));
        axis.setSubTicks(lines.level == 1);
    }
    for (const TickMarks& marks : chart.tick_marks) {
        QCPAxis& axis = *axes[static_cast<size_t>(marks.axis)];
        const QPen pen(ToQColor(LegibleOn(base, marks.colour)), 1);
        const bool outside = (marks.sides & 1) != 0;
        const bool inside = (marks.sides & 2) != 0;
        if (marks.level == 0) {
            axis.setTickPen(pen);
            axis.setTickLength(inside ? kTickLength : 0, outside ? kTickLength : 0);
        } else {
            axis.setSubTicks(true);
            axis.setSubTickPen(pen);
            axis.setSubTickLength(inside ? kSubTickLength : 0, outside ? kSubTickLength : 0);
        }
    }
}

void CGraphView::PlaceTitle() {
    const ChartTitle& title = m_control->document().title;
    m_title_band = PartRect(title.rect).adjusted(kPlotMargin, 0, -kPlotMargin, 0);
    m_title = FitText(ShownText(title.text, kMaxMessageLength), ChartFont(title.text_height, true),
                      title.text_height, kSmallestTitleHeight, m_title_band.size());
}

void CGraphView::Draw() {
    if (!m_redraw_due)
        return;
    if (m_style_due) {
        StyleAxes();
        PlaceTitle();
    }
    // The axes stay still under a drag.
    if (!m_dragged_item)
        PlanAxes();
    m_redraw_due = m_style_due = false;
    m_plot->replot(QCustomPlot::rpQueuedRefresh);
}

void CGraphView::paintEvent(QPaintEvent*) {
    Draw();
    QPainter painter(this);
    painter.fillRect(rect(), ChartFrameColour(palette()));
    painter.fillRect(rect().adjusted(kFrameWidth, kFrameWidth, -kFrameWidth, -kFrameWidth),
                     palette().brush(QPalette::Base));
    painter.setFont(m_title.font);
    painter.setPen(palette().color(QPalette::Text));
    constexpr Qt::Alignment kAlignments[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    const int alignment = std::clamp(m_control->document().title.alignment, 0, 2);
    painter.drawText(m_title_band, static_cast<int>(kAlignments[alignment] | Qt::AlignVCenter),
                     m_title.text);
}

// The plot is drawn while the window manager places the window.
void CGraphView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    QTimer::singleShot(0, this, &CGraphView::Draw);
}

void CGraphView::resizeEvent(QResizeEvent*) {
    m_style_due = true;
    Redraw();
    m_plot->setGeometry(PartRect(m_control->document().display_rect));
}

void CGraphView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        m_style_due = true;
        Redraw();
    }
}
