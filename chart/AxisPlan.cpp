// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/AxisPlan.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

// Bounds of what an axis can show. Data beyond them are clipped.
constexpr double kLargest = 1e200;
constexpr double kSmallestExtent = 1e-200;

// In a range narrower than this share of its values labels cannot be told apart.
constexpr double kNarrowest = 1e-9;

// Labels from here on are written with an exponent.
constexpr double kLongestWhole = 1e9;

// Part of the extent that limits close to the data leave free, so that a marker clears the axis.
constexpr double kCloseMargin = 0.025;

// Part of a single value that the axis shows on each of its sides.
constexpr double kSingleValueRoom = 0.1;

// Pixels between labels.
constexpr double kValueLabelDistance = 36.0;
constexpr double kTimeLabelDistance = 60.0;

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

// A limit that lies on a step stays there in spite of rounding errors. These are relative to the
// quotient, so a value far below one step is none.
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

// The data with the free space around them that the scale asks for.
AxisPlan WidenedRange(const ChartScale& scale, const AxisNeeds& needs) {
    double low = std::clamp(needs.low, -kLargest, kLargest);
    double high = std::clamp(needs.high, -kLargest, kLargest);
    const double size = std::max(std::abs(low), std::abs(high));
    const double least_extent = std::max(size * kNarrowest, kSmallestExtent);
    if (high - low < least_extent) {
        // One value only: it stands in the middle of a range that fits its size.
        const double half =
            std::max(scale.interval, size > kSmallestExtent ? size * kSingleValueRoom : 1.0);
        low -= half;
        high += half;
    }
    if (scale.headroom == ScaleHeadroom::Kept) {
        // Data above zero need no room below zero. Above the largest value there is always room
        // to drag it upward.
        const double room = (high - low) * needs.headroom / 100.0;
        low = low >= 0.0 ? std::max(low - room, 0.0) : low - room;
        high += room;
    }
    if (scale.limits == ScaleLimits::CloseToData) {
        const double margin = (high - low) * kCloseMargin;
        low -= margin;
        high += margin;
    }
    return {.low = low, .high = high};
}

// The scale's own interval, or the multiple of it that gives at most `most` labels.
double FixedStep(const ChartScale& scale, const AxisPlan& range, int most) {
    const auto labels = [&](double step) {
        return scale.limits == ScaleLimits::CloseToData
                   ? LabelCount(range.low, range.high, step)
                   : LabelCount(StepsBelow(range.low, step) * step,
                                StepsAbove(range.high, step) * step, step);
    };
    double step = scale.interval;
    for (double power = 1.0; labels(step) > most; power *= 10.0) {
        for (double factor : {2.0, 5.0, 10.0}) {
            step = scale.interval * power * factor;
            if (labels(step) <= most)
                break;
        }
    }
    return step;
}

int LabelDigits(const AxisPlan& plan) {
    const double largest = std::max(std::abs(plan.low), std::abs(plan.high));
    const double whole_digits =
        largest < kLongestWhole ? std::floor(std::log10(largest)) + 1.0 : 0.0;
    const double distinct_digits = std::ceil(std::log10(largest / plan.step)) + 2.0;
    return static_cast<int>(std::clamp(std::max(whole_digits, distinct_digits), 6.0, 15.0));
}

// Of the items and of what would become of them.
std::optional<DataBounds> BoundsOf(const CDocControl& chart) {
    const std::optional<DataBounds> items = chart.items.Bounds();
    const std::optional<DataBounds> preview = chart.preview.Bounds();
    if (!items || !preview)
        return items ? items : preview;
    return DataBounds{
        std::min(items->x_low, preview->x_low), std::max(items->x_high, preview->x_high),
        std::min(items->y_low, preview->y_low), std::max(items->y_high, preview->y_high)};
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

AxisPlan PlanAxis(const ChartScale& scale, const AxisNeeds& needs) {
    AxisPlan plan = WidenedRange(scale, needs);
    plan.step = scale.interval > 0.0
                    ? FixedStep(scale, plan, std::max(needs.max_labels, 2))
                    : NiceStep((plan.high - plan.low) / std::max(needs.wanted_labels, 1));
    if (scale.limits == ScaleLimits::WholeIntervals) {
        plan.low = StepsBelow(plan.low, plan.step) * plan.step;
        plan.high = StepsAbove(plan.high, plan.step) * plan.step;
    }
    plan.digits = LabelDigits(plan);
    return plan;
}

AxisPlan PlanItemAxis(int count) {
    return {-0.5, std::max(count, 1) - 0.5, 1.0, 6, 1.0};
}

AxisPlan PlanPart(const AxisPlan& whole, double low, double high) {
    AxisPlan part = {.low = low, .high = high, .least_step = whole.least_step};
    part.step =
        std::max(NiceStep(whole.step * (high - low) / (whole.high - whole.low)), whole.least_step);
    part.digits = LabelDigits(part);
    return part;
}

AxisPlans PlanAxes(const CDocControl& chart, QSize plot, double label_height) {
    const bool bars = chart.display.form == DisplayForm::Bars;
    DataBounds bounds = BoundsOf(chart).value_or(DataBounds{0.0, 1.0, 0.0, 1.0});
    if (bars) {
        bounds.y_low = std::min(bounds.y_low, 0.0);
        bounds.y_high = std::max(bounds.y_high, 0.0);
        if (bounds.y_low == bounds.y_high)
            bounds.y_high = std::max(chart.value_scale.interval, 1.0);
    }
    const QSize room = plot - kBesideAxes;
    const auto fitting = [](double pixels, double distance, int most) {
        return std::clamp(static_cast<int>(pixels / distance), 2, most);
    };
    AxisPlans plans;
    plans.values =
        PlanAxis(chart.value_scale,
                 {.low = bounds.y_low,
                  .high = bounds.y_high,
                  .headroom = chart.display.headroom,
                  .wanted_labels = fitting(room.height(), kValueLabelDistance, kMaxLabels / 2),
                  .max_labels = fitting(room.height(), label_height, kMaxLabels)});
    plans.items =
        bars ? PlanItemAxis(chart.items.Count())
             : PlanAxis(chart.index_scale, {.low = bounds.x_low,
                                            .high = bounds.x_high,
                                            .headroom = chart.display.headroom,
                                            .wanted_labels = fitting(
                                                room.width(), kTimeLabelDistance, kMaxLabels / 2)});
    return plans;
}
