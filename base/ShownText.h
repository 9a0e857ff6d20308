// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Maximum number of characters that a message, and that a cell, a tip or a caption shows of a
/// text. A file may hold texts of megabytes, and no window can lay those out in time.
/// @{
constexpr qsizetype kMaxMessageLength = 1000;
constexpr qsizetype kMaxCellLength = 300;
/// @}

/// `text`, or its first `most` characters and an ellipsis. For showing only, never for storing.
inline QString ShownText(const QString& text, qsizetype most) {
    return text.size() <= most ? text : text.left(most) + QChar(0x2026);
}
