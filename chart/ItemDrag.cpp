// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ItemDrag.h"

#include "chart/DragRules.h"
#include "profiles/ProfileSession.h"

#include <optional>
#include <utility>

namespace {

// Pixels. A press that moves less is a click; it changes no value.
constexpr int kDragDistance = 3;

constexpr int kTimes = 0;  // the group of items that holds them

}  // namespace

bool ItemDrag::IsClick(QPoint point) const {
    return !m_began && (point - m_press).manhattanLength() < kDragDistance;
}

bool ItemDrag::WasEnded() const {
    return m_began && !m_session->isDragging();
}

void ItemDrag::MoveTo(QPoint point, const PlotScale& scale, DragWay way) {
    if (!std::exchange(m_began, true))
        m_session->BeginDrag(m_item + 1);
    const auto value = AcceptDrag(m_session->kind(), scale.y.ToValue(point.y()));
    if (!value)
        return;
    const bool in_time =
        way == DragWay::ValueAndTime && m_session->facts().hasTimes() && point.x() != m_press.x();
    m_session->DragTo(*value, in_time ? TimeAt(scale.x.ToValue(point.x()), scale.x) : QString());
}

QString ItemDrag::TimeAt(double time, const AxisScale& axis) const {
    const double low = m_item > 0 ? m_items->Value(m_item - 1, kTimes) : axis.low;
    const double high =
        m_item + 1 < m_items->Count() ? m_items->Value(m_item + 1, kTimes) : axis.high;
    return AcceptDraggedTime(time, low, high).value_or(QString());
}

void ItemDrag::End() {
    if (m_began)
        m_session->EndDrag();
}
