#include "chart/LineThinning.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

// So many points of a line per pixel column are worth drawing one by one.
constexpr size_t kMostPerColumn = 8;

// Pixel columns on each side of a place whose points count for its density.
constexpr double kDensityReach = 4.0;

// More than any screen has.
constexpr double kMostColumns = 1e6;

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
std::vector<QPointF> Envelope(std::span<const double> xs, std::span<const double> ys,
                              const PlotScale& scale, double columns, size_t width) {
    struct Extremes {
        double low = 0.0;
        double high = 0.0;
        bool used = false;
    };
    std::vector<Extremes> extremes(width + 1);
    const double left = std::min(scale.x.from, scale.x.to);
    const double factor = scale.x.PixelsPerUnit() * columns;
    const double offset = (scale.x.from - left) * columns - scale.x.low * factor;
    for (size_t i = 0; i < xs.size(); ++i) {
        const double y = ys[i];
        const double column = offset + xs[i] * factor;
        // Written so that a place that is not finite is passed over.
        if (!(column >= 0.0 && column <= static_cast<double>(width)) || y - y != 0.0)
            continue;
        Extremes& here = extremes[static_cast<size_t>(column)];
        here.low = here.used ? std::min(here.low, y) : y;
        here.high = here.used ? std::max(here.high, y) : y;
        here.used = true;
    }
    std::vector<QPointF> points;
    for (size_t column = 0; column < extremes.size(); ++column) {
        const Extremes& here = extremes[column];
        if (!here.used)
            continue;
        const double x = left + (static_cast<double>(column) + 0.5) / columns;
        points.emplace_back(x, scale.y.ToPixel(here.low));
        points.emplace_back(x, scale.y.ToPixel(here.high));
    }
    return points;
}

}  // namespace

std::vector<QPointF> ThinLine(std::span<const double> xs, std::span<const double> ys,
                              const PlotScale& scale, double columns) {
    const size_t count = std::min(xs.size(), ys.size());
    const double width = std::ceil(std::abs(scale.x.to - scale.x.from) * columns) + 1.0;
    const size_t most = kMostPerColumn * static_cast<size_t>(std::clamp(width, 1.0, kMostColumns));
    const double factor = scale.x.PixelsPerUnit() * columns;
    const double offset = (scale.x.from * columns) - scale.x.low * factor;

    Line line(xs, ys, scale);
    Run run;
    bool in_run = false;
    // The run's column, as the part of the x axis that lies in it, and its extremes so far.
    double from = 0.0;
    double to = 0.0;
    double lowest = 0.0;
    double highest = 0.0;
    for (size_t i = 0; i < count; ++i) {
        const double x = xs[i];
        const double y = ys[i];
        // A difference with itself is 0 for finite numbers only.
        if ((x - x) + (y - y) != 0.0)
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
            line.Append(run);
        run = {i, i, i, i};
        lowest = highest = y;
        const double column = std::floor(offset + x * factor);
        from = (column - offset) / factor;
        to = (column + 1.0 - offset) / factor;
        in_run = true;
        if (count > most && line.Points().size() > most)
            return Envelope(xs.first(count), ys.first(count), scale, columns,
                            most / kMostPerColumn);
    }
    if (in_run)
        line.Append(run);
    return std::move(line.Points());
}

PointDensity::PointDensity(std::span<const double> xs, const AxisScale& axis, double columns)
    : m_left(std::min(axis.from, axis.to)),
      m_columns(columns),
      m_before(static_cast<size_t>(
                   std::clamp(std::abs(axis.to - axis.from) * columns, 0.0, kMostColumns)) +
               2) {
    const double factor = axis.PixelsPerUnit() * columns;
    const double offset = (axis.from - m_left) * columns - axis.low * factor;
    const auto width = static_cast<double>(m_before.size() - 1);
    for (const double x : xs) {
        const double column = offset + x * factor;
        // Written so that a place that is not finite is passed over.
        if (column >= 0.0 && column < width)
            ++m_before[static_cast<size_t>(column) + 1];
    }
    std::partial_sum(m_before.begin(), m_before.end(), m_before.begin());
}

bool PointDensity::IsDense(double pixel) const {
    const auto width = static_cast<double>(m_before.size() - 1);
    const double column = (pixel - m_left) * m_columns;
    const auto from = static_cast<size_t>(std::clamp(column - kDensityReach, 0.0, width));
    const auto to = static_cast<size_t>(std::clamp(column + kDensityReach + 1.0, 0.0, width));
    return m_before[to] - m_before[from] > to - from;
}
