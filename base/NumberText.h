// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Number texts never depend on the process locale. "nan" is written without a sign.

/// `value` with `decimals` (1 to 4) decimals as "%.*f" prints it; with 0 decimals cut toward zero
/// to a whole number, or as "%.0f" prints it when it is not finite; any other count gives "".
QString FormatValue(float value, int decimals);

/// Whole part of `value`, plus 1 when the dropped fraction is at least 0.5. Float in, float out:
/// values of any size pass, infinities and NaN come back as they are.
float RoundWhole(float value);

/// `RoundWhole(value * 100) / 100`, single precision at every step.
float Round2(float value);

/// "%.13g": the point grid's numbers.
QString NumberText13(double value);

/// "%.7g": profile values and added points.
QString NumberText7(double value);

/// `text` printed anew with "%.13g" from double precision. Returns `text` unchanged when it is no
/// number, when it has more digits than that, or when it is too small to keep all its digits.
QString RewrittenNumber(const QString& text);
