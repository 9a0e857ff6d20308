// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/AxisPlan.h"
#include "chart/FittedText.h"
#include "chart/PlotScale.h"

#include <QFont>
#include <QPalette>
#include <QRect>

#include <memory>

class QCPAxis;
class QCustomPlot;
class QPainter;
class QWidget;

/// Size, font and palette of a drawn chart.
struct ChartLook {
    QSize size;
    QFont font;  ///< its size is the chart's own
    QPalette palette;
};

/// Draws a CDocControl with the plotting library, on a widget or without one. It is drawn in two
/// parts: the ground with frame and title by `PaintGround`, over it axes and items by a child of
/// the widget. What it shows follows from the chart, the look and the plans of its axes alone.
class ChartPlot {
public:
    /// `chart` and `widget` (may be null) are not owned and outlive this object.
    ChartPlot(const CDocControl& chart, QWidget* widget);
    ~ChartPlot();
    ChartPlot(const ChartPlot&) = delete;
    ChartPlot& operator=(const ChartPlot&) = delete;

    /// Puts the plot into its part of a chart of that size; `Style` must follow.
    void Resize(QSize size);

    /// Takes over all settings of the chart but its items.
    void Style(const ChartLook& look);

    /// The plans that show all of the chart's items.
    AxisPlans FittedAxes() const;

    /// Shows these parts of the axes. Labels leave at least as much room beside them as those of
    /// `whole` would, so that places keep their pixels while the parts change.
    void SetAxes(const AxisPlans& plans, const AxisPlans& whole);

    /// Draws axes and items; they are shown with the next painting of the widget.
    void Replot();

    void PaintGround(QPainter& painter) const;

    /// Keeps the title that many pixels above the axes: something is shown between them.
    void KeepFreeAboveAxes(int height) { m_free_above_axes = height; }

    /// Draws the whole chart but its frame, as shapes that keep their places at every size. Points
    /// are thinned out for that number of device pixels per pixel.
    void PaintShapes(QPainter& painter, double device_pixels);

    /// The distance between two small marks of the axis of values, in its units.
    double SmallMark() const;

    /// The mapping between axis units and the pixels of the chart, as drawn last.
    PlotScale Scale() const;

private:
    class Items;

    void PaintTitle(QPainter& painter) const;
    FittedText FitTitle(QSize room) const;
    QFont ChartFont(int pixels, bool bold = false) const;
    QRect PartRect(const PercentRect& part) const;
    void StyleAxis(QCPAxis& axis, const AxisLabel& label, const GridLines& lines, int length);
    void StyleTicks(QCPAxis& axis, const TickMarks& marks);

    const CDocControl& m_chart;
    std::unique_ptr<QCustomPlot> m_plot;
    ChartLook m_look;
    AxisPlans m_plans;
    QRect m_title_band;
    FittedText m_title;
    int m_free_above_axes = 0;
};
