// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Colour.h"

#include <QColor>

inline QColor ToQColor(Colour colour) {
    return {colour.red, colour.green, colour.blue};
}

inline Colour ToColour(const QColor& colour) {
    const auto part = [](int value) { return static_cast<std::uint8_t>(value); };
    return {part(colour.red()), part(colour.green()), part(colour.blue())};
}
