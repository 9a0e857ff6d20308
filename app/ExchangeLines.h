// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

/// Where the exchange file holds what; lines count from 0.
/// @{
inline constexpr qsizetype kFourthLine = 3;  ///< two integers and a word
inline constexpr qsizetype kCyclesLine = 10;
inline constexpr qsizetype kPointCountLine = 11;      ///< number of points less one
inline constexpr qsizetype kPointLineCountLine = 12;  ///< twice the number of points
inline constexpr qsizetype kFirstPointLine = 13;      ///< from here on a time and a value in turn
/// @}
