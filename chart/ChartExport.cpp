// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ChartExport.h"

#include "chart/ChartPicture.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>

#ifdef EDITOR_WRITES_SVG
#include <QSvgGenerator>
#endif

namespace {

constexpr double kPixelsPerInch = 96.0;
constexpr double kPointsPerInch = 72.0;
constexpr double kInchesPerMetre = 1.0 / 0.0254;

// Device pixels per pixel for which shapes show every detail.
constexpr int kShapeScale = 4;

}  // namespace

QImage ChartImage(const ChartPicture& picture, int scale) {
    QImage image(picture.Size() * scale, QImage::Format_RGB32);
    if (image.isNull())
        return image;
    {
        QPainter painter(&image);
        painter.scale(scale, scale);
        picture.Paint(painter, scale);
    }
    // Whatever the number of its pixels, it has the same size in a document.
    const int per_metre = qRound(kPixelsPerInch * kInchesPerMetre * scale);
    image.setDotsPerMeterX(per_metre);
    image.setDotsPerMeterY(per_metre);
    return image;
}

QByteArray ChartPng(const ChartPicture& picture, int scale) {
    QBuffer file;
    return ChartImage(picture, scale).save(&file, "PNG") ? file.data() : QByteArray();
}

#ifdef EDITOR_WRITES_SVG
QByteArray ChartSvg(const ChartPicture& picture) {
    QBuffer file;
    QSvgGenerator svg;
    svg.setOutputDevice(&file);
    svg.setTitle(picture.Title());
    svg.setSize(picture.Size());
    svg.setViewBox(QRect(QPoint(), picture.Size()));
    svg.setResolution(static_cast<int>(kPixelsPerInch));
    {
        QPainter painter(&svg);
        picture.Paint(painter, kShapeScale);
    }
    return file.data();
}
#endif

QByteArray ChartPdf(const ChartPicture& picture) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    QPdfWriter pdf(&file);
    pdf.setTitle(picture.Title());
    pdf.setPageSize(QPageSize(QSizeF(picture.Size()) * kPointsPerInch / kPixelsPerInch,
                              QPageSize::Point, {}, QPageSize::ExactMatch));
    pdf.setPageMargins({});
    {
        QPainter painter(&pdf);
        painter.scale(pdf.logicalDpiX() / kPixelsPerInch, pdf.logicalDpiY() / kPixelsPerInch);
        picture.Paint(painter, kShapeScale);
    }
    return file.data();
}
