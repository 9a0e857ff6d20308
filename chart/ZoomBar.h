// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// A thin bar that shows which part of an axis is visible, and lets the user drag that part.
class ZoomBar : public QWidget {
    Q_OBJECT

public:
    /// Pixels.
    static constexpr int kHeight = 7;

    explicit ZoomBar(QWidget* parent);

    /// The visible part, as shares of the whole axis.
    void SetPart(double from, double to);

signals:
    /// The visible part shall begin at this share of the whole axis.
    void Dragged(double from);

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF Thumb() const;

    double m_from = 0.0;
    double m_to = 1.0;
    double m_grip = 0.0;  // pixels from the thumb's left end to where it is held
};
