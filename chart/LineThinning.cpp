// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/LineThinning.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace {

// So many points of a line per pixel column are worth drawing one by one.
constexpr size_t kMaxPerColumn = 8;

// Pixel columns on each side of a place whose points count for its density.
constexpr size_t kDensityReach = 4;

// More than any screen has.
constexpr double kMaxColumns = 1e6;

// Pixels beside the axis whose points are still drawn: markers reach as far.
constexpr double kBesideAxis = 10.0;

// Pixels up to which lines are worked out before they are cut off.
constexpr double kEndOfLines = 1e9;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// One run of neighbouring points in the same column; the indices are in the order of the points.
struct Run {
    size_t first = 0;
    size_t lowest = 0;
    size_t highest = 0;
    size_t last = 0;
};

class Line {
public:
    Line(std::span<const double> xs, std::span<const double> ys, const PlotScale& scale)
        : m_xs(xs), m_ys(ys), m_x_pixels(scale.x, kEndOfLines), m_y_pixels(scale.y, kEndOfLines) {}

    void Append(size_t index) {
        m_points.emplace_back(m_x_pixels(m_xs[index]), m_y_pixels(m_ys[index]));
    }

    void Append(const Run& run) {
        size_t kept[] = {run.first, run.lowest, run.highest, run.last};
        std::sort(std::begin(kept), std::end(kept));
        for (auto at = std::begin(kept); at != std::unique(std::begin(kept), std::end(kept)); ++at)
            Append(*at);
    }

    std::vector<QPointF>& Points() { return m_points; }

private:
    std::span<const double> m_xs;
    std::span<const double> m_ys;
    AxisPixels m_x_pixels;
    AxisPixels m_y_pixels;
    std::vector<QPointF> m_points;
};

// With the corners of its steps. Thinning has left the first and the last point of each pixel
// column, so the level between two columns is that of all points.
std::vector<QPointF> Formed(std::vector<QPointF> line, LineForm form) {
    if (form == LineForm::Straight || line.empty())
        return line;
    std::vector<QPointF> steps = {line.front()};
    steps.reserve(2 * line.size());
    for (size_t i = 1; i < line.size(); ++i) {
        steps.emplace_back(line[i].x(), line[i - 1].y());
        steps.push_back(line[i]);
    }
    return steps;
}

QPointF Nearest(QPointF place) {
    return {std::clamp(place.x(), -kFarAway, kFarAway), std::clamp(place.y(), -kFarAway, kFarAway)};
}

// The part of the way from `a` to `b` that is not far away, as shares of it; the first is above the
// second where there is none.
std::pair<double, double> PartWithin(QPointF a, QPointF b) {
    double from = 0.0;
    double to = 1.0;
    for (const auto& [start, way] : {std::pair(a.x(), b.x() - a.x()), {a.y(), b.y() - a.y()}}) {
        if (way == 0.0) {
            to = std::abs(start) > kFarAway ? -1.0 : to;
            continue;
        }
        const double enters = (-std::copysign(kFarAway, way) - start) / way;
        const double leaves = (std::copysign(kFarAway, way) - start) / way;
        from = std::max(from, enters);
        to = std::min(to, leaves);
    }
    return {from, to};
}

// A line ends where it gets far away, in the direction in which it goes, and comes back along the
// bounds.
std::vector<QPointF> CutOff(std::vector<QPointF> line) {
    const auto is_far = [](QPointF place) { return place != Nearest(place); };
    if (std::none_of(line.begin(), line.end(), is_far))
        return line;
    std::vector<QPointF> cut = {Nearest(line.front())};
    for (size_t i = 1; i < line.size(); ++i) {
        const QPointF a = line[i - 1];
        const QPointF b = line[i];
        if (const auto [from, to] = PartWithin(a, b); from < to) {
            if (from > 0.0)
                cut.push_back(a + (b - a) * from);
            if (to < 1.0)
                cut.push_back(a + (b - a) * to);
        }
        cut.push_back(Nearest(b));
    }
    return cut;
}

