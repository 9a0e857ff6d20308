// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ViewZoom.h"

#include "chart/CGraphControl.h"
#include "chart/ChartPlot.h"
#include "chart/ZoomBar.h"
#include "chart/ZoomGestures.h"

#include <QWheelEvent>

#include <cmath>
#include <cstdlib>
#include <utility>

namespace {

// A notch of a mouse wheel; finely resolved wheels and touchpads turn by less.
constexpr double kNotch = 120.0;

// Share of the visible part that a notch pans by.
constexpr double kPanShare = 0.1;

}  // namespace

ViewZoom::ViewZoom(const ChartPlot* plot, const CGraphControl* control, QWidget* view)
    : m_plot(plot), m_control(control), m_view(view), m_bar(new ZoomBar(view)) {
    connect(m_bar, &ZoomBar::Dragged, this, [this](double from) {
        const AxisRange whole = m_zoom.Whole(ChartAxis::Items);
        ChartZoom zoom = m_zoom;
        zoom.Pan(ChartAxis::Items,
                 whole.low + from * whole.Extent() - zoom.Range(ChartAxis::Items).low);
        Set(zoom);
    });
}

const CDocControl& ViewZoom::chart() const {
    return m_control->document();
}

void ViewZoom::Set(const ChartZoom& zoom) {
    if (zoom == m_zoom)
        return;
    const bool was_zoomed = std::exchange(m_zoom, zoom).IsZoomed();
    emit PartChanged();
    if (was_zoomed != m_zoom.IsZoomed())
        emit ZoomedChanged();
}

// Below all labels, as long as the axis.
void ViewZoom::PlaceBar() {
    m_bar->setVisible(m_zoom.IsZoomed(ChartAxis::Items));
    const AxisScale axis = m_plot->Scale().x;
    const int left = static_cast<int>(std::lround(axis.from));
    m_bar->setGeometry(left, m_view->height() - 1 - ZoomBar::kHeight,
                       static_cast<int>(std::lround(axis.to)) - left, ZoomBar::kHeight);
    const AxisRange whole = m_zoom.Whole(ChartAxis::Items);
    m_bar->SetPart((axis.low - whole.low) / whole.Extent(),
                   (axis.high - whole.low) / whole.Extent());
}

// As the next painting will show it: several acts may come between two.
PlotScale ViewZoom::NextScale() const {
    PlotScale scale = m_plot->Scale();
    const AxisRange items = m_zoom.Range(ChartAxis::Items);
    const AxisRange values = m_zoom.Range(ChartAxis::Values);
    scale.x.low = items.low;
    scale.x.high = items.high;
    scale.y.low = values.low;
    scale.y.high = values.high;
    return scale;
}

void ViewZoom::ZoomBy(double notches) {
    const PlotScale scale = NextScale();
    const QPointF middle((scale.x.low + scale.x.high) / 2.0, 0.0);
    ChartZoom zoom = m_zoom;
    ZoomByNotches(zoom, chart(), ChartAxis::Items, middle, notches);
    Set(zoom);
}

void ViewZoom::PanBy(double share) {
    ChartZoom zoom = m_zoom;
    zoom.Pan(ChartAxis::Items, share * zoom.Range(ChartAxis::Items).Extent());
    Set(zoom);
}

void ViewZoom::ShowAll() {
    ChartZoom zoom = m_zoom;
    zoom.Fit();
    Set(zoom);
}

ChartZoom ViewZoom::ZoomFor(const QList<int>& rows) const {
    QList<int> indices;
    for (const int row : rows)
        indices.append(row - 1);
    ChartZoom zoom = m_zoom;
    ShowItems(zoom, chart(), indices);
    return zoom;
}

void ViewZoom::BringIntoView(int row) {
    ChartZoom zoom = m_zoom;
    ::BringIntoView(zoom, chart(), row - 1);
    Set(zoom);
}

void ViewZoom::Turn(const QWheelEvent& event) {
    const QPoint turn = event.angleDelta();
    const bool sideways = std::abs(turn.x()) > std::abs(turn.y());
    const double notches = (sideways ? turn.x() : turn.y()) / kNotch;
    if (sideways || event.modifiers().testFlag(Qt::ShiftModifier)) {
        PanBy(-notches * kPanShare);
        return;
    }
    const bool values = event.modifiers().testFlag(Qt::ControlModifier);
    ChartZoom zoom = m_zoom;
    ZoomByNotches(zoom, chart(), values ? ChartAxis::Values : ChartAxis::Items,
                  NextScale().ToValues(event.position()), notches);
    Set(zoom);
}

void ViewZoom::BeginPan(QPointF position) {
    m_held_place = NextScale().ToValues(position);
    m_view->setCursor(Qt::ClosedHandCursor);
}

void ViewZoom::PanTo(QPointF position) {
    if (!m_held_place)
        return;
    ChartZoom zoom = m_zoom;
    PanWith(zoom, *m_held_place, NextScale().ToValues(position));
    Set(zoom);
}

void ViewZoom::EndPan() {
    if (std::exchange(m_held_place, std::nullopt))
        m_view->unsetCursor();
}
