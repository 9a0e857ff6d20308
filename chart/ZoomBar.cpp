// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ZoomBar.h"

#include "base/ColourContrast.h"
#include "base/QtColour.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Pixels. The thumb can be seen and held however small the part is.
constexpr double kLeastThumb = 14.0;
constexpr double kBarHeight = 3.0;

}  // namespace

ZoomBar::ZoomBar(QWidget* parent) : QWidget(parent) {
    setObjectName(u"5001_Part"_s);
    setAccessibleName(u"Partie visible"_s);
    setCursor(Qt::SizeHorCursor);
    hide();
}

void ZoomBar::SetPart(double from, double to) {
    if (from == m_from && to == m_to)
        return;
    m_from = from;
    m_to = to;
    update();
}

QRectF ZoomBar::Thumb() const {
    const double part = m_to - m_from;
    const double length =
        std::clamp(width() * part, std::min(kLeastThumb, 1.0 * width()), 1.0 * width());
    const double left = part < 1.0 ? (width() - length) * m_from / (1.0 - part) : 0.0;
    return {left, (height() - kBarHeight) / 2.0, length, kBarHeight};
}

// A press beside the thumb brings its middle there.
void ZoomBar::mousePressEvent(QMouseEvent* event) {
    const QRectF thumb = Thumb();
    const double at = event->position().x();
    const bool holds = at >= thumb.left() && at <= thumb.right();
    m_grip = holds ? at - thumb.left() : thumb.width() / 2.0;
    mouseMoveEvent(event);
}

void ZoomBar::mouseMoveEvent(QMouseEvent* event) {
    const double way = width() - Thumb().width();
    if (event->buttons().testFlag(Qt::LeftButton) && way > 0.0) {
        const double share = std::clamp((event->position().x() - m_grip) / way, 0.0, 1.0);
        emit Dragged(share * (1.0 - (m_to - m_from)));
    }
}

void ZoomBar::paintEvent(QPaintEvent*) {
    const Colour base = ToColour(palette().color(QPalette::Base));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const auto bar = [&painter](const QRectF& rect, Colour colour) {
        painter.setBrush(ToQColor(colour));
        painter.drawRoundedRect(rect, kBarHeight / 2.0, kBarHeight / 2.0);
    };
    constexpr Colour kTrack = {225, 225, 225};
    QColor track = ToQColor(IsDark(base) ? ToColour(palette().color(QPalette::Mid)) : kTrack);
    bar({0.0, (height() - kBarHeight) / 2.0, 1.0 * width(), kBarHeight}, ToColour(track));
    bar(Thumb(), LegibleOn(base, ToColour(palette().color(QPalette::Highlight))));
}
