// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <QList>
#include <QPointF>
#include <QString>

#include <optional>

/// `value` cut to hundredths toward zero; a value whose hundredfold lies within 0.0005 of a whole
/// number counts as that number.
double CutToHundredths(double value);

/// The text that a drag to `value` stores in `kind`: cut, bounded from above for coefficients,
/// whole numbers for daily needs. Nothing when the value is refused.
std::optional<QString> AcceptDrag(ProfileKind kind, double value);

/// The text of the time that a drag to `time` gives a point between two others with the times `low`
/// and `high`: cut, and bounded to the hundredths from `low` to `high`. Nothing when there is none.
std::optional<QString> AcceptDraggedTime(double time, double low, double high);

/// The least change that a drag can store.
double DragStep(ProfileKind kind);

/// The 0-based index of the first of `points` that the press at `press` picks, all in axis units:
/// -3.6 < dx <= 3.0 and -2.6 < dy <= 2.1 with a slack of 1e-6 against the open ends.
std::optional<qsizetype> PickPoint(const QList<QPointF>& points, QPointF press);

/// The tip of a row: for a function its numbers, for profiles its label, value and, where the kind
/// has them, daily profile name.
QString FunctionTip(double time, double value);
QString ProfileTip(ProfileKind kind, const QString& label, const QString& value,
                   const QString& name);
