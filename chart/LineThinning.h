// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/CDocControl.h"
#include "chart/PlotScale.h"

#include <QPointF>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <set>
#include <span>
#include <utility>
#include <vector>

/// The pixel columns that hold many points.
class PointDensity {
public:
    /// `counts` are the points in each pixel column, of which there are `columns` per pixel unit;
    /// the first begins at pixel `left`.
    PointDensity(std::span<const size_t> counts, double left, double columns);

    /// Whether there is more than one point a pixel column around `pixel`. A step, two points in
    /// one column, is not dense.
    bool IsDense(double pixel) const {
        const double column = (pixel - m_left) * m_columns;
        return column >= 0.0 && column < static_cast<double>(m_dense.size()) &&
               m_dense[static_cast<size_t>(column)] != 0;
    }

    /// Where the column around `pixel` begins and ends, in pixels.
    std::pair<double, double> Column(double pixel) const {
        const double column = std::floor((pixel - m_left) * m_columns);
        return {m_left + column / m_columns, m_left + (column + 1.0) / m_columns};
    }

private:
    double m_left;
    double m_columns;
    std::vector<unsigned char> m_dense;  // one a column
};

struct ThinnedLine {
    std::vector<QPointF> points;  ///< in pixels
    PointDensity density;         ///< of all points, also of those that were left out
};

/// Which of the points at `xs` an axis shows, as the first one and the one behind the last, with
/// what stands just beside it and the next points on both sides, to which lines lead. All of them
/// where the points do not stand in order.
std::pair<size_t, size_t> PointsInSight(std::span<const double> xs, const AxisScale& axis);

/// The line through the points (xs[i], ys[i]) in their order, in pixels, reduced to what can be
/// seen: of neighbours in the same pixel column only the first, the lowest, the highest and the
/// last stay. Points that are not finite are passed over. `columns` is the number of pixel columns
/// per pixel unit (more than 1 on a finely resolved screen).
///
/// Where the points jump about so much that thinning neighbours does not help, the line would cover
/// everything between its extremes; then each column's lowest and highest points are joined
/// instead, column by column. The result never holds more than a fixed number of points per column
/// of the scale. What lies beyond any screen is cut off.
ThinnedLine ThinLine(std::span<const double> xs, std::span<const double> ys, const PlotScale& scale,
                     double columns = 1.0, LineForm form = LineForm::Straight);

/// Markers nearer than this (pixels) to the one before on the line are left out.
constexpr double kMarkerDistance = 6.0;

/// Calls `mark(place)` for the points (xs[i], ys[i]) in sight that get a marker, in their order:
/// those that do not stand too near to the marker before, and those of `always`. In dense stretches
/// only the way along the axis counts, for the line to be seen. Places are in pixels.
template <typename Mark>
void ForEachMarker(std::span<const double> xs, std::span<const double> ys, const PlotScale& scale,
                   const PointDensity& density, const std::set<int>& always, Mark mark) {
    constexpr size_t kNone = std::numeric_limits<size_t>::max();
    const AxisPixels x_pixels(scale.x);
    const AxisPixels y_pixels(scale.y);
    std::optional<QPointF> former;
    auto next = always.begin();
    size_t due = next == always.end() ? kNone : static_cast<size_t>(*next);
    // Between these on the x axis points are left out: those in the dense column of the last one
    // that was. So most of many points cost two comparisons.
    double left_out_from = 0.0;
    double left_out_to = 0.0;
    for (size_t i = 0; i < xs.size(); ++i) {
        const bool is_due = i == due;
        if (is_due)
            due = ++next == always.end() ? kNone : static_cast<size_t>(*next);
        else if (xs[i] > left_out_from && xs[i] < left_out_to)
            continue;
        if (!scale.x.Shows(xs[i]) || !scale.y.Shows(ys[i]))
            continue;
        const QPointF place(x_pixels(xs[i]), y_pixels(ys[i]));
        const QPointF way = former ? place - *former : QPointF();
        if (former && !is_due && std::abs(way.x()) < kMarkerDistance) {
            if (density.IsDense(place.x())) {
                const auto [from, to] = density.Column(place.x());
                left_out_from = scale.x.ToValue(std::max(from, former->x() - kMarkerDistance));
                left_out_to = scale.x.ToValue(std::min(to, former->x() + kMarkerDistance));
                continue;
            }
            if (QPointF::dotProduct(way, way) < kMarkerDistance * kMarkerDistance)
                continue;
        }
        former = place;
        left_out_from = left_out_to = 0.0;
        mark(place);
    }
}
