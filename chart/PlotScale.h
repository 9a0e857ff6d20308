// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>

#include <algorithm>

/// Whether both numbers are finite, without a branch for each: a difference with itself is 0 for
/// finite numbers only.
inline bool IsFinitePlace(double x, double y) {
    return (x - x) + (y - y) == 0.0;
}

/// The linear mapping between one axis and its pixels: value `low` stands at pixel `from`, value
/// `high` at pixel `to`. `from` is larger than `to` on an axis that points upward.
struct AxisScale {
    double low = 0.0;
    double high = 1.0;
    double from = 0.0;
    double to = 1.0;

    double PixelsPerUnit() const { return (to - from) / (high - low); }

    /// Bounded beyond any screen, so that any finite value can be handed to a painter; long lines
    /// would take it seconds.
    double ToPixel(double value) const;

    /// Whether the axis shows `value`; false for what is no number.
    bool Shows(double value) const {
        const double slack = (high - low) * 1e-9;
        return value >= low - slack && value <= high + slack;
    }

    double ToValue(double pixel) const {
        return to == from ? low : low + (pixel - from) / PixelsPerUnit();
    }
};

/// Pixels from here on are beyond any screen.
constexpr double kFarAway = 2e4;

/// The pixels of many values of one axis, without a division for each.
class AxisPixels {
public:
    explicit AxisPixels(const AxisScale& axis, double bound = kFarAway)
        : m_from(axis.from), m_low(axis.low), m_factor(axis.PixelsPerUnit()), m_bound(bound) {}

    double operator()(double value) const {
        return std::clamp(m_from + (value - m_low) * m_factor, -m_bound, m_bound);
    }

private:
    double m_from;
    double m_low;
    double m_factor;
    double m_bound;
};

inline double AxisScale::ToPixel(double value) const {
    return AxisPixels(*this)(value);
}

struct PlotScale {
    AxisScale x;
    AxisScale y;

    QPointF ToPixels(QPointF place) const { return {x.ToPixel(place.x()), y.ToPixel(place.y())}; }
    QPointF ToValues(QPointF pixels) const {
        return {x.ToValue(pixels.x()), y.ToValue(pixels.y())};
    }
};
