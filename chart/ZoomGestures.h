// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ChartZoom.h"

#include <QList>
#include <QPoint>
#include <QPointF>

/// What the user's acts make of a zoom. Values are zoomed in charts of points only: bars stand on
/// the zero line. Places are in axis units, indices count from 0.

/// A notch of the wheel, or a step of the keyboard, zooms by this factor.
constexpr double kZoomFactor = 1.25;

/// Makes the part of an axis larger (`notches` above 0) or smaller about `place`.
void ZoomByNotches(ChartZoom& zoom, const CDocControl& chart, ChartAxis axis, QPointF place,
                   double notches);

/// Moves what stands at `from` to `to`.
void PanWith(ChartZoom& zoom, QPointF from, QPointF to);

/// Shows the items `indices`; nothing changes where none of them is drawn.
void ShowItems(ChartZoom& zoom, const CDocControl& chart, const QList<int>& indices);

/// Pans to an item that is out of view.
void BringIntoView(ChartZoom& zoom, const CDocControl& chart, int index);
