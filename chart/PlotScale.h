#pragma once

#include <QPointF>

#include <algorithm>

/// The linear mapping between one axis and its pixels: value `low` stands at pixel `from`, value
/// `high` at pixel `to`. `from` is larger than `to` on an axis that points upward.
struct AxisScale {
    double low = 0.0;
    double high = 1.0;
    double from = 0.0;
    double to = 1.0;

    double PixelsPerUnit() const { return (to - from) / (high - low); }

    /// Bounded, so that any finite value can be handed to a painter.
    double ToPixel(double value) const {
        constexpr double kFarAway = 1e6;
        return std::clamp(from + (value - low) * PixelsPerUnit(), -kFarAway, kFarAway);
    }

    double ToValue(double pixel) const {
        return to == from ? low : low + (pixel - from) / PixelsPerUnit();
    }
};

struct PlotScale {
    AxisScale x;
    AxisScale y;

    QPointF ToPixels(QPointF place) const { return {x.ToPixel(place.x()), y.ToPixel(place.y())}; }
    QPointF ToValues(QPointF pixels) const {
        return {x.ToValue(pixels.x()), y.ToValue(pixels.y())};
    }
};
