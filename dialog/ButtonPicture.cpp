// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/ButtonPicture.h"

#include "dialog/PictureShape.h"

#include <QFile>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

// Ignores the opacity.
bool Is(const QColor& colour, QRgb rgb) {
    return colour.rgb() == QColor::fromRgb(rgb).rgb();
}

}  // namespace

ButtonPicture::ButtonPicture(const QString& name) {
    QFile file(u":/function-editor/"_s + name + u".picture"_s);
    if (file.open(QIODevice::ReadOnly))
        m_shapes = file.readAll();
}

QSize ButtonPicture::size() const {
    QDataStream stream(m_shapes);
    QSize size;
    stream >> size;
    return size;
}

void ButtonPicture::Draw(QPainter& painter, const QRectF& place, const QPalette& palette) const {
    if (isNull())
        return;
    PictureShapes picture;
    QDataStream stream(m_shapes);
    stream >> picture;
    const QColor ink = palette.color(QPalette::ButtonText);
    const QColor mark = palette.color(QPalette::Highlight);
    const auto shown = [&](QColor colour) {
        QColor followed = Is(colour, kInk) ? ink : Is(colour, kFocusMark) ? mark : colour;
        followed.setAlphaF(colour.alphaF());
        return followed;
    };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.topLeft());
    painter.scale(place.width() / picture.size.width(), place.height() / picture.size.height());
    for (PictureShape& shape : picture.shapes) {
        shape.fill.setColor(shown(shape.fill.color()));
        shape.line.setColor(shown(shape.line.color()));
        painter.setBrush(shape.fill);
        painter.setPen(shape.line);
        painter.setOpacity(shape.opacity);
        painter.drawPath(shape.outline);
    }
    painter.restore();
}

QImage ButtonPicture::Image(QSize size, qreal ratio, const QPalette& palette) const {
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    Draw(painter, QRectF(QPointF(), size), palette);
    return image;
}
