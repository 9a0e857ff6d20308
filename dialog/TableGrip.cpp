// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/TableGrip.h"

#include "base/ColourContrast.h"
#include "base/QtColour.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

constexpr double kBarWidth = 3.0;  // pixels

}  // namespace

TableGrip::TableGrip(QWidget* parent) : QWidget(parent) {
    setCursor(Qt::SizeHorCursor);
    setToolTip(u"Glisser : partage la largeur. Double clic : élargit le tableau, puis le remet."_s);
}

void TableGrip::enterEvent(QEnterEvent*) {
    update();
}

void TableGrip::leaveEvent(QEvent*) {
    update();
}

// Another button belongs to the dialog.
void TableGrip::mousePressEvent(QMouseEvent* event) {
    event->setAccepted(event->button() == Qt::LeftButton);
    if (!event->isAccepted())
        return;
    emit PressBegins();
    // The release has gone to the box that refused an entry.
    if (QGuiApplication::mouseButtons().testFlag(Qt::LeftButton))
        m_held_at = static_cast<int>(event->position().x());
}

void TableGrip::mouseMoveEvent(QMouseEvent* event) {
    if (!event->buttons().testFlag(Qt::LeftButton))
        m_held_at.reset();
    if (m_held_at)
        emit Dragged(static_cast<int>(event->position().x()) - *m_held_at);
}

void TableGrip::mouseReleaseEvent(QMouseEvent*) {
    m_held_at.reset();
    update();
}

void TableGrip::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        emit DoubleClicked();
}

void TableGrip::paintEvent(QPaintEvent*) {
    if (!underMouse() && !m_held_at)
        return;
    const Colour window = ToColour(palette().color(QPalette::Window));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ToQColor(LegibleOn(window, ToColour(palette().color(QPalette::Highlight)))));
    painter.drawRoundedRect(QRectF((width() - kBarWidth) / 2.0, 0.0, kBarWidth, height()),
                            kBarWidth / 2.0, kBarWidth / 2.0);
}
