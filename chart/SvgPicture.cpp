#include "chart/SvgPicture.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace {

QByteArray ColorName(const QColor& color) {
    return color.name(QColor::HexRgb).toLatin1();
}

}  // namespace

SvgPicture::SvgPicture(const QString& path) {
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        m_svg = file.readAll();
}

QSize SvgPicture::size() const {
    return QSvgRenderer(m_svg).defaultSize();
}

void SvgPicture::Draw(QPainter& painter, const QRectF& place, const QPalette& palette) const {
    if (isNull())
        return;
    const QColor ink = palette.color(QPalette::ButtonText);
    const QColor mark = palette.color(QPalette::Highlight);
    QByteArray svg = m_svg;
    svg.replace(ColorName(QColor::fromRgb(kFocusMark)), ColorName(mark));
    svg.replace(ColorName(QColor::fromRgb(kInk)), ColorName(ink));
    QSvgRenderer renderer(svg);
    renderer.render(&painter, place);
}

QImage SvgPicture::Image(QSize size, qreal ratio, const QPalette& palette) const {
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    Draw(painter, QRectF(QPointF(), size), palette);
    return image;
}
