// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// The colour of the line around a chart: the theme's own, lightened on dark themes until it is
/// visible.
QColor ChartFrameColour(const QPalette& palette);

/// The empty place of a chart that is not shown.
class ChartFrame : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent* event) override;
};
