// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ChartPicture.h"

#include "chart/ChartPlot.h"

#include <utility>

ChartPicture::ChartPicture(CDocControl chart, QSize size, const QFont& font, const ChartZoom& zoom)
    : m_chart(std::move(chart)), m_size(size), m_font(font), m_zoom(zoom) {
    m_chart.items.ClearHighlights();
    m_chart.preview.Clear(1);
}

QString ChartPicture::Title() const {
    return m_chart.title.text.simplified();
}

void ChartPicture::Paint(QPainter& painter, double device_pixels) const {
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    ChartPlot plot(m_chart, nullptr);
    plot.Style({m_size, m_font, palette});
    ChartZoom zoom = m_zoom;
    zoom.SetFitted(plot.FittedAxes());
    plot.SetAxes(zoom.Visible(), zoom.Fitted());
    plot.PaintShapes(painter, device_pixels);
}
