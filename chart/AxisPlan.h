// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/CDocControl.h"

#include <QString>

#include <vector>

/// What an axis shows: its range and where its labels stand.
struct AxisPlan {
    double low = 0.0;
    double high = 1.0;
    double step = 1.0;  ///< between labels
    int digits = 6;     ///< significant digits of a label, enough to tell neighbours apart

    /// The places of the labels, in order.
    std::vector<double> Ticks() const;

    /// Always with "." as the separator.
    QString LabelText(double value) const;
};

/// Largest number of labels on an axis, however large it is.
constexpr int kMaxLabels = 20;

/// Plans an axis of numbers over data from `low` to `high` (finite, in order): it covers them and
/// has an extent. `headroom` is the free space beyond the data in per cent of their extent; there
/// is always some above them. A fixed interval of the scale is
/// multiplied by a whole number where it would give more than `most_labels` labels (2 to
/// kMaxLabels), an automatic one is chosen for about `wanted_labels`.
AxisPlan PlanAxis(const ChartScale& scale, double low, double high, double headroom,
                  int wanted_labels, int most_labels);

/// Plans the axis of `count` items that stand on their indices: half an interval free at both ends.
AxisPlan PlanItemAxis(int count);
