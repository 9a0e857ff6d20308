// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Characters that a message shows of a text, and that a cell, a tip or a caption shows. A file may
/// hold texts of megabytes, which no window can lay out in time.
/// @{
constexpr qsizetype kMaxMessageLength = 1000;
constexpr qsizetype kMaxCellLength = 300;
/// @}

/// `text`, or its first `most` characters and an ellipsis. For showing only, never for storing.
inline QString ShownText(const QString& text, qsizetype most) {
    return text.size() <= most ? text : text.left(most) + QChar(0x2026);
}
