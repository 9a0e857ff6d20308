// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/CDocControl.h"

#include <QSize>
#include <QString>

#include <vector>

/// What an axis shows: its range and where its labels stand.
struct AxisPlan {
    double low = 0.0;
    double high = 1.0;
    double step = 1.0;        ///< between labels
    int digits = 6;           ///< significant digits of a label, enough to tell neighbours apart
    double least_step = 0.0;  ///< between labels of any part of the axis

    /// The places of the labels, in order.
    std::vector<double> Ticks() const;

    /// Always with "." as the separator.
    QString LabelText(double value) const;
};

/// Largest number of labels on an axis, however large it is.
constexpr int kMaxLabels = 20;

/// What an axis of numbers has to show, and the labels that it has room for.
struct AxisNeeds {
    double low = 0.0;  ///< of the data; finite, not above `high`
    double high = 1.0;
    double headroom = 0.0;  ///< free space beyond the data, per cent of their extent
    int wanted_labels = 2;  ///< about so many, where the interval is automatic
    int max_labels = kMaxLabels;
};

/// Plans an axis of numbers that covers the data. It always has an extent and some room above the
/// data. A fixed interval of the scale is multiplied by a whole number where it would give more
/// than `max_labels` labels.
AxisPlan PlanAxis(const ChartScale& scale, const AxisNeeds& needs);

/// Plans the axis of `count` items that stand on their indices: half an interval free at both ends.
AxisPlan PlanItemAxis(int count);

/// Plans the part of an axis from `low` to `high`: as densely labelled as `whole`, or less.
AxisPlan PlanPart(const AxisPlan& whole, double low, double high);

/// Both axes of a chart.
struct AxisPlans {
    AxisPlan values;
    AxisPlan items;
};

/// Estimated room of labels and titles beside and below the axes, in pixels.
constexpr QSize kBesideAxes(70, 60);

/// Plans the axes of `chart` for a plot of that size, title and labels included, whose labels are
/// `label_height` pixels high.
AxisPlans PlanAxes(const CDocControl& chart, QSize plot, double label_height);
