// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ReadOut.h"

#include "base/ShownText.h"
#include "chart/ItemPicking.h"
#include "profiles/ProfileTable.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Significant digits of a number that is read out; whole numbers keep all of theirs.
constexpr int kDigits = 6;

// A line of more points whose times do not rise is drawn as the band that it covers, and has no
// value at a time.
constexpr int kMaxUnordered = 50'000;

// Numbers from here on are written with an exponent.
constexpr double kLongestWhole = 1e9;

QString General(double value) {
    const double size = std::abs(value);
    return size >= 1e5 && size < kLongestWhole ? QString::number(value, 'f', 0)
                                               : QString::number(value + 0.0, 'g', kDigits);
}

// Without zeros at its end.
QString Rounded(double value, int decimals) {
    const double size = std::abs(value);
    if (decimals > kDigits || size >= kLongestWhole)
        return General(value);
    const int whole = size < 1.0 ? 0 : static_cast<int>(std::floor(std::log10(size))) + 1;
    const int shown = std::max(std::min(decimals, kDigits - whole), 0);
    const double power = std::pow(10.0, shown);
    const double rounded = std::round(value * power) / power;
    return rounded == 0.0 ? u"0"_s : General(rounded);
}

// Of a number on that axis, a tenth of a pixel exactly.
QString OnAxis(const AxisScale& axis, double value) {
    const double decimals = std::ceil(std::log10(std::abs(axis.PixelsPerUnit()))) + 1.0;
    // Written so that no number of decimals is as good as many.
    return Rounded(value,
                   decimals <= kDigits ? std::max(static_cast<int>(decimals), 0) : kDigits + 1);
}

QString Range(double low, double high) {
    return low == high ? General(low) : General(low) + u" ... "_s + General(high);
}

QString WithUnit(const QString& number, QStringView unit) {
    return unit.isEmpty() ? number : number + u' ' + unit.toString();
}

// The value of the line at `x` on the way from `a` to `b`.
double OnTheWay(QPointF a, QPointF b, double x, LineForm form) {
    if (x == b.x())
        return b.y();
    return form == LineForm::Steps || x == a.x()
               ? a.y()
               : std::lerp(a.y(), b.y(), (x - a.x()) / (b.x() - a.x()));
}

// Calls `way(a, b)` for each stretch of the line, which passes over what is not drawn.
template <typename Way>
void ForEachStretch(const ChartItems& items, Way way) {
    const std::span<const double> xs = items.Group(0);
    const std::span<const double> ys = items.Group(1);
    QPointF former;
    bool any = false;
    for (size_t i = 0; i < xs.size(); ++i) {
        if (!IsFinitePlace(xs[i], ys[i]))
            continue;
        const QPointF place(xs[i], ys[i]);
        if (any)
            way(former, place);
        former = place;
        any = true;
    }
}

std::optional<int> DrawnFrom(const ChartItems& items, int index, int step) {
    for (; index >= 0 && index < items.Count(); index += step) {
        if (items.IsDrawn(index))
            return index;
    }
    return {};
}

}  // namespace

void ReadOut::Forget() {
    m_rises.reset();
    m_statistics.reset();
}

bool ReadOut::Rises() {
    if (!m_rises) {
        const std::span<const double> times = m_chart->items.Group(0);
        // False too where a time is no number.
        m_rises = std::adjacent_find(times.begin(), times.end(),
                                     [](double a, double b) { return !(a <= b); }) == times.end();
    }
    return *m_rises;
}

const ReadOut::Statistics& ReadOut::Counted() {
    const ChartItems& items = m_chart->items;
    const LineForm line = m_chart->display.line;
    if (m_statistics && m_statistics->line == line)
        return *m_statistics;
    Statistics counted;
    counted.bounds = items.Bounds();
    counted.line = line;
    double weight = 0.0;
    if (m_facts->hasTimes()) {
        ForEachStretch(items, [&](QPointF a, QPointF b) {
            const double extent = std::abs(b.x() - a.x());
            const double level = line == LineForm::Steps ? a.y() : (a.y() + b.y()) / 2.0;
            counted.sum += level * extent;
            weight += extent;
        });
    } else {
        for (int i = 0; i < items.Count(); ++i) {
            counted.sum += items.IsDrawn(i) ? items.Value(i, 0) : 0.0;
            weight += items.IsDrawn(i) ? 1.0 : 0.0;
        }
    }
    if (const double mean = counted.sum / weight; std::isfinite(mean))
        counted.mean = mean;
    m_statistics = counted;
    return *m_statistics;
}

// Where the line passes the time more than once, the value nearest to `place` counts.
std::optional<double> ReadOut::LineValue(QPointF place) {
    const ChartItems& items = m_chart->items;
    const LineForm form = m_chart->display.line;
    std::optional<double> value;
    const auto take = [&](QPointF a, QPointF b) {
        if (place.x() < std::min(a.x(), b.x()) || place.x() > std::max(a.x(), b.x()))
            return;
        const double here = OnTheWay(a, b, place.x(), form);
        if (std::isfinite(here) &&
            (!value || std::abs(here - place.y()) < std::abs(*value - place.y())))
            value = here;
    };
    if (!Rises()) {
        if (items.Count() <= kMaxUnordered)
            ForEachStretch(items, take);
        return value;
    }
    const std::span<const double> times = items.Group(0);
    const auto next =
        static_cast<int>(std::upper_bound(times.begin(), times.end(), place.x()) - times.begin());
    const std::optional<int> before = DrawnFrom(items, next - 1, -1);
    const std::optional<int> behind = DrawnFrom(items, next, 1);
    if (before && (behind || items.Value(*before, 0) == place.x()))
        take(items.Place(*before), items.Place(behind.value_or(*before)));
    return value;
}

