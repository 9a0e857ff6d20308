#include "dialog/DialogTemplate.h"

#include "grid/GridMetrics.h"

#include <QPoint>
#include <QSize>

#include <algorithm>

namespace {

// Rounded to the nearest pixel without leaving integers.
constexpr int Across(int units) {
    return (units * 3 + 1) / 2;
}

constexpr int Down(int units) {
    return (units * 13 + 4) / 8;
}

constexpr int kMostRowsWithoutScrollBar = 12;

}  // namespace

QRect PixelRect(const std::array<int, 4>& place) {
    const auto [x, y, width, height] = place;
    return {QPoint(Across(x), Down(y)), PixelSize({width, height})};
}

QSize PixelSize(const std::array<int, 2>& size) {
    return {Across(size[0]), Down(size[1])};
}

QRect PointGridRect(int rows, int extra_height) {
    constexpr int kTop = 65;
    constexpr int kLargest = kMostRowsWithoutScrollBar * kGridRowHeight + kGridHeaderHeight;
    const int shown = std::min(rows, kMostRowsWithoutScrollBar + extra_height / kGridRowHeight + 1);
    const int height =
        std::min(shown * kGridRowHeight + kGridHeaderHeight, kLargest + extra_height);
    if (rows <= kMostRowsWithoutScrollBar)
        return {456, kTop, 146, height};
    return {448, kTop, 161, height};
}

QSize ProfileGridSize(int columns_width, int rows, int header_height) {
    const int shown = std::min(rows, kMostRowsWithoutScrollBar);
    return PixelRect(kMainDialog[0].place)
        .size()
        .expandedTo({columns_width, shown * kGridRowHeight + header_height});
}
