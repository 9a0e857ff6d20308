// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <QString>
#include <QStringList>

/// The rule of coefficient profiles: their mean is 1, that is, a column of N rows sums to N (12 for
/// annual, 24 for daily profiles). Pure functions on columns of cell texts, all arithmetic in
/// single precision. Texts that are no numbers count as 0.

/// N for `kind`, which has coefficients.
int CoefficientCount(ProfileKind kind);

/// Sum of the first N texts, rounded to two decimals (`Round2`).
float RoundedSum(ProfileKind kind, const QStringList& column);

/// True when `sum` is exactly what `kind` asks for; also true for kinds without coefficients.
bool SumIsRight(ProfileKind kind, float sum);

/// The question before a save: quotes the mean `sum` / N with four decimals.
QString AdjustQuestion(ProfileKind kind, float sum);

/// The column rescaled by N / `sum`, each value rounded to two decimals and printed with "%.7g";
/// the rounding error goes to the smallest row when it is positive, to the largest otherwise. A
/// column that cannot be rescaled to finite numbers, such as one whose sum is 0 or not finite,
/// stays as it is.
QStringList AdjustCoefficients(ProfileKind kind, const QStringList& column, float sum);

/// The column with `value` in row `index` (0-based) and the others rescaled so that the mean is 1,
/// printed with two decimals. When the others sum to 0, or one of them would not stay finite, each
/// of them gets (N - value) / (N - 1) rounded to two decimals.
QStringList RebalanceCoefficients(ProfileKind kind, const QStringList& column, int index,
                                  float value);

/// The column with its rounding error N - sum put on its smallest or largest row, by the rule of
/// `AdjustCoefficients`; the column as it is when that row would not stay finite.
QStringList SettleRemainder(ProfileKind kind, const QStringList& column);
