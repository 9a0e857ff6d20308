// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/PointSeries.h"

#include "base/EnglishAtof.h"
#include "base/NumberText.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <tuple>
#include <utility>
#include <vector>

namespace {

bool FieldsAreRight(const SeriesPlan& plan) {
    const bool periodic = plan.shape == SeriesShape::Sine || plan.shape == SeriesShape::Pulse;
    return std::isfinite(plan.start) && std::isfinite(plan.step) && plan.step > 0.0 &&
           plan.count >= SeriesPlan::kMinCount && plan.count <= SeriesPlan::kMaxCount &&
           (!periodic || (std::isfinite(plan.period) && plan.period > 0.0)) &&
           (plan.shape != SeriesShape::Pulse || (plan.share >= 0.0 && plan.share <= 1.0));
}

// As of any number that is typed.
bool IsStorable(double number) {
    return std::abs(number) <= double{std::numeric_limits<float>::max()};
}

// The value of a function at times that rise from call to call.
class Interpolation {
public:
    explicit Interpolation(PointNumbers function)
        : m_times(std::move(function.times)), m_values(std::move(function.values)) {
        if (!std::is_sorted(m_times.begin(), m_times.end()))
            Sort();
    }

    double At(double time) {
        while (m_next < m_times.size() && m_times[m_next] <= time)
            ++m_next;
        if (m_next == 0)
            return m_values.front();
        if (m_next == m_times.size())
            return m_values.back();
        const double from = m_times[m_next - 1];
        const double share = (time - from) / (m_times[m_next] - from);
        return std::lerp(m_values[m_next - 1], m_values[m_next], share);
    }

private:
    // Points with equal times keep their order.
    void Sort() {
        std::vector<std::pair<double, double>> points;
        for (size_t i = 0; i < m_times.size(); ++i)
            points.emplace_back(m_times[i], m_values[i]);
        std::stable_sort(points.begin(), points.end(), [](const auto& one, const auto& other) {
            return one.first < other.first;
        });
        for (size_t i = 0; i < m_times.size(); ++i)
            std::tie(m_times[i], m_values[i]) = points[i];
    }

    std::vector<double> m_times;
    std::vector<double> m_values;
    size_t m_next = 0;  // the first point after the time of the last call
};

// Times are sums of steps, so a period may begin a rounding error early.
bool InPulse(const SeriesPlan& plan, double time) {
    constexpr double kTolerance = 1e-9;
    const double periods = time / plan.period;
    const double share = periods - std::floor(periods + kTolerance);
    return share < plan.share - kTolerance || plan.share == 1.0;
}

// The sine of a multiple of pi is a rounding error away from 0; the result is exactly 0 there.
double SineAt(const SeriesPlan& plan, double time) {
    const double angle =
        2.0 * std::numbers::pi * time / plan.period + plan.phase * std::numbers::pi / 180.0;
    const double value = plan.a + plan.b * std::sin(angle);
    const bool rounding_error = std::abs(value) < 1e-12 * (std::abs(plan.a) + std::abs(plan.b));
    return rounding_error ? 0.0 : value;
}

double ValueAt(const SeriesPlan& plan, int point, double time) {
    switch (plan.shape) {
        case SeriesShape::Linear:
            return (plan.a * (plan.count - 1 - point) + plan.b * point) / (plan.count - 1);
        case SeriesShape::Sine: return SineAt(plan, time);
        case SeriesShape::Pulse: return InPulse(plan, time) ? plan.b : plan.a;
        default: return plan.a;
    }
}

}  // namespace

std::optional<PointNumbers> SeriesNumbers(const SeriesPlan& plan, PointNumbers function) {
    const bool interpolated = plan.shape == SeriesShape::Interpolated;
    if (!FieldsAreRight(plan) || (interpolated && function.times.empty()))
        return std::nullopt;
    Interpolation interpolation(std::move(function));
    PointNumbers points;
    points.times.reserve(static_cast<size_t>(plan.count));
    points.values.reserve(static_cast<size_t>(plan.count));
    for (int i = 0; i < plan.count; ++i) {
        const double time = plan.start + i * plan.step;
        const double value = interpolated ? interpolation.At(time) : ValueAt(plan, i, time);
        if (!IsStorable(time) || !IsStorable(value))
            return std::nullopt;
        points.times.push_back(time);
        points.values.push_back(value);
    }
    return points;
}

std::optional<PointTexts> MakeSeries(const SeriesPlan& plan, const PointTexts& function) {
    const auto numbers = SeriesNumbers(
        plan, plan.shape == SeriesShape::Interpolated
                  ? PointNumbers{ParseNumbers(function.times), ParseNumbers(function.values)}
                  : PointNumbers());
    if (!numbers)
        return std::nullopt;
    PointTexts points;
    points.times.reserve(plan.count);
    points.values.reserve(plan.count);
    for (const double time : numbers->times) {
        const QString text = NumberText13(time);
        if (!points.times.isEmpty() && points.times.last() == text)
            return std::nullopt;
        points.times.append(text);
    }
    for (const double value : numbers->values)
        points.values.append(NumberText13(value));
    return points;
}

PointNumbers MergePoints(const PointNumbers& present, const PointNumbers& added) {
    PointNumbers all;
    all.times.reserve(present.times.size() + added.times.size());
    all.values.reserve(all.times.capacity());
    size_t next = 0;
    const auto take_until = [&](double time) {
        for (; next < present.times.size() && !(present.times[next] > time); ++next) {
            all.times.push_back(present.times[next]);
            all.values.push_back(present.values[next]);
        }
    };
    for (size_t i = 0; i < added.times.size(); ++i) {
        take_until(added.times[i]);
        all.times.push_back(added.times[i]);
        all.values.push_back(added.values[i]);
    }
    take_until(std::numeric_limits<double>::infinity());
    return all;
}
