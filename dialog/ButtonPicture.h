// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QPalette>
#include <QRectF>
#include <QSize>
#include <QString>

class QPainter;

/// A drawing from the resources that follows the palette: its ink has the colour of button texts,
/// its focus mark the colour of selections. It is drawn anew for each size, so it is sharp at each
/// scale.
class ButtonPicture {
public:
    /// The colours that mean ink and focus mark in the drawings.
    static constexpr QRgb kInk = 0xff202020;
    static constexpr QRgb kFocusMark = 0xff0a64c8;

    ButtonPicture() = default;

    /// Null when no drawing has this name. Decoded on first use; most pictures are never drawn.
    explicit ButtonPicture(const QString& name);

    bool isNull() const { return m_shapes.isEmpty(); }

    /// The size it is drawn for; not valid when it is null.
    QSize size() const;

    /// The colours are those of `palette` in its current group.
    void Draw(QPainter& painter, const QRectF& place, const QPalette& palette) const;

    /// As an image of `size` logical pixels at the pixel ratio `ratio`.
    QImage Image(QSize size, qreal ratio, const QPalette& palette) const;

private:
    QByteArray m_shapes;
};
