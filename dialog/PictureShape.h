// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBrush>
#include <QDataStream>
#include <QList>
#include <QPainterPath>
#include <QPen>
#include <QSize>

/// One outline of a drawing, filled and drawn along.
struct PictureShape {
    QPainterPath outline;
    QBrush fill;
    QPen line;
    qreal opacity = 1.0;
};

/// A drawing in the resources: its shapes in painting order. The build makes them from an SVG file,
/// so that the program reads no SVG when it starts.
struct PictureShapes {
    QSize size;
    QList<PictureShape> shapes;
};

inline QDataStream& operator<<(QDataStream& stream, const PictureShape& shape) {
    return stream << shape.outline << shape.fill << shape.line << shape.opacity;
}

inline QDataStream& operator>>(QDataStream& stream, PictureShape& shape) {
    return stream >> shape.outline >> shape.fill >> shape.line >> shape.opacity;
}

inline QDataStream& operator<<(QDataStream& stream, const PictureShapes& picture) {
    stream.setVersion(QDataStream::Qt_6_4);
    return stream << picture.size << picture.shapes;
}

inline QDataStream& operator>>(QDataStream& stream, PictureShapes& picture) {
    stream.setVersion(QDataStream::Qt_6_4);
    return stream >> picture.size >> picture.shapes;
}
