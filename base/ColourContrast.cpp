// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ColourContrast.h"

#include <algorithm>
#include <cmath>

namespace {

double Linear(int part) {
    const double value = part / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

// Relative luminance, 0 black to 1 white.
double Luminance(Colour colour) {
    return 0.2126 * Linear(colour.red) + 0.7152 * Linear(colour.green) +
           0.0722 * Linear(colour.blue);
}

// Mixes two colours: share 0 gives `from`, 255 gives `to`.
Colour Between(Colour from, Colour to, int share) {
    const auto part = [share](int a, int b) {
        return static_cast<std::uint8_t>(a + (b - a) * share / 255);
    };
    return {part(from.red, to.red), part(from.green, to.green), part(from.blue, to.blue)};
}

// The first mix on the way from one colour to another that is visible; the end if none is.
Colour FirstLegible(Colour background, Colour from, Colour to) {
    int share = 0;
    while (share < 255 && Contrast(background, Between(from, to, share)) < kLegibleContrast)
        ++share;
    return Between(from, to, share);
}

}  // namespace

double Contrast(Colour one, Colour other) {
    const auto [low, high] = std::minmax({Luminance(one), Luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

bool IsDark(Colour background) {
    return Contrast(background, {255, 255, 255}) > Contrast(background, {0, 0, 0});
}

Colour LegibleOn(Colour background, Colour colour) {
    // Mixing with black or white keeps the hue.
    return FirstLegible(background, colour,
                        IsDark(background) ? Colour{255, 255, 255} : Colour{0, 0, 0});
}

Colour GridLineOn(Colour background, Colour colour) {
    return IsDark(background) ? FirstLegible(background, background, LegibleOn(background, colour))
                              : colour;
}
