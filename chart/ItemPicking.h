// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/CDocControl.h"
#include "chart/PlotScale.h"

#include <QPointF>

#include <optional>

/// Width of a bar in parts of the room between two items.
constexpr double kBarWidth = 0.72;

/// Pixels around a point, or above and below the end of a bar, that still belong to it.
constexpr double kHitDistance = 6.0;

/// The item under `position` (pixels). Bars: anywhere between axis and end. Points: the nearest; of
/// equally near ones the first.
std::optional<int> HitItem(const CDocControl& chart, const PlotScale& scale, QPointF position);
