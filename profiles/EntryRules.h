// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <QString>
#include <QStringList>

/// Turns a single decimal comma into a point, in place. False when the text holds more than one
/// point, more than one comma, or both.
bool SettleDecimalSeparator(QString& text);

/// The same, but tells the user.
bool CheckDecimalSeparator(QString& text);

/// Whether `value` may stand in a value cell of `kind`; tells the user when it is too large.
bool CheckTypedBound(ProfileKind kind, float value);

/// Where the row `row` goes (both 1-based) when its time becomes `time`: the first row whose time
/// is at least `time`, or the last row; one less when the row moves down and that row's time is
/// greater. `times` are the texts of column 1 before the edit.
int TargetRow(const QStringList& times, int row, float time);

/// The 1-based row where a new point with `time` is inserted: before the first row with a greater
/// time, after all rows when there is none.
int InsertionRow(const QStringList& times, float time);
