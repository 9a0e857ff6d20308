// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ChartKeys.h"

#include "base/EnglishAtof.h"
#include "chart/CGraphControl.h"
#include "chart/DragRules.h"
#include "profiles/ProfileSession.h"

#include <QEvent>
#include <QKeyEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

bool IsStep(const QKeyEvent& event) {
    return (event.key() == Qt::Key_Up || event.key() == Qt::Key_Down) &&
           (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

}  // namespace

ChartKeys::ChartKeys(ProfileSession* session, const CGraphControl* control)
    : m_session(session), m_control(control) {
}

void ChartKeys::EndSteps() {
    if (std::exchange(m_dragged_row, std::nullopt))
        m_session->EndDrag();
}

void ChartKeys::Watch(const QEvent& event) {
    const QEvent::Type type = event.type();
    if (type == QEvent::FocusOut || type == QEvent::MouseButtonPress || type == QEvent::Hide ||
        (type == QEvent::ShortcutOverride && !IsStep(static_cast<const QKeyEvent&>(event))))
        EndSteps();
}

bool ChartKeys::Press(const QKeyEvent& event, double mark) {
    const int last = m_session->table().RowCount() - 1;
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier || last < 0)
        return false;
    const int current = m_control->document().items.FirstHighlighted().value_or(0);
    int item = current;
    switch (event.key()) {
        case Qt::Key_Up: Step(mark); return true;
        case Qt::Key_Down: Step(-mark); return true;
        case Qt::Key_Left: item = std::max(current - 1, 0); break;
        case Qt::Key_Right: item = std::min(current + 1, last); break;
        case Qt::Key_Home: item = 0; break;
        case Qt::Key_End: item = last; break;
        default: return false;
    }
    EndSteps();
    emit RowChosen(item + 1);
    return true;
}

void ChartKeys::Step(double distance) {
    const std::optional<int> item = m_control->document().items.FirstHighlighted();
    if (!item || m_session->isViewOnly())
        return;
    const int row = *item + 1;
    const double least = DragStep(m_session->kind());
    const double way =
        std::copysign(std::max(std::round(std::abs(distance) / least), 1.0) * least, distance);
    const QString value = m_session->table().CellText(row, ProfileTable::kValueColumn);
    const std::optional<QString> accepted = AcceptDrag(m_session->kind(), ParseNumber(value) + way);
    if (!accepted)
        return;
    if (m_dragged_row != row || !m_session->isDragging()) {
        m_session->BeginDrag(row);
        m_dragged_row = row;
    }
    m_session->DragTo(*accepted);
    m_session->SetModified();
}
