// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/TabMoves.h"

#include <algorithm>

namespace {

CellPosition Forward(int rows, int columns, CellPosition at) {
    if (at.column < columns)
        return {at.row, at.column + 1};
    if (at.row < rows)
        return {at.row + 1, 1};
    return {1, 1};
}

CellPosition Backward(ProfileKind kind, int rows, int columns, CellPosition at) {
    const CellPosition left = {at.row, at.column - 1};
    // Only the times of points are worth a stop: the labels of the other kinds are locked.
    if (Describe(kind).hasTimes() && at.column > 1)
        return left;
    if (at.row == 1)
        return {rows, columns};
    return at.column > 2 ? left : CellPosition{at.row - 1, columns};
}

}  // namespace

std::optional<CellPosition> TabMove(ProfileKind kind, int rows, int columns,
                                    std::optional<CellPosition> current, TabDirection direction) {
    if (rows < 1 || columns < 1)
        return {};
    const CellPosition from = current.value_or(CellPosition{1, 2});
    const CellPosition at = {std::clamp(from.row, 1, rows), std::clamp(from.column, 1, columns)};
    return direction == TabDirection::Forward ? Forward(rows, columns, at)
                                              : Backward(kind, rows, columns, at);
}
