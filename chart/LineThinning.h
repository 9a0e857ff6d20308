#pragma once

#include "chart/PlotScale.h"

#include <QPointF>

#include <cmath>
#include <optional>
#include <set>
#include <span>
#include <vector>

/// The line through the points (xs[i], ys[i]) in their order, in pixels, reduced to what can be
/// seen: of neighbours in the same pixel column only the first, the lowest, the highest and the
/// last stay. Points that are not finite are passed over. `columns` is the number of pixel columns
/// per pixel unit (more than 1 on a finely resolved screen).
///
/// Where the points jump about so much that thinning neighbours does not help, the line would cover
/// everything between its extremes; then each column's lowest and highest points are joined
/// instead, column by column. The result never holds more than a fixed number of points per column
/// of the scale.
std::vector<QPointF> ThinLine(std::span<const double> xs, std::span<const double> ys,
                              const PlotScale& scale, double columns = 1.0);

/// Where many points stand side by side.
class PointDensity {
public:
    /// Of points at `xs`; `columns` as above.
    PointDensity(std::span<const double> xs, const AxisScale& axis, double columns = 1.0);

    /// Whether there is more than one point a pixel column around `pixel`. A step, two points in
    /// one column, is not dense.
    bool IsDense(double pixel) const;

private:
    double m_left;
    double m_columns;
    std::vector<size_t> m_before;  // points left of each column, and of the end
};

/// Markers nearer than this (pixels) to the one before on the line are left out.
constexpr double kMarkerDistance = 6.0;

/// Calls `mark(place)` for the points (xs[i], ys[i]) that get a marker, in their order: those that
/// do not stand too near to the marker before, and those of `always`. In dense stretches only the
/// way along the axis counts, for the line to be seen. Places are in pixels.
template <typename Mark>
void ForEachMarker(std::span<const double> xs, std::span<const double> ys, const PlotScale& scale,
                   const PointDensity& density, const std::set<int>& always, Mark mark) {
    const AxisPixels x_pixels(scale.x);
    const AxisPixels y_pixels(scale.y);
    std::optional<QPointF> former;
    auto next = always.begin();
    for (size_t i = 0; i < xs.size(); ++i) {
        const bool due = next != always.end() && static_cast<size_t>(*next) == i;
        if (due)
            ++next;
        // A difference with itself is 0 for finite numbers only.
        if ((xs[i] - xs[i]) + (ys[i] - ys[i]) != 0.0)
            continue;
        const QPointF place(x_pixels(xs[i]), y_pixels(ys[i]));
        if (former && !due) {
            const QPointF way = place - *former;
            if (QPointF::dotProduct(way, way) < kMarkerDistance * kMarkerDistance)
                continue;
            if (std::abs(way.x()) < kMarkerDistance && density.IsDense(place.x()))
                continue;
        }
        former = place;
        mark(place);
    }
}
