// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Colour.h"

/// The contrast that lines and marks need to be visible to everybody.
inline constexpr double kLegibleContrast = 3.0;

/// Contrast ratio of two colours, between 1 and 21.
double Contrast(Colour one, Colour other);

/// True when light colours contrast better with it than dark ones.
bool IsDark(Colour background);

/// `colour` if it is visible on `background`; else the nearest lighter or darker colour of the same
/// hue that is.
Colour LegibleOn(Colour background, Colour colour);

/// The colour of a grid line that is `colour` on light backgrounds. On a dark background every line
/// gets the least contrast that is visible: light lines would be the brightest thing there, dark
/// lines would vanish.
Colour GridLineOn(Colour background, Colour colour);
