// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/LineThinning.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

// So many points of a line per pixel column are worth drawing one by one.
constexpr size_t kMaxPerColumn = 8;

// Pixel columns on each side of a place whose points count for its density.
constexpr size_t kDensityReach = 4;

// More than any screen has.
constexpr double kMaxColumns = 1e6;

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
        : m_xs(xs), m_ys(ys), m_scale(scale) {}

    void Append(size_t index) { m_points.push_back(m_scale.ToPixels({m_xs[index], m_ys[index]})); }

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
    PlotScale m_scale;
    std::vector<QPointF> m_points;
};

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

ThinnedLine ThinLine(std::span<const double> xs, std::span<const double> ys, const PlotScale& scale,
                     double columns) {
    const size_t count = std::min(xs.size(), ys.size());
    const double width = std::ceil(std::abs(scale.x.to - scale.x.from) * columns) + 1.0;
    const auto used_width = static_cast<size_t>(std::clamp(width, 1.0, kMaxColumns));
    const size_t most = kMaxPerColumn * used_width;
    const double factor = scale.x.PixelsPerUnit() * columns;
    const double offset = (scale.x.from * columns) - scale.x.low * factor;

    const double first_column = std::floor(std::min(scale.x.from, scale.x.to) * columns);

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
        column = std::floor(offset + x * factor);
        from = (column - offset) / factor;
        to = (column + 1.0 - offset) / factor;
        in_run = true;
        if (count > most && line.Points().size() > most)
            return Envelope(xs.first(count), ys.first(count), scale, columns, used_width);
    }
    if (in_run)
        end_run();
    return {std::move(line.Points()), PointDensity(counts, first_column / columns, columns)};
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
