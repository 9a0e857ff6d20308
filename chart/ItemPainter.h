// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/CDocControl.h"
#include "chart/PlotScale.h"

class QPainter;

/// Draws the items of `chart`: bars, or a line with markers. Markers that would overlap the
/// one before are left out, except those of highlighted items. The line is thin where points stand
/// closer than pixels. A bar without height shows as a flat one beside the zero line. Faces and
/// markers have exactly the colours of their style; the line has its own where it stands out from
/// `background`. The preview of a change is a pale line or pale outlines over them. `device_pixels`
/// is the number of device pixels per pixel unit.
void PaintItems(QPainter& painter, const CDocControl& chart, const PlotScale& scale,
                Colour background, double device_pixels);
