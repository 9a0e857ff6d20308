// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ColourContrast.h"
#include "base/QtColour.h"

/// Contrast ratio of two pixels, between 1 and 21.
inline double Contrast(QRgb one, QRgb other) {
    return Contrast(ToColour(QColor(one)), ToColour(QColor(other)));
}
