// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ItemCursor.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

void ItemCursor::Show() {
    m_shown = true;
    // The keyboard is elsewhere, as a rule with the grid.
    qApp->installEventFilter(this);
    Update();
}

void ItemCursor::Hide() {
    m_shown = false;
    qApp->removeEventFilter(this);
    m_view->unsetCursor();
}

void ItemCursor::SetKeys(Qt::KeyboardModifiers keys) {
    m_shift = keys.testFlag(Qt::ShiftModifier);
    if (m_shown)
        Update();
}

void ItemCursor::Update() {
    const Qt::CursorShape shape = m_shift && m_have_times ? Qt::SizeAllCursor : Qt::SizeVerCursor;
    if (!m_view->testAttribute(Qt::WA_SetCursor) || m_view->cursor().shape() != shape)
        m_view->setCursor(shape);
}

bool ItemCursor::eventFilter(QObject* object, QEvent* event) {
    const bool press = event->type() == QEvent::KeyPress;
    if ((press || event->type() == QEvent::KeyRelease) &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Shift)
        SetKeys(press ? Qt::ShiftModifier : Qt::NoModifier);
    return QObject::eventFilter(object, event);
}
