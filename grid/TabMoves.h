// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <optional>

/// A cell of the grid; data rows and columns count from 1, row 0 and column 0 are headers.
struct CellPosition {
    int row = 0;
    int column = 0;

    friend bool operator==(const CellPosition&, const CellPosition&) = default;
};

enum class TabDirection { Forward, Backward };

/// Where Tab (forward) or Shift+Tab (backward) takes the current cell in a grid of `rows` by
/// `columns` data cells. Without a current cell the move starts at row 1, column 2; a header counts
/// as row 1 or column 1. Nothing in an empty grid.
std::optional<CellPosition> TabMove(ProfileKind kind, int rows, int columns,
                                    std::optional<CellPosition> current, TabDirection direction);
