// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/CDocControl.h"
#include "chart/ChartZoom.h"

#include <QFont>
#include <QSize>

class QPainter;

/// A chart for files, other programs and paper: title, axes and items as on the screen, the zoomed
/// part included. It is always on white, without highlights and previews.
class ChartPicture {
public:
    ChartPicture(CDocControl chart, QSize size, const QFont& font, const ChartZoom& zoom = {});

    QSize Size() const { return m_size; }
    ChartPicture Resized(QSize size) const { return {m_chart, size, m_font, m_zoom}; }
    QString Title() const;

    /// Draws it as shapes into (0, 0) to `Size()` of the painter. Points are thinned out for that
    /// number of device pixels per pixel, so that the cost does not follow their number.
    void Paint(QPainter& painter, double device_pixels) const;

private:
    CDocControl m_chart;
    QSize m_size;
    QFont m_font;
    ChartZoom m_zoom;
};
