// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <QString>
#include <QStringList>

#include <optional>

/// Where an entry comes from. Typed non-numbers are ignored silently (the cell editor blocks most
/// of them); pasted ones show a message.
enum class EntrySource { Typed, Pasted };

/// `text` with a point for a decimal comma. Nothing when it holds more than one separator: the user
/// is told.
std::optional<QString> CheckDecimalSeparator(const QString& text);

/// `text` without white space around it and with a point for a decimal comma; nothing when that is
/// no number that can be computed with.
std::optional<QString> NumberEntry(const QString& text);

/// The same. Tells the user of more than one separator, and of any other wrong text that was
/// pasted.
std::optional<QString> CheckNumber(const QString& text, EntrySource source);

/// Shows that a pasted text cannot stand where it was to go.
void ShowWrongEntry();

/// Whether `value` may stand in a value cell of `kind`; tells the user when it is too large.
bool CheckTypedBound(ProfileKind kind, float value);

/// Where the row `row` goes (both 1-based) when its time becomes `time`: the first row whose time
/// is at least `time`, or the last row; one less when the row moves down and that row's time is
/// greater. `times` are the texts of column 1 before the edit.
int TargetRow(const QStringList& times, int row, float time);

/// The 1-based row where a new point with `time` is inserted: before the first row with a greater
/// time, after all rows when there is none.
int InsertionRow(const QStringList& times, float time);
