// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QSize>
#include <QString>

/// A text as it is drawn into its room.
struct FittedText {
    QString text;
    QFont font;
};

/// `text` (which may hold line breaks) in the largest size from `largest` down to `smallest` pixels
/// in which it fits `room`. Lines too long for the room are wrapped, between words where they can
/// be. What does not fit in the smallest size either is cut and ends with an ellipsis.
FittedText FitText(const QString& text, QFont font, int largest, int smallest, QSize room);
