// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Colour.h"

/// Contrast that lines and marks need so that everybody can tell them from what is behind them.
inline constexpr double kLegibleContrast = 3.0;

/// Contrast ratio of two colours, between 1 and 21.
double Contrast(Colour one, Colour other);

/// Whether light colours stand out from it better than dark ones.
bool IsDark(Colour background);

/// `colour` itself if it stands out from `background`, else the nearest lighter or darker colour of
/// the same hue that does.
Colour LegibleOn(Colour background, Colour colour);

/// The colour of a grid line that is `colour` on light backgrounds. Light lines would be the
/// brightest thing on a dark one, dark lines could not be seen: both just stand out there.
Colour GridLineOn(Colour background, Colour colour);
