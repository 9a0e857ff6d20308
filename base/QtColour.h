#pragma once

#include "chart/CDocControl.h"

#include <QColor>

inline QColor ToQColor(ChartColour colour) {
    return {colour.red, colour.green, colour.blue};
}

inline ChartColour ToChartColour(const QColor& colour) {
    const auto part = [](int value) { return static_cast<std::uint8_t>(value); };
    return {part(colour.red()), part(colour.green()), part(colour.blue())};
}
