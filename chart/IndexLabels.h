// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/AxisPlan.h"

#include <QFont>
#include <QMargins>

/// Pixels around the axes that nothing but labels stands in.
constexpr int kPlotMargin = 6;

/// The angle of the labels of the lower axis, and the room that they need beside the axes.
struct IndexLabels {
    double angle = 0.0;  ///< degrees, clockwise, from -90 to 90; 0 side by side
    QMargins margins;    ///< pixels
};

/// Labels of `plan` on an axis `width` pixels long stand side by side if they fit, else they are
/// turned.
IndexLabels PlaceIndexLabels(const CDocControl& chart, const AxisPlan& plan, int width,
                             const QFont& font);
