// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

/// White space before a number, and around the words of a file.
constexpr bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The leading decimal number of `text` in single precision: optional white space, a sign, digits
/// with "." as the separator and an exponent. What follows the number is passed over. A text
/// without a leading number ("", "abc", "nan", "inf") gives 0; a number beyond the float range
/// gives an infinity of its sign, one too small gives 0. The process locale is neither read nor
/// changed.
float EnglishAtof(QStringView text);

/// As `EnglishAtof`, in double precision.
double ParseNumber(QStringView text);

/// True when the whole of `text`, white space around it aside, is one finite decimal number. White
/// space is what `EnglishAtof` passes over; a no-break space is not.
bool IsNumber(QStringView text);
