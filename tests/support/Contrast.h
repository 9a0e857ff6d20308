#pragma once

#include <QRgb>

#include <algorithm>
#include <cmath>

/// Relative luminance of a colour, 0 black to 1 white.
inline double Luminance(QRgb colour) {
    const auto linear = [](int part) {
        const double value = part / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

/// Contrast ratio of two colours, between 1 and 21.
inline double Contrast(QRgb one, QRgb other) {
    const auto [low, high] = std::minmax({Luminance(one), Luminance(other)});
    return (high + 0.05) / (low + 0.05);
}
