// SPDX-License-Identifier: GPL-3.0-or-later
// The mouse on the chart: tips, picking and dragging.

#include "base/ShownText.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "chart/DragRules.h"
#include "chart/ItemPicking.h"
#include "profiles/ProfileSession.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QTextDocument>
#include <QToolTip>

namespace {

constexpr int kTipTime = 10000;  // milliseconds

// Pixels. A press that moves less is a click; it changes no value.
constexpr int kDragDistance = 3;

}  // namespace

bool CGraphView::event(QEvent* event) {
    // A dialog over the window, or a hidden one, never lets the release come here.
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::Hide)
        FinishDrag();
    return QWidget::event(event);
}

void CGraphView::contextMenuEvent(QContextMenuEvent* event) {
    // A menu would take the release away from a drag.
    event->setAccepted(m_dragged_item.has_value());
}

QString CGraphView::TipText(int index) const {
    const ProfileKind kind = m_session->kind();
    if (kind == ProfileKind::Function) {
        const CDocControl& chart = m_control->document();
        return FunctionTip(chart.Value(index, 0), chart.Value(index, 1));
    }
    const ProfileTable& table = m_session->table();
    return ProfileTip(kind, table.CellText(index + 1, ProfileTable::kLabelColumn),
                      table.CellText(index + 1, ProfileTable::kValueColumn),
                      table.CellText(index + 1, ProfileTable::kNameColumn));
}

void CGraphView::ShowTip(int index) {
    QString text = ShownText(TipText(index), kMaxMessageLength);
    // A name is never taken for markup.
    if (Qt::mightBeRichText(text))
        text = Qt::convertFromPlainText(text);
    QToolTip::showText(mapToGlobal(m_last_mouse), text, this, {}, kTipTime);
    m_tipped_item = index;
}

void CGraphView::Hover(QPoint position) {
    const std::optional<int> hit = HitItem(m_control->document(), Scale(), position);
    if (hit == m_tipped_item)
        return;
    if (hit) {
        ShowTip(*hit);
        setCursor(Qt::SizeVerCursor);
    } else {
        QToolTip::hideText();
        unsetCursor();
    }
    m_tipped_item = hit;
}

void CGraphView::leaveEvent(QEvent*) {
    if (m_tipped_item && !m_dragged_item)
        Hover({-1, -1});
}

void CGraphView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->setAccepted(m_dragged_item.has_value());
        return;
    }
    emit PressBegins();
    FinishDrag();
    m_last_mouse = m_press_position = event->position().toPoint();
    const CDocControl& chart = m_control->document();
    const PlotScale scale = Scale();
    if (const std::optional<int> hit = HitItem(chart, scale, event->position())) {
        // The release has gone to the box that refused an entry.
        if (QGuiApplication::mouseButtons().testFlag(Qt::LeftButton))
            m_dragged_item = hit;
        m_drag_began = false;
        emit CellPicked(*hit + 1);
    } else if (m_session->kind() == ProfileKind::Function) {
        QList<QPointF> points(chart.ItemCount());
        for (int i = 0; i < chart.ItemCount(); ++i)
            points[i] = chart.Place(i);
        if (const auto picked = PickPoint(points, scale.ToValues(event->position())))
            emit CellPicked(static_cast<int>(*picked) + 1);
    }
}

void CGraphView::DragPoint(QPoint point) {
    if (m_dragged_item) {
        if (!m_drag_began)
            m_session->BeginDrag(*m_dragged_item + 1);
        m_drag_began = true;
        const double value = Scale().y.ToValue(point.y());
        if (const std::optional<QString> accepted = AcceptDrag(m_session->kind(), value))
            m_session->DragTo(*accepted);
        Redraw();
    }
    m_session->SetModified();
}

void CGraphView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    m_last_mouse = position;
    if (!m_dragged_item) {
        Hover(position);
        return;
    }
    // The release went elsewhere, or a command has ended the drag.
    if (!event->buttons().testFlag(Qt::LeftButton) || (m_drag_began && !m_session->isDragging())) {
        FinishDrag();
        return;
    }
    if (!m_drag_began && (position - m_press_position).manhattanLength() < kDragDistance)
        return;
    DragPoint(position);
    ShowTip({*m_dragged_item});
}

void CGraphView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_last_mouse = event->position().toPoint();
    const std::optional<int> item =
        m_dragged_item ? m_dragged_item
                       : HitItem(m_control->document(), Scale(), event->position());
    FinishDrag();
    if (item)
        emit CellPicked(*item + 1);
}

// Ends a drag wherever it stands; the last accepted value stays.
void CGraphView::FinishDrag() {
    if (!m_dragged_item)
        return;
    m_dragged_item.reset();
    if (m_drag_began)
        m_session->EndDrag();
    m_drag_began = false;
    Redraw();
}
