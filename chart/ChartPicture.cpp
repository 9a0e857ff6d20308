// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ChartPicture.h"

#include "chart/ChartPlot.h"

#include <utility>

ChartPicture::ChartPicture(CDocControl chart, QSize size, QFont font)
    : m_chart(std::move(chart)), m_size(size), m_font(std::move(font)) {
    m_chart.items.ClearHighlights();
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
    plot.FitAxes();
    plot.PaintShapes(painter, device_pixels);
}
