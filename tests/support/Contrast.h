#pragma once

#include "chart/ColourContrast.h"

#include <QRgb>

/// Contrast ratio of two pixels, between 1 and 21.
inline double Contrast(QRgb one, QRgb other) {
    const auto colour = [](QRgb pixel) {
        const auto part = [](int value) { return static_cast<std::uint8_t>(value); };
        return ChartColour{part(qRed(pixel)), part(qGreen(pixel)), part(qBlue(pixel))};
    };
    return Contrast(colour(one), colour(other));
}
