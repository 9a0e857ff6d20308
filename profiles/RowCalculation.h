// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/Calculation.h"

#include <QList>

class RowEdits;

/// Calculations on the rows of a table, one step each. Rows and columns count from 1.

/// Whether the kind allows `operation` now: coefficients can be multiplied and set in edition mode,
/// all other values in any way.
bool CanCalculate(const RowEdits& edits, Operation operation);

/// What a command for many rows works on: the selected rows, or all when fewer than two are.
QList<int> RowsToCalculate(const RowEdits& edits, const QList<int>& selected);

/// Does `calculation` on `rows` (ascending) of the column of times or of values. False when it was
/// refused: its message was shown, and the rows are as they were.
bool CalculateRows(RowEdits& edits, int column, const Calculation& calculation,
                   const QList<int>& rows);

/// Gives all `rows` the value text of the first one, by the rules of `CalculateRows`.
bool FillRows(RowEdits& edits, const QList<int>& rows);
