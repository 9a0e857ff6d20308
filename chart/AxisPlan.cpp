// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/AxisPlan.h"

#include <algorithm>
#include <cmath>

namespace {

// Bounds of what an axis can show. Data beyond them are clipped.
constexpr double kLargest = 1e200;
constexpr double kSmallestExtent = 1e-200;

// Ranges narrower than this part of their values have no room for readable labels.
constexpr double kNarrowest = 1e-9;

// Labels from here on are written with an exponent.
constexpr double kLongestWhole = 1e9;

// Part of the extent that limits close to the data leave free, so that a marker clears the axis.
constexpr double kCloseMargin = 0.025;

// Part of a single value that the axis shows on each of its sides.
constexpr double kSingleValueRoom = 0.1;

constexpr double kRoundingNoise = 1e-12;

constexpr double kNiceFactors[] = {1.0, 2.0, 5.0, 10.0};

// The smallest of 1, 2 and 5 times a power of ten that is not below `least`.
double NiceStep(double least) {
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (double factor : kNiceFactors) {
        if (factor * power >= least * (1.0 - 1e-9))
            return factor * power;
    }
    return 10.0 * power;
}

// Rounding noise does not widen a limit that stands on a step already. The noise of a division is
// a part of its result: a value far below one step is no noise.
double StepsBelow(double value, double step) {
    const double steps = value / step;
    return std::floor(steps + std::abs(steps) * kRoundingNoise);
}

double StepsAbove(double value, double step) {
    return -StepsBelow(-value, step);
}

int LabelCount(double low, double high, double step) {
    return static_cast<int>(std::min(StepsBelow(high, step) - StepsAbove(low, step) + 1.0, 1e6));
}

}  // namespace

std::vector<double> AxisPlan::Ticks() const {
    std::vector<double> ticks;
    const double last = StepsBelow(high, step);
    for (double i = StepsAbove(low, step); i <= last; i += 1.0)
        ticks.push_back(i * step);
    return ticks;
}

QString AxisPlan::LabelText(double value) const {
    return QString::number(value + 0.0, 'g', digits);
}

AxisPlan PlanAxis(const ChartScale& scale, double low, double high, double headroom,
                  int wanted_labels, int most_labels) {
    low = std::clamp(low, -kLargest, kLargest);
    high = std::clamp(high, -kLargest, kLargest);
    const double size = std::max(std::abs(low), std::abs(high));
    const double least_extent = std::max(size * kNarrowest, kSmallestExtent);
    if (high - low < least_extent) {
        // One value only: it stands in the middle of a range that fits its size.
        const double half =
            std::max(scale.interval, size > kSmallestExtent ? size * kSingleValueRoom : 1.0);
        low -= half;
        high += half;
    }
    if (scale.headroom != 0) {
        // Data above zero need no room below it. Above the largest value there always is room to
        // drag it into.
        const double room = (high - low) * headroom / 100.0;
        low = low >= 0.0 ? std::max(low - room, 0.0) : low - room;
        high += room;
    }
    if (scale.limits != 0) {
        const double margin = (high - low) * kCloseMargin;
        low -= margin;
        high += margin;
    }

    AxisPlan plan;
    plan.step = NiceStep((high - low) / std::max(wanted_labels, 1));
    if (scale.interval > 0.0) {
        plan.step = scale.interval;
        const auto widened = [&](double step) {
            return scale.limits != 0 ? LabelCount(low, high, step)
                                     : LabelCount(StepsBelow(low, step) * step,
                                                  StepsAbove(high, step) * step, step);
        };
        for (double power = 1.0; widened(plan.step) > std::max(most_labels, 2); power *= 10.0) {
            for (double factor : {2.0, 5.0, 10.0}) {
                plan.step = scale.interval * power * factor;
                if (widened(plan.step) <= std::max(most_labels, 2))
                    break;
            }
        }
    }
    plan.low = scale.limits != 0 ? low : StepsBelow(low, plan.step) * plan.step;
    plan.high = scale.limits != 0 ? high : StepsAbove(high, plan.step) * plan.step;
    const double largest = std::max(std::abs(plan.low), std::abs(plan.high));
    const double whole_digits =
        largest < kLongestWhole ? std::floor(std::log10(largest)) + 1.0 : 0.0;
    const double distinct_digits = std::ceil(std::log10(largest / plan.step)) + 2.0;
    plan.digits = static_cast<int>(std::clamp(std::max(whole_digits, distinct_digits), 6.0, 15.0));
    return plan;
}

AxisPlan PlanItemAxis(int count) {
    return {-0.5, std::max(count, 1) - 0.5, 1.0, 6};
}
