// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ItemPainter.h"

#include "base/ColourContrast.h"
#include "base/QtColour.h"
#include "chart/ItemPicking.h"
#include "chart/LineThinning.h"

#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <set>

namespace {

// Pixels. Points closer together than the first get smaller markers.
constexpr double kRoomyDistance = 12.0;
constexpr double kLargeMarker = 7.0;
constexpr double kSmallMarker = 5.0;

// Of what would become of the items.
constexpr Colour kPreviewColour = {178, 132, 224};
constexpr double kPreviewOutline = 2.0;

constexpr double kLeastBarHeight = 2.0;
constexpr double kZeroLineWidth = 1.0;

// Markers of one colour. Those on the same pixels are drawn once, those that touch in a row
// together, so that a million cost no more than the pixels they cover.
class MarkerCells {
public:
    MarkerCells(const PlotScale& scale, double size, double device_pixels)
        : m_size(size),
          m_device_pixels(device_pixels),
          m_left(Device(std::min(scale.x.from, scale.x.to) - size)),
          m_top(Device(std::min(scale.y.from, scale.y.to) - size)),
          m_width(Device(std::max(scale.x.from, scale.x.to) + size) - m_left),
          m_height(Device(std::max(scale.y.from, scale.y.to) + size) - m_top),
          m_to_x((0.5 - size / 2.0) * device_pixels + 0.5 - m_left),
          m_to_y((0.5 - size / 2.0) * device_pixels + 0.5 - m_top),
          m_used(static_cast<size_t>(m_width) * static_cast<size_t>(m_height)) {}

    void Add(QPointF centre) {
        // Done for up to a million points a frame.
        const double x = centre.x() * m_device_pixels + m_to_x;
        const double y = centre.y() * m_device_pixels + m_to_y;
        if (!(x >= 0.0 && x < m_width && y >= 0.0 && y < m_height))
            return;
        const int cell = static_cast<int>(y) * m_width + static_cast<int>(x);
        m_used[static_cast<size_t>(cell)] = 1;
    }

    void Paint(QPainter& painter, const QColor& colour) const {
        for (int y = 0; y < m_height; ++y) {
            const auto row = m_used.begin() + std::ptrdiff_t{y} * m_width;
            const auto end = row + m_width;
            for (auto from = std::find(row, end, 1); from != end;) {
                auto last = from;
                auto next = std::find(from + 1, end, 1);
                for (; next != end && Logical(next - last) <= m_size;
                     next = std::find(next + 1, end, 1))
                    last = next;
                painter.fillRect(QRectF(Logical(m_left + (from - row)), Logical(m_top + y),
                                        Logical(last - from) + m_size, m_size),
                                 colour);
                from = next;
            }
        }
    }

private:
    int Device(double value) const {
        return static_cast<int>(std::lround(value * m_device_pixels));
    }
    double Logical(std::ptrdiff_t value) const {
        return static_cast<double>(value) / m_device_pixels;
    }

    double m_size;
    double m_device_pixels;
    // Device pixels.
    int m_left;
    int m_top;
    int m_width;
    int m_height;
    // From a marker's centre to where it begins in the cells, half a pixel for rounding included.
    double m_to_x;
    double m_to_y;
    std::vector<unsigned char> m_used;  // row by row, where a marker begins
};

class ItemPainter {
public:
    ItemPainter(QPainter& painter, const CDocControl& chart, const PlotScale& scale,
                Colour background, double device_pixels)
        : m_painter(painter),
          m_chart(chart),
          m_scale(scale),
          m_background(background),
          m_device_pixels(device_pixels) {}

    void PaintBars() {
        // Of a bar at the end of the axis only the part that belongs there is seen.
        m_painter.setClipRect(AxesRect(kFarAway), Qt::IntersectClip);
        for (int i = 0; i < m_chart.items.Count(); ++i) {
            if (m_chart.items.IsDrawn(i))
                PaintBar(i);
        }
    }

    void PaintPoints() {
        const std::span<const double> values = m_chart.items.Group(m_chart.items.GroupCount() - 1);
        std::vector<double> indices(m_chart.items.GroupCount() == 1 ? values.size() : 0);
        std::iota(indices.begin(), indices.end(), 0.0);
        const std::span<const double> all = indices.empty() ? m_chart.items.Group(0) : indices;
        const auto [first, last] = PointsInSight(all, m_scale.x);
        const std::span<const double> xs = all.subspan(first, last - first);
        const std::span<const double> ys = values.subspan(first, last - first);
        const ThinnedLine line = ThinLine(xs, ys, m_scale, m_device_pixels, m_chart.display.line);
        if (m_chart.item_style.points == PointLook::None)
            return;
        std::set<int> highlighted;
        for (const int index : m_chart.items.Highlighted()) {
            if (index >= static_cast<int>(first) && index < static_cast<int>(last))
                highlighted.insert(index - static_cast<int>(first));
        }
        PaintLine(line, m_chart.item_style.second_colour);
        PaintMarkers(xs, ys, line.density, highlighted);
    }

    void PaintPreview() {
        const ChartItems& preview = m_chart.preview;
        if (m_chart.display.form == DisplayForm::Bars)
            PaintPreviewBars();
        else if (preview.GroupCount() == 2)
            PaintLine(ThinLine(preview.Group(0), preview.Group(1), m_scale, m_device_pixels,
                               m_chart.display.line),
                      kPreviewColour);
    }

private:
    double OnDevicePixel(double value) const {
        return std::round(value * m_device_pixels) / m_device_pixels;
    }

