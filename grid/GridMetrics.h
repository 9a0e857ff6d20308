// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Heights of the grid's header and of its rows, in pixels.
/// @{
inline constexpr int kGridHeaderHeight = 24;
inline constexpr int kGridRowHeight = 21;
/// @}
