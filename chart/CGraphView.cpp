// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/CGraphView.h"

#include "base/ShownText.h"
#include "chart/CGraphControl.h"
#include "chart/DragRules.h"
#include "chart/ItemPicking.h"
#include "profiles/ProfileSession.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QTextDocument>
#include <QTimer>
#include <QToolTip>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kTipTime = 10000;  // milliseconds

// Pixels. A press that moves less is a click; it changes no value.
constexpr int kDragDistance = 3;

}  // namespace

CGraphView::CGraphView(ProfileSession* session, CGraphControl* control, QWidget* parent)
    : QWidget(parent), m_session(session), m_control(control), m_plot(control->document(), this) {
    setObjectName(u"5001_Chart"_s);
    setAccessibleName(u"Chart"_s);
    setMouseTracking(true);
    connect(m_control, &CGraphControl::Rebuilt, this, [this] {
        // The dragged item may have another index now, or be gone.
        FinishDrag();
        Redraw(Due::Everything);
    });
    connect(m_control, &CGraphControl::ItemsChanged, this, [this] { Redraw(Due::Items); });
}

// Changes are gathered until the next painting.
void CGraphView::Redraw(Due due) {
    m_due = std::max(m_due, due);
    update();
}

void CGraphView::Draw() {
    const Due due = std::exchange(m_due, Due::Nothing);
    if (due == Due::Nothing)
        return;
    if (due == Due::Everything)
        m_plot.Style({size(), font(), palette()});
    // The axes stay still under a drag.
    if (!m_drag)
        m_plot.FitAxes();
    m_plot.Replot();
}

void CGraphView::paintEvent(QPaintEvent*) {
    Draw();
    QPainter painter(this);
    m_plot.PaintGround(painter);
}

// The plot is drawn while the window manager places the window.
void CGraphView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    QTimer::singleShot(0, this, &CGraphView::Draw);
}

void CGraphView::resizeEvent(QResizeEvent*) {
    m_plot.Resize(size());
    Redraw(Due::Everything);
}

void CGraphView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        Redraw(Due::Everything);
}

bool CGraphView::event(QEvent* event) {
    // The release never arrives when a dialog covers the window or the window is hidden.
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::Hide)
        FinishDrag();
    return QWidget::event(event);
}

void CGraphView::contextMenuEvent(QContextMenuEvent* event) {
    // A menu would swallow the release that ends a drag.
    event->setAccepted(m_drag.has_value());
}

QString CGraphView::TipText(int index) const {
    const ProfileKind kind = m_session->kind();
    if (Describe(kind).hasTimes()) {
        const CDocControl& chart = m_control->document();
        return FunctionTip(chart.items.Value(index, 0), chart.items.Value(index, 1));
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
    if (m_tipped_item && !m_drag)
        Hover({-1, -1});
}

void CGraphView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->setAccepted(m_drag.has_value());
        return;
    }
    emit PressBegins();
    FinishDrag();
    m_last_mouse = event->position().toPoint();
    const CDocControl& chart = m_control->document();
    const PlotScale scale = Scale();
    if (const std::optional<int> hit = HitItem(chart, scale, event->position())) {
        // The release has gone to the box that refused an entry.
        if (QGuiApplication::mouseButtons().testFlag(Qt::LeftButton))
            m_drag = ItemDrag{.item = *hit, .press = m_last_mouse};
        emit CellPicked(*hit + 1);
    } else if (m_session->facts().hasTimes()) {
        QList<QPointF> points(chart.items.Count());
        for (int i = 0; i < chart.items.Count(); ++i)
            points[i] = chart.items.Place(i);
        if (const auto picked = PickPoint(points, scale.ToValues(event->position())))
            emit CellPicked(static_cast<int>(*picked) + 1);
    }
}

void CGraphView::DragPoint(QPoint point) {
    if (m_drag) {
        if (!m_drag->began)
            m_session->BeginDrag(m_drag->item + 1);
        m_drag->began = true;
        const double value = Scale().y.ToValue(point.y());
        if (const std::optional<QString> accepted = AcceptDrag(m_session->kind(), value))
            m_session->DragTo(*accepted);
        Redraw(Due::Items);
    }
    m_session->SetModified();
}

void CGraphView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    m_last_mouse = position;
    if (!m_drag) {
        Hover(position);
        return;
    }
    // The release went elsewhere, or a command has ended the drag.
    if (!event->buttons().testFlag(Qt::LeftButton) || (m_drag->began && !m_session->isDragging())) {
        FinishDrag();
        return;
    }
    if (!m_drag->began && (position - m_drag->press).manhattanLength() < kDragDistance)
        return;
    DragPoint(position);
    ShowTip(m_drag->item);
}

void CGraphView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_last_mouse = event->position().toPoint();
    const std::optional<int> item =
        m_drag ? std::optional(m_drag->item)
               : HitItem(m_control->document(), Scale(), event->position());
    FinishDrag();
    if (item)
        emit CellPicked(*item + 1);
}

// Ends a drag wherever it stands; the last accepted value stays.
void CGraphView::FinishDrag() {
    const std::optional<ItemDrag> drag = std::exchange(m_drag, std::nullopt);
    if (!drag)
        return;
    if (drag->began)
        m_session->EndDrag();
    Redraw(Due::Items);
}
