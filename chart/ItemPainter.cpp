#include "chart/ItemPainter.h"

#include "chart/ColourContrast.h"
#include "chart/ItemPicking.h"
#include "chart/LineThinning.h"
#include "chart/QtColour.h"

#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace {

// Pixels. Points closer together than the first get smaller markers, closer than the second none.
constexpr double kRoomyDistance = 12.0;
constexpr double kMarkerDistance = 6.0;
constexpr double kLargeMarker = 7.0;
constexpr double kSmallMarker = 5.0;

class ItemPainter {
public:
    ItemPainter(QPainter& painter, const CDocControl& chart, const PlotScale& scale,
                ChartColour background, double device_pixels)
        : m_painter(painter),
          m_chart(chart),
          m_scale(scale),
          m_background(background),
          m_device_pixels(device_pixels) {}

    void PaintBars() {
        for (int i = 0; i < m_chart.ItemCount(); ++i) {
            if (m_chart.IsDrawn(i))
                PaintBar(i);
        }
    }

    void PaintPoints() {
        const int count = std::max(m_chart.ItemCount(), 1);
        const double distance = std::abs(m_scale.x.to - m_scale.x.from) / count;
        const bool dense = distance < kMarkerDistance;
        const ItemStyle& style = m_chart.item_style;
        if ((style.flags & ItemStyle::kLine) != 0)
            PaintLine(dense ? 1.0 / m_device_pixels : style.width);
        if ((style.flags & ItemStyle::kMarkers) == 0)
            return;
        const double size = distance < kRoomyDistance ? kSmallMarker : kLargeMarker;
        for (int i = 0; !dense && i < m_chart.ItemCount(); ++i) {
            if (!m_chart.IsHighlighted(i))
                PaintMarker(i, size);
        }
        for (int i : m_chart.Highlighted())
            PaintMarker(i, dense ? kLargeMarker : size);
    }

private:
    double OnDevicePixel(double value) const {
        return std::round(value * m_device_pixels) / m_device_pixels;
    }

    void PaintBar(int index) {
        const ItemStyle style = m_chart.StyleOf(index);
        const QPointF end = m_scale.ToPixels(m_chart.Place(index));
        const double width = OnDevicePixel(std::max(m_scale.x.PixelsPerUnit() * kBarWidth, 3.0));
        const double left = OnDevicePixel(end.x() - width / 2.0);
        const double axis = OnDevicePixel(m_scale.y.ToPixel(0.0));
        const double top = OnDevicePixel(end.y());
        const double outline = style.width;
        // Even a bar without height shows its outline. The axis line itself stays free.
        const QRectF bar(left, std::min(axis, top), width, std::max(std::abs(axis - top), outline));
        m_painter.fillRect(bar, ToQColor(style.second_colour));
        const QRectF face = bar.adjusted(outline, outline, -outline, -outline);
        if (face.isValid())
            m_painter.fillRect(face, ToQColor(style.FaceColour()));
    }

    void PaintLine(double width) {
        const std::span<const double> values = m_chart.Group(m_chart.GroupCount() - 1);
        std::vector<double> indices;
        if (m_chart.GroupCount() == 1) {
            indices.resize(values.size());
            for (size_t i = 0; i < indices.size(); ++i)
                indices[i] = static_cast<double>(i);
        }
        const std::vector<QPointF> line =
            ThinLine(indices.empty() ? m_chart.Group(0) : std::span<const double>(indices), values,
                     m_scale, m_device_pixels);
        if (line.size() < 2)
            return;
        QPen pen(ToQColor(LegibleOn(m_background, m_chart.item_style.second_colour)), width);
        pen.setJoinStyle(Qt::RoundJoin);
        pen.setCapStyle(Qt::RoundCap);
        m_painter.save();
        m_painter.setRenderHint(QPainter::Antialiasing);
        // Pixel centres lie at halves.
        m_painter.translate(0.5, 0.5);
        m_painter.setPen(pen);
        m_painter.drawPolyline(line.data(), static_cast<int>(line.size()));
        m_painter.restore();
    }

    void PaintMarker(int index, double size) {
        if (!m_chart.IsDrawn(index))
            return;
        const QPointF centre = m_scale.ToPixels(m_chart.Place(index));
        const double left = OnDevicePixel(centre.x() + 0.5 - size / 2.0);
        const double top = OnDevicePixel(centre.y() + 0.5 - size / 2.0);
        m_painter.fillRect(QRectF(left, top, size, size),
                           ToQColor(m_chart.StyleOf(index).FaceColour()));
    }

    QPainter& m_painter;
    const CDocControl& m_chart;
    PlotScale m_scale;
    ChartColour m_background;
    double m_device_pixels;
};

}  // namespace

void PaintItems(QPainter& painter, const CDocControl& chart, const PlotScale& scale,
                ChartColour background, double device_pixels) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    ItemPainter items(painter, chart, scale, background, device_pixels);
    if (chart.display.form == DisplayForm::Bars)
        items.PaintBars();
    else
        items.PaintPoints();
}
