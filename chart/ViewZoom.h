// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ChartZoom.h"
#include "chart/PlotScale.h"

#include <QList>
#include <QObject>
#include <QPointF>

#include <optional>

class CGraphControl;
class ChartPlot;
class QWheelEvent;
class QWidget;
class ZoomBar;

/// The zoom of a chart on the screen: what wheel, middle button, commands and the bar below the
/// chart make of it.
class ViewZoom : public QObject {
    Q_OBJECT

public:
    /// `view` shows the chart of `control` as drawn by `plot`. Nothing is owned; all outlive this
    /// object.
    ViewZoom(const ChartPlot* plot, const CGraphControl* control, QWidget* view);

    const ChartZoom& zoom() const { return m_zoom; }
    bool isZoomed() const { return m_zoom.IsZoomed(); }

    /// The plans that show the whole chart.
    void SetFitted(const AxisPlans& plans) { m_zoom.SetFitted(plans); }

    /// Places the bar below the chart. Call after the plot is drawn.
    void PlaceBar();

    /// Zooms the items' axis about its middle, in or (below 0) out.
    void ZoomBy(double notches);

    /// Moves the visible part of the items' axis by `share` of its extent.
    void PanBy(double share);

    void ShowAll();

    /// Shows the items of these grid rows.
    void ShowRows(const QList<int>& rows) { Set(ZoomFor(rows)); }

    /// Whether that would change anything.
    bool canShowRows(const QList<int>& rows) const { return !(ZoomFor(rows) == m_zoom); }

    /// Pans to the item of this grid row if it is out of view.
    void BringIntoView(int row);

    /// The wheel turns: zooms about the pointer, or pans.
    void Turn(const QWheelEvent& event);

    /// From the first of these calls to the last, what is under the pointer follows it. Places are
    /// pixels of the view.
    void BeginPan(QPointF position);
    void PanTo(QPointF position);
    void EndPan();
    bool isPanning() const { return m_held_place.has_value(); }

signals:
    /// Another part of the chart is to be shown.
    void PartChanged();
    /// `isZoomed` has changed by the user's act.
    void ZoomedChanged();

private:
    void Set(const ChartZoom& zoom);
    ChartZoom ZoomFor(const QList<int>& rows) const;
    PlotScale NextScale() const;
    const CDocControl& chart() const;

    const ChartPlot* m_plot;
    const CGraphControl* m_control;
    QWidget* m_view;
    ZoomBar* m_bar;  // a child of the view
    ChartZoom m_zoom;
    std::optional<QPointF> m_held_place;  // in axis units, while the middle button pans
};