// Where times rise it is the one under the pointer, else the nearest in time.
std::optional<int> ReadOut::NearestPoint(const PlotScale& scale, QPointF position) {
    const ChartItems& items = m_chart->items;
    const QPointF centre = scale.ToValues(position);
    const std::span<const double> times = items.Group(0);
    const std::span<const double> values = items.Group(1);
    const double x_pixels = scale.x.PixelsPerUnit();
    const double y_pixels = scale.y.PixelsPerUnit();
    // The nearest of some points, if it is nearer than `most` pixels.
    const auto nearest = [&](auto from, auto end, double most) {
        std::optional<int> found;
        double least = most * most;
        for (auto time = from; time != end; ++time) {
            const auto index = time - times.begin();
            const double dx = (*time - centre.x()) * x_pixels;
            // Both comparisons are false for a place that is not finite.
            if (!(dx * dx < least))
                continue;
            const double dy = (values[static_cast<size_t>(index)] - centre.y()) * y_pixels;
            if (dx * dx + dy * dy < least) {
                least = dx * dx + dy * dy;
                found = static_cast<int>(index);
            }
        }
        return found;
    };
    constexpr double kAnywhere = std::numeric_limits<double>::infinity();
    if (!Rises())
        return nearest(times.begin(), times.end(), kAnywhere);
    const double reach = kHitDistance / std::abs(x_pixels);
    const auto touched =
        nearest(std::lower_bound(times.begin(), times.end(), centre.x() - reach),
                std::upper_bound(times.begin(), times.end(), centre.x() + reach), kHitDistance);
    if (touched)
        return touched;
    const auto next = std::upper_bound(times.begin(), times.end(), centre.x()) - times.begin();
    const std::optional<int> before = DrawnFrom(items, static_cast<int>(next) - 1, -1);
    const std::optional<int> behind = DrawnFrom(items, static_cast<int>(next), 1);
    if (!before && !behind)
        return {};
    const bool is_before = before && (!behind || centre.x() - items.Value(*before, 0) <=
                                                     items.Value(*behind, 0) - centre.x());
    const double time = items.Value(is_before ? *before : *behind, 0);
    const auto [from, end] = std::equal_range(times.begin(), times.end(), time);
    return nearest(from, end, kAnywhere);
}

QString ReadOut::PointText(const PlotScale& scale, double time, std::optional<double> value,
                           std::optional<int> item) const {
    QStringList parts;
    if (std::isfinite(time))
        parts.append(u"t = "_s + WithUnit(OnAxis(scale.x, time), m_facts->time_unit));
    if (value)
        parts.append(u"f(t) = "_s + OnAxis(scale.y, *value));
    if (item) {
        const auto cell = [&](int column) {
            return ShownText(m_table->CellText(*item + 1, column), kMaxCellLength);
        };
        parts.append(u"point "_s + QString::number(*item + 1) + u" : "_s +
                     cell(ProfileTable::kLabelColumn) + kReadOutBar.toString() +
                     cell(ProfileTable::kValueColumn));
    }
    return parts.join(kReadOutGap);
}

QString ReadOut::BarText(int item) {
    const auto cell = [&](int column) {
        return ShownText(m_table->CellText(item + 1, column), kMaxCellLength);
    };
    QStringList parts = {cell(ProfileTable::kLabelColumn),
                         WithUnit(cell(ProfileTable::kValueColumn), m_facts->value_unit)};
    const double share = m_chart->items.Value(item, 0) / Counted().sum * 100.0;
    if (std::isfinite(share))
        parts.append(QString::number(share, 'f', 1) + u" %"_s);
    parts.append(cell(ProfileTable::kNameColumn));
    parts.removeAll(QString());
    return parts.join(kReadOutGap);
}

Reading ReadOut::At(const PlotScale& scale, QPointF position) {
    const QPointF place = scale.ToValues(position);
    if (m_facts->hasTimes())
        return {PointText(scale, place.x(), LineValue(place), NearestPoint(scale, position)),
                place.x()};
    const int last = m_chart->items.Count() - 1;
    if (last < 0)
        return {{}, place.x()};
    return Of(scale, static_cast<int>(std::lround(std::clamp(place.x(), 0.0, 1.0 * last))));
}

Reading ReadOut::Of(const PlotScale& scale, int item) {
    const QPointF place = m_chart->items.Place(item);
    if (!m_facts->hasTimes())
        return {BarText(item), place.x()};
    const bool is_drawn = m_chart->items.IsDrawn(item);
    return {PointText(scale, place.x(), is_drawn ? std::optional(place.y()) : std::nullopt, item),
            place.x()};
}

QString ReadOut::Whole(const PlotScale& scale) {
    const Statistics& counted = Counted();
    const bool has_times = m_facts->hasTimes();
    const int count = m_chart->items.Count();
    QStringList parts = {QString::number(count) + (has_times ? u" point"_s : u" valeur"_s) +
                         (count > 1 ? u"s"_s : QString())};
    if (const auto& bounds = counted.bounds) {
        if (has_times)
            parts.append(WithUnit(Range(bounds->x_low, bounds->x_high), m_facts->time_unit));
        parts.append(WithUnit(Range(bounds->y_low, bounds->y_high), m_facts->value_unit));
    }
    if (counted.mean)
        parts.append(u"moyenne "_s + OnAxis(scale.y, *counted.mean));
    return parts.join(u", "_s);
}
