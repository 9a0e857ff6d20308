// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/DialogTemplate.h"

#include "grid/GridMetrics.h"

#include <QPoint>
#include <QSize>

#include <algorithm>

namespace {

// Rounds to the nearest pixel in integers.
constexpr int Across(int units) {
    return (units * 3 + 1) / 2;
}

constexpr int Down(int units) {
    return (units * 13 + 4) / 8;
}

constexpr int kMaxRowsWithoutScrollBar = 12;

// The line of the mean is below the grid, above the controls that moved down for it.
constexpr int kGapBelowGrid = 6;

// Controls from here on keep their distance to the right or the bottom edge of the dialog.
constexpr int kRightPart = 247;
constexpr int kBottomPart = 190;

// Pixels. The grip can be held where the gap between chart and grid is narrower.
constexpr int kLeastGrip = 6;

// The grid of a function at the dialog's starting size or, higher by whole rows, at a larger one.
QRect PointGridRect(int rows, int extra_height) {
    constexpr int kTop = 65;
    constexpr int kLargest = kMaxRowsWithoutScrollBar * kGridRowHeight + kGridHeaderHeight;
    const int shown = std::min(rows, kMaxRowsWithoutScrollBar + extra_height / kGridRowHeight + 1);
    const int height =
        std::min(shown * kGridRowHeight + kGridHeaderHeight, kLargest + extra_height);
    if (rows <= kMaxRowsWithoutScrollBar)
        return {456, kTop, 146, height};
    return {448, kTop, 161, height};
}

// The template's grid, larger where the columns, that wide together, or the rows ask for it. More
// than twelve rows are scrolled.
QSize ProfileGridSize(int columns_width, int rows, int header_height) {
    const int shown = std::min(rows, kMaxRowsWithoutScrollBar);
    return PixelRect(kMainDialog[0].place)
        .size()
        .expandedTo({columns_width, shown * kGridRowHeight + header_height});
}

// Extra size of a kind's grid beyond the template's.
QSize GridBeyondTemplate(const KindDescriptor& facts) {
    return ProfileGridSize(facts.columnsWidth(), facts.rows, facts.header_height) -
           ProfileGridSize(0, 0, 0);
}

// Moves the border between chart and grid, and puts the grip into the gap there.
void MakeRoom(QHash<int, QRect>& places, int grid_width) {
    QRect& chart = places[Id::kChartFrame];
    QRect& grid = places[Id::kGrid];
    const int more = grid_width - grid.width();
    chart.setRight(chart.right() - more);
    grid.setLeft(grid.left() - more);
    const int left = std::min(chart.right() + 1, grid.left() - kLeastGrip);
    places[Id::kTableGrip] = QRect(left, chart.top(), grid.left() - left, chart.height());
}

}  // namespace

QRect PixelRect(const std::array<int, 4>& place) {
    const auto [x, y, width, height] = place;
    return {QPoint(Across(x), Down(y)), PixelSize({width, height})};
}

QSize PixelSize(const std::array<int, 2>& size) {
    return {Across(size[0]), Down(size[1])};
}

QSize MainDialogStartSize(ProfileKind kind) {
    return PixelSize(kMainDialogSize) + QSize(GridBeyondTemplate(Describe(kind)).width(), 0);
}

int StartTableWidth(ProfileKind kind, int rows) {
    return Describe(kind).hasTimes()
               ? PointGridRect(rows, 0).width()
               : ProfileGridSize(0, 0, 0).width() + GridBeyondTemplate(Describe(kind)).width();
}

int WidthOfTable(ProfileKind kind, int rows, int extra, const TableWidth& table) {
    const int start = StartTableWidth(kind, rows);
    const int from = table.asked > 0 ? table.asked : start;
    const int given = table.asked > 0 ? extra - table.asked_at : extra;
    const int width = std::max(from, std::min(from + given, table.needed));
    return std::clamp(width, start, (MainDialogStartSize(kind).width() + extra) / 2);
}

QHash<int, QRect> MainDialogPlaces(ProfileKind kind, int rows, QSize extra,
                                   const TableWidth& table) {
    const KindDescriptor& facts = Describe(kind);
    const QSize more_grid = GridBeyondTemplate(facts);
    const int wider = more_grid.width();
    const int more_rows = extra.height() / kGridRowHeight * kGridRowHeight;  // whole rows only
    QHash<int, QRect> places;
    for (const ControlTemplate& control : kMainDialog) {
        QRect place = PixelRect(control.place);
        const auto [x, y, width, height] = control.place;
        if (x >= kRightPart)
            place.translate(extra.width(), 0);
        if (control.id == Id::kRemove || control.id == Id::kAdjust)
            place.translate(wider, 0);  // at the grid's right edge
        if (control.id == Id::kOk || control.id == Id::kCancel)
            place.translate((wider + 1) / 2, 0);  // about its middle
        if (y >= kBottomPart)
            place.translate(0, extra.height());
        if (control.id == Id::kChartFrame)
            place.setSize(place.size() + extra);
        if (control.id == Id::kGrid)
            place.setSize(place.size() + more_grid + QSize(0, more_rows));
        places.insert(control.id, place);
    }
    // The grid's lower end at the starting size. All controls below it move with it.
    int start_end = places[Id::kGrid].bottom() + 1 - more_rows;
    if (facts.hasTimes()) {
        places[Id::kGrid] = PointGridRect(rows, more_rows).translated(extra.width(), 0);
        start_end = PointGridRect(rows, 0).bottom() + 1;
    }
    const int top = std::min(places[Id::kEdition].y(), places[Id::kAdjust].y()) - extra.height();
    const int gap = facts.coefficients ? kMeanHeight : kGapBelowGrid;
    const int shift = std::max(0, start_end + gap - top);
    for (const int id : {Id::kEdition, Id::kAdjust})
        places[id].translate(0, shift);
    MakeRoom(places, WidthOfTable(kind, rows, extra.width(), table));
    return places;
}
