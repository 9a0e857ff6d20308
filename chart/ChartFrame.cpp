// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ChartFrame.h"

#include "base/ColourContrast.h"
#include "base/QtColour.h"

#include <QPainter>

QColor ChartFrameColour(const QPalette& palette) {
    const QColor line = palette.color(QPalette::Mid);
    const QColor window = palette.color(QPalette::Window);
    return ToQColor(GridLineOn(ToColour(window), ToColour(line)));
}

void ChartFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(ChartFrameColour(palette()));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
