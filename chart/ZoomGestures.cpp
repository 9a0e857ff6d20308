// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ZoomGestures.h"

#include <algorithm>
#include <cmath>

namespace {

// What an item takes of its axis on both sides.
double HalfWidth(const CDocControl& chart) {
    return chart.display.form == DisplayForm::Bars ? 0.5 : 0.0;
}

}  // namespace

void ZoomByNotches(ChartZoom& zoom, const CDocControl& chart, ChartAxis axis, QPointF place,
                   double notches) {
    const double factor = std::pow(kZoomFactor, notches);
    if (axis == ChartAxis::Items)
        zoom.ZoomAbout(axis, place.x(), factor, chart.items);
    else if (chart.display.form == DisplayForm::Points)
        zoom.ZoomAbout(axis, place.y(), factor, chart.items);
}

void PanWith(ChartZoom& zoom, QPointF from, QPointF to) {
    const QPointF way = from - to;
    zoom.Pan(ChartAxis::Items, way.x());
    zoom.Pan(ChartAxis::Values, way.y());
}

void ShowItems(ChartZoom& zoom, const CDocControl& chart, const QList<int>& indices) {
    double low = 0.0;
    double high = 0.0;
    bool any = false;
    for (const int index : indices) {
        if (!chart.items.IsDrawn(index))
            continue;
        const double place = chart.items.Place(index).x();
        low = any ? std::min(low, place) : place;
        high = any ? std::max(high, place) : place;
        any = true;
    }
    if (any)
        zoom.Show(low - HalfWidth(chart), high + HalfWidth(chart), chart.items);
}

void BringIntoView(ChartZoom& zoom, const CDocControl& chart, int index) {
    if (!chart.items.IsDrawn(index))
        return;
    const QPointF place = chart.items.Place(index);
    zoom.BringIntoView(ChartAxis::Items, place.x() - HalfWidth(chart));
    zoom.BringIntoView(ChartAxis::Items, place.x() + HalfWidth(chart));
    zoom.BringIntoView(ChartAxis::Values, place.y());
}
