// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QStringView>

#include <vector>

/// True for white space as it stands before numbers and between words of a file.
constexpr bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The leading decimal number of `text` in single precision: optional white space, a sign, digits
/// with "." as the separator and an exponent. Text behind the number is ignored. A text
/// without a leading number ("", "abc", "nan", "inf") gives 0; a number beyond the float range
/// gives an infinity of its sign, one too small gives 0. The process locale is neither read nor
/// changed.
float EnglishAtof(QStringView text);

/// As `EnglishAtof`, in double precision.
double ParseNumber(QStringView text);

/// The same for each of `texts`.
std::vector<double> ParseNumbers(const QStringList& texts);

/// True when `text` is exactly one finite decimal number with optional white space around it. White
/// space is the same as for `EnglishAtof`; a no-break space is none.
bool IsNumber(QStringView text);
