// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/AxisPlan.h"
#include "chart/CDocControl.h"

#include <optional>

/// A part of an axis, in its units.
struct AxisRange {
    double low = 0.0;
    double high = 1.0;

    double Extent() const { return high - low; }
    friend bool operator==(const AxisRange&, const AxisRange&) = default;
};

/// Which parts of a chart's axes are shown: fitted plans in, visible plans out. An axis shows all
/// that was fitted until an operation asks for less; from then on its part stays where it is, and
/// inside the fitted range, whatever the data become.
class ChartZoom {
public:
    /// The plans that show the whole chart.
    void SetFitted(const AxisPlans& plans);

    const AxisPlans& Fitted() const { return m_fitted; }
    AxisPlans Visible() const;
    AxisRange Range(ChartAxis axis) const;

    /// The fitted range of an axis.
    AxisRange Whole(ChartAxis axis) const;

    bool IsZoomed() const { return m_items || m_values; }
    bool IsZoomed(ChartAxis axis) const { return Part(axis).has_value(); }

    /// Shows all of both axes.
    void Fit();

    /// Makes the part 1 / `factor` times as large; `place` keeps its pixel. On the axis of the
    /// items no part is made smaller than the one that still shows three of `items`.
    void ZoomAbout(ChartAxis axis, double place, double factor, const ChartItems& items);

    /// Moves the part of an axis by `distance`, as far as there is something to show.
    void Pan(ChartAxis axis, double distance);

    /// Shows the items from `low` to `high` with a little room on both sides, and all values.
    void Show(double low, double high, const ChartItems& items);

    /// Moves a part that does not show `place` so that it does.
    void BringIntoView(ChartAxis axis, double place);

    /// Whether both show the same.
    friend bool operator==(const ChartZoom& a, const ChartZoom& b) {
        return a.m_items == b.m_items && a.m_values == b.m_values;
    }

private:
    const std::optional<AxisRange>& Part(ChartAxis axis) const {
        return axis == ChartAxis::Items ? m_items : m_values;
    }
    void SetPart(ChartAxis axis, AxisRange part);
    double LeastExtent(ChartAxis axis) const;

    AxisPlans m_fitted;
    std::optional<AxisRange> m_items;  // nothing: all
    std::optional<AxisRange> m_values;
};