    // The room between the axes, with `above` pixels more above and below it.
    QRectF AxesRect(double above) const {
        return QRectF(QPointF(m_scale.x.from, m_scale.y.to), QPointF(m_scale.x.to, m_scale.y.from))
            .adjusted(0.0, -above, 0.0, above);
    }

    QRectF BarRect(QPointF place) const {
        const QPointF end = m_scale.ToPixels(place);
        const double width = OnDevicePixel(std::max(m_scale.x.PixelsPerUnit() * kBarWidth, 3.0));
        const double left = OnDevicePixel(end.x() - width / 2.0);
        const double axis = OnDevicePixel(m_scale.y.ToPixel(0.0));
        const double top = OnDevicePixel(end.y());
        // The zero line itself stays free.
        const double height = std::max(std::abs(axis - top), kLeastBarHeight);
        return {left, top > axis ? axis + kZeroLineWidth : axis - height, width, height};
    }

    void PaintBar(int index) {
        const ItemStyle& style = m_chart.StyleOf(index);
        const double outline = style.width;
        const QRectF bar = BarRect(m_chart.items.Place(index));
        m_painter.fillRect(bar, ToQColor(style.second_colour));
        const QRectF face = bar.adjusted(outline, outline, -outline, -outline);
        if (face.isValid())
            m_painter.fillRect(face, ToQColor(style.colour));
    }

    // A wider outline in the background's colour sets the preview off from the bars under it.
    void PaintPreviewBars() {
        PaintOutlines(m_background, 2.0 * kPreviewOutline);
        PaintOutlines(LegibleOn(m_background, kPreviewColour), kPreviewOutline);
    }

    void PaintOutlines(Colour colour, double width) {
        QPen pen(ToQColor(colour), width);
        pen.setJoinStyle(Qt::MiterJoin);
        m_painter.setPen(pen);
        for (int i = 0; i < m_chart.preview.Count(); ++i) {
            if (m_chart.preview.IsDrawn(i))
                m_painter.drawRect(BarRect(m_chart.preview.Place(i))
                                       .adjusted(kPreviewOutline, kPreviewOutline, -kPreviewOutline,
                                                 -kPreviewOutline));
        }
    }

    void PaintLine(const ThinnedLine& thinned, Colour colour) {
        const std::vector<QPointF>& line = thinned.points;
        QPen pen(ToQColor(LegibleOn(m_background, colour)));
        pen.setJoinStyle(Qt::RoundJoin);
        pen.setCapStyle(Qt::RoundCap);
        // Wider dense lines would hide their shape, and take seconds on finely resolved screens.
        const auto is_thin = [&](size_t index) {
            return thinned.density.IsDense(line[index].x()) &&
                   thinned.density.IsDense(line[index + 1].x());
        };
        m_painter.save();
        m_painter.setClipRect(AxesRect(m_chart.item_style.width), Qt::IntersectClip);
        m_painter.setRenderHint(QPainter::Antialiasing);
        // Pixel centres lie at halves.
        m_painter.translate(0.5, 0.5);
        for (size_t from = 0, to = 0; from + 1 < line.size(); from = to) {
            const bool thin = is_thin(from);
            for (to = from + 1; to + 1 < line.size() && is_thin(to) == thin;)
                ++to;
            pen.setWidthF(thin ? 1.0 / m_device_pixels : m_chart.item_style.width);
            m_painter.setPen(pen);
            m_painter.drawPolyline(line.data() + from, static_cast<int>(to - from + 1));
        }
        m_painter.restore();
    }

    void PaintMarkers(std::span<const double> xs, std::span<const double> ys,
                      const PointDensity& density, const std::set<int>& highlighted) {
        const double distance =
            std::abs(m_scale.x.to - m_scale.x.from) / static_cast<double>(xs.size());
        MarkerCells cells(m_scale, distance < kRoomyDistance ? kSmallMarker : kLargeMarker,
                          m_device_pixels);
        ForEachMarker(xs, ys, m_scale, density, highlighted,
                      [&](QPointF place) { cells.Add(place); });
        cells.Paint(m_painter, ToQColor(m_chart.item_style.colour));
        for (int i : m_chart.items.Highlighted()) {
            const QPointF place = m_chart.items.Place(i);
            if (!m_scale.x.Shows(place.x()) || !m_scale.y.Shows(place.y()))
                continue;
            const QPointF centre = m_scale.ToPixels(place);
            const double left = OnDevicePixel(centre.x() + 0.5 - kLargeMarker / 2.0);
            const double top = OnDevicePixel(centre.y() + 0.5 - kLargeMarker / 2.0);
            m_painter.fillRect(QRectF(left, top, kLargeMarker, kLargeMarker),
                               ToQColor(m_chart.highlighted_style.colour));
        }
    }

    QPainter& m_painter;
    const CDocControl& m_chart;
    PlotScale m_scale;
    Colour m_background;
    double m_device_pixels;
};

}  // namespace

void PaintItems(QPainter& painter, const CDocControl& chart, const PlotScale& scale,
                Colour background, double device_pixels) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    ItemPainter items(painter, chart, scale, background, device_pixels);
    if (chart.display.form == DisplayForm::Bars)
        items.PaintBars();
    else
        items.PaintPoints();
    items.PaintPreview();
}
