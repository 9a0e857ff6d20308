// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ChartZoom.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

// Items that the smallest part shows.
constexpr size_t kLeastItems = 3;

// The smallest part of the fitted range, where the items allow it, and of the size of the numbers
// on the axis: neighbouring labels of less could not be told apart.
constexpr double kLeastPart = 1e-7;
constexpr double kLeastOfSize = 1e-9;

// Parts of the visible range: free beside shown items, and beside an item brought into view.
constexpr double kRoomBesideShown = 0.04;
constexpr double kRoomInView = 0.1;

// A part that is all but the whole axis is the whole: zooming in and out again ends there.
constexpr double kWhole = 1.0 - 1e-9;

double PlaceOf(const ChartItems& items, int index) {
    return items.GroupCount() == 1 ? index : items.Value(index, 0);
}

// The extent that a range needs to show three items (or all, where there are fewer) while `place`
// stays at `share` of it.
double ExtentForItems(const ChartItems& items, AxisRange wanted, double place) {
    const double share = (place - wanted.low) / wanted.Extent();
    std::array<double, kLeastItems> least;
    least.fill(std::numeric_limits<double>::infinity());
    for (int i = 0; i < items.Count() && least.back() > wanted.Extent(); ++i) {
        const double way = PlaceOf(items, i) - place;
        const double extent = way == 0.0 ? 0.0 : way < 0.0 ? -way / share : way / (1.0 - share);
        // Written so that a place that is not finite is passed over.
        if (extent < least.back()) {
            least.back() = extent;
            std::sort(least.begin(), least.end());
        }
    }
    return std::max(least[kLeastItems - 1], wanted.Extent());
}

}  // namespace

void ChartZoom::SetFitted(const AxisPlans& plans) {
    m_fitted = plans;
    for (const ChartAxis axis : {ChartAxis::Values, ChartAxis::Items}) {
        if (IsZoomed(axis))
            SetPart(axis, Range(axis));
    }
}

AxisRange ChartZoom::Whole(ChartAxis axis) const {
    const AxisPlan& plan = axis == ChartAxis::Items ? m_fitted.items : m_fitted.values;
    return {plan.low, plan.high};
}

AxisRange ChartZoom::Range(ChartAxis axis) const {
    return Part(axis).value_or(Whole(axis));
}

AxisPlans ChartZoom::Visible() const {
    AxisPlans plans = m_fitted;
    if (m_items)
        plans.items = PlanPart(m_fitted.items, m_items->low, m_items->high);
    if (m_values)
        plans.values = PlanPart(m_fitted.values, m_values->low, m_values->high);
    return plans;
}

void ChartZoom::Fit() {
    m_items.reset();
    m_values.reset();
}

double ChartZoom::LeastExtent(ChartAxis axis) const {
    const AxisRange whole = Whole(axis);
    const double of_items =
        axis == ChartAxis::Items ? m_fitted.items.least_step * kLeastItems : 0.0;
    return std::max({whole.Extent() * kLeastPart, std::abs(whole.low) * kLeastOfSize,
                     std::abs(whole.high) * kLeastOfSize, of_items});
}

void ChartZoom::SetPart(ChartAxis axis, AxisRange part) {
    const AxisRange whole = Whole(axis);
    std::optional<AxisRange>& own = axis == ChartAxis::Items ? m_items : m_values;
    // Written so that a part that is no number is the whole.
    if (!(part.Extent() < whole.Extent() * kWhole)) {
        own.reset();
        return;
    }
    const double low = std::clamp(part.low, whole.low, whole.high - part.Extent());
    own = {low, low + part.Extent()};
}

void ChartZoom::ZoomAbout(ChartAxis axis, double place, double factor, const ChartItems& items) {
    const AxisRange now = Range(axis);
    const double about = std::clamp(place, now.low, now.high);
    const double share = (about - now.low) / now.Extent();
    const double wanted = std::max(now.Extent() / factor, LeastExtent(axis));
    double extent = wanted;
    if (axis == ChartAxis::Items && factor > 1.0)
        extent = std::min(
            ExtentForItems(items, {about - share * wanted, about + (1.0 - share) * wanted}, about),
            now.Extent());
    SetPart(axis, {about - share * extent, about + (1.0 - share) * extent});
}

void ChartZoom::Pan(ChartAxis axis, double distance) {
    const AxisRange now = Range(axis);
    SetPart(axis, {now.low + distance, now.high + distance});
}

void ChartZoom::Show(double low, double high, const ChartItems& items) {
    const double middle = (low + high) / 2.0;
    const double half = std::max(high - low, LeastExtent(ChartAxis::Items)) / 2.0;
    const double extent = ExtentForItems(items, {middle - half, middle + half}, middle) *
                          (1.0 + 2.0 * kRoomBesideShown);
    m_values.reset();
    SetPart(ChartAxis::Items, {middle - extent / 2.0, middle + extent / 2.0});
}

// The data may have grown since they were fitted last: what SetFitted finds is not known yet.
void ChartZoom::BringIntoView(ChartAxis axis, double place) {
    std::optional<AxisRange>& part = axis == ChartAxis::Items ? m_items : m_values;
    if (!part || !std::isfinite(place) || (place >= part->low && place <= part->high))
        return;
    const double room = part->Extent() * kRoomInView;
    const double distance =
        place < part->low ? place - room - part->low : place + room - part->high;
    part = {part->low + distance, part->high + distance};
}