// Each column's lowest and highest point, from left to right.
ThinnedLine Envelope(std::span<const double> xs, std::span<const double> ys, const PlotScale& scale,
                     double columns, size_t width) {
    struct Extremes {
        double low = 0.0;
        double high = 0.0;
    };
    std::vector<Extremes> extremes(width + 1);
    std::vector<size_t> counts(width + 1);
    const double left = std::min(scale.x.from, scale.x.to);
    const double factor = scale.x.PixelsPerUnit() * columns;
    const double offset = (scale.x.from - left) * columns - scale.x.low * factor;
    for (size_t i = 0; i < xs.size(); ++i) {
        const double y = ys[i];
        const double column = offset + xs[i] * factor;
        // The comparison is false for a place that is not finite.
        if (!(column >= 0.0 && column <= static_cast<double>(width)) || y - y != 0.0)
            continue;
        Extremes& here = extremes[static_cast<size_t>(column)];
        const bool used = counts[static_cast<size_t>(column)]++ != 0;
        here.low = used ? std::min(here.low, y) : y;
        here.high = used ? std::max(here.high, y) : y;
    }
    std::vector<QPointF> points;
    for (size_t column = 0; column < extremes.size(); ++column) {
        const Extremes& here = extremes[column];
        if (counts[column] == 0)
            continue;
        const double x = left + (static_cast<double>(column) + 0.5) / columns;
        points.emplace_back(x, scale.y.ToPixel(here.low));
        points.emplace_back(x, scale.y.ToPixel(here.high));
    }
    return {std::move(points), PointDensity(std::span(counts).first(width), left, columns)};
}

}  // namespace

std::pair<size_t, size_t> PointsInSight(std::span<const double> xs, const AxisScale& axis) {
    const double room = kBesideAxis / std::abs(axis.PixelsPerUnit());
    const double low = axis.low - room;
    const double high = axis.high + room;
    const auto falls = [](double a, double b) { return !(a <= b); };
    // With the whole axis in sight there is no need to look at the order.
    if (xs.empty() || (xs.front() >= low && xs.back() <= high) ||
        std::adjacent_find(xs.begin(), xs.end(), falls) != xs.end())
        return {0, xs.size()};
    const auto first = std::lower_bound(xs.begin(), xs.end(), low);
    const auto last = std::upper_bound(first, xs.end(), high);
    return {static_cast<size_t>(first - xs.begin() - (first == xs.begin() ? 0 : 1)),
            static_cast<size_t>(last - xs.begin() + (last == xs.end() ? 0 : 1))};
}

ThinnedLine ThinLine(std::span<const double> xs, std::span<const double> ys, const PlotScale& scale,
                     double columns, LineForm form) {
    const size_t count = std::min(xs.size(), ys.size());
    const double width = std::ceil(std::abs(scale.x.to - scale.x.from) * columns) + 1.0;
    const auto used_width = static_cast<size_t>(std::clamp(width, 1.0, kMaxColumns));
    const size_t most = kMaxPerColumn * used_width;
    const double factor = scale.x.PixelsPerUnit() * columns;
    const double offset = (scale.x.from * columns) - scale.x.low * factor;
    const double first_column = std::floor(std::min(scale.x.from, scale.x.to) * columns);
    const double end_column = first_column + static_cast<double>(used_width);
    Line line(xs, ys, scale);
    std::vector<size_t> counts(used_width);
    Run run;
    bool in_run = false;
    double column = 0.0;  // of the run, from pixel 0
    const auto end_run = [&] {
        line.Append(run);
        const double place = column - first_column;
        if (place >= 0.0 && place < static_cast<double>(counts.size()))
            counts[static_cast<size_t>(place)] += run.last - run.first + 1;
    };
    // The run's column, as the part of the x axis that lies in it, and its extremes so far.
    double from = 0.0;
    double to = 0.0;
    double lowest = 0.0;
    double highest = 0.0;
    for (size_t i = 0; i < count; ++i) {
        const double x = xs[i];
        const double y = ys[i];
        if (!IsFinitePlace(x, y))
            continue;
        if (in_run && x >= from && x < to) {
            if (y < lowest) {
                lowest = y;
                run.lowest = i;
            }
            if (y > highest) {
                highest = y;
                run.highest = i;
            }
            run.last = i;
            continue;
        }
        if (in_run)
            end_run();
        run = {i, i, i, i};
        lowest = highest = y;
        // All that the axis does not show is one column on each side of it.
        column = std::clamp(std::floor(offset + x * factor), first_column - 1.0, end_column);
        from = column < first_column ? -kInfinity : (column - offset) / factor;
        to = column < end_column ? (column + 1.0 - offset) / factor : kInfinity;
        in_run = true;
        if (count > most && line.Points().size() > most)
            return Envelope(xs.first(count), ys.first(count), scale, columns, used_width);
    }
    if (in_run)
        end_run();
    return {CutOff(Formed(std::move(line.Points()), form)),
            PointDensity(counts, first_column / columns, columns)};
}

PointDensity::PointDensity(std::span<const size_t> counts, double left, double columns)
    : m_left(left), m_columns(columns), m_dense(counts.size()) {
    for (size_t column = 0; column < counts.size(); ++column) {
        const size_t from = column - std::min(column, kDensityReach);
        const std::span<const size_t> around =
            counts.subspan(from, std::min(column + kDensityReach + 1, counts.size()) - from);
        const size_t sum = std::accumulate(around.begin(), around.end(), size_t{0});
        m_dense[column] = sum > around.size() ? 1 : 0;
    }
}
