// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ItemPicking.h"

#include <algorithm>
#include <cmath>

namespace {

std::optional<int> HitBar(const CDocControl& chart, const PlotScale& scale, QPointF position) {
    const double place = scale.x.ToValue(position.x());
    const double index = std::round(place);
    if (!(index >= 0.0 && index < chart.items.Count()) || std::abs(place - index) > kBarWidth / 2.0)
        return {};
    const int item = static_cast<int>(index);
    if (!chart.items.IsDrawn(item))
        return {};
    const double axis = scale.y.ToPixel(0.0);
    const double end = scale.y.ToPixel(chart.items.Value(item, 0));
    const bool in_column =
        position.y() >= std::min(axis, end) && position.y() <= std::max(axis, end);
    if (in_column || std::abs(position.y() - end) <= kHitDistance)
        return item;
    return {};
}

std::optional<int> HitPoint(const CDocControl& chart, const PlotScale& scale, QPointF position) {
    const std::span<const double> values = chart.items.Group(chart.items.GroupCount() - 1);
    const std::span<const double> places = chart.items.Group(0);
    const bool indexed = chart.items.GroupCount() == 1;
    const QPointF centre = scale.ToValues(position);
    const double x_pixels = scale.x.PixelsPerUnit();
    const double y_pixels = scale.y.PixelsPerUnit();
    std::optional<int> nearest;
    double nearest_distance = kHitDistance * kHitDistance;
    for (size_t i = 0; i < values.size(); ++i) {
        const double x = indexed ? static_cast<double>(i) : places[i];
        const double dx = (x - centre.x()) * x_pixels;
        // The comparison is false for a place that is not finite.
        if (!(std::abs(dx) <= kHitDistance))
            continue;
        const double dy = (values[i] - centre.y()) * y_pixels;
        const double distance = dx * dx + dy * dy;
        if (distance < nearest_distance || (!nearest && distance <= nearest_distance)) {
            nearest = static_cast<int>(i);
            nearest_distance = distance;
        }
    }
    return nearest;
}

}  // namespace

std::optional<int> HitItem(const CDocControl& chart, const PlotScale& scale, QPointF position) {
    return chart.display.form == DisplayForm::Bars ? HitBar(chart, scale, position)
                                                   : HitPoint(chart, scale, position);
}
