// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/CGraphView.h"

#include "base/ShownText.h"
#include "chart/CGraphControl.h"
#include "chart/DragRules.h"
#include "chart/ItemDrag.h"
#include "chart/ItemPicking.h"
#include "chart/ReadOutOverlay.h"
#include "profiles/ProfileSession.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTextDocument>
#include <QTimer>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kTipTime = 10000;  // milliseconds

// Pixels around the axes in which an item still shows.
constexpr double kItemRoom = 5.0;

}  // namespace

CGraphView::CGraphView(ProfileSession* session, CGraphControl* control, QWidget* parent)
    : QWidget(parent),
      m_session(session),
      m_control(control),
      m_keys(session, control),
      m_plot(control->document(), this),
      m_zoom(&m_plot, control, this),
      m_read_out(std::make_unique<ReadOutOverlay>(session, control, this)),
      m_cursor(this, session->facts().hasTimes()) {
    setObjectName(u"5001_Chart"_s);
    setAccessibleName(u"Chart"_s);
    setMouseTracking(true);
    // A click leaves the keyboard where it is, like one on a button.
    setFocusPolicy(Qt::TabFocus);
    connect(&m_keys, &ChartKeys::RowChosen, this, &CGraphView::CellPicked);
    connect(m_control, &CGraphControl::Rebuilt, this, [this] {
        // The dragged item may have another index now, or be gone.
        FinishDrag();
        Redraw(Due::Everything);
    });
    connect(m_control, &CGraphControl::ItemsChanged, this, [this] { Redraw(Due::Items); });
    connect(&m_zoom, &ViewZoom::PartChanged, this, [this] { Redraw(Due::Axes); });
}

CGraphView::~CGraphView() = default;

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
    if (!m_drag && due >= Due::Items)
        m_zoom.SetFitted(m_plot.FittedAxes());
    m_plot.SetAxes(m_zoom.zoom().Visible(), m_zoom.zoom().Fitted());
    m_plot.Replot();
    m_zoom.PlaceBar();
    m_read_out->Refresh();
}

void CGraphView::BringIntoView(int row) {
    if (!m_drag && m_zoom.isZoomed())
        m_zoom.BringIntoView(row);
}

void CGraphView::wheelEvent(QWheelEvent* event) {
    if (m_drag || m_zoom.isPanning())
        return;
    Hover({-1, -1});
    m_zoom.Turn(*event);
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
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::Hide) {
        FinishDrag();
        m_zoom.EndPan();
    }
    m_keys.Watch(*event);
    return QWidget::event(event);
}

// Tab alone goes on by itself.
void CGraphView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab)
        focusNextPrevChild(event->key() == Qt::Key_Tab);
    else if (!m_keys.Press(*event, m_plot.SmallMark()))
        QWidget::keyPressEvent(event);
    else if (const auto item = m_control->document().items.FirstHighlighted())
        BringIntoView(*item + 1);
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

// What is out of view cannot be picked. Without a zoom there is no such thing.
bool CGraphView::IsInView(QPointF position) const {
    const PlotScale scale = Scale();
    const QRectF axes(QPointF(scale.x.from, scale.y.to), QPointF(scale.x.to, scale.y.from));
    return !m_zoom.isZoomed() ||
           axes.adjusted(-kItemRoom, -kItemRoom, kItemRoom, kItemRoom).contains(position);
}

std::optional<int> CGraphView::ItemAt(QPointF position) const {
    return IsInView(position) ? HitItem(m_control->document(), Scale(), position) : std::nullopt;
}

void CGraphView::Hover(QPoint position) {
    const std::optional<int> hit = ItemAt(position);
    if (hit == m_tipped_item)
        return;
    if (hit) {
        ShowTip(*hit);
        m_cursor.Show();
    } else {
        QToolTip::hideText();
        m_cursor.Hide();
    }
    m_tipped_item = hit;
}

void CGraphView::leaveEvent(QEvent*) {
    if (m_tipped_item && !m_drag)
        Hover({-1, -1});
}

void CGraphView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton && !m_drag) {
        emit PressBegins();
        Hover({-1, -1});
        m_zoom.BeginPan(event->position());
        return;
    }
    if (event->button() != Qt::LeftButton || m_zoom.isPanning()) {
        event->setAccepted(m_drag || m_zoom.isPanning());
        return;
    }
    emit PressBegins();
    FinishDrag();
    m_last_mouse = event->position().toPoint();
    const CDocControl& chart = m_control->document();
    const PlotScale scale = Scale();
    if (const std::optional<int> hit = ItemAt(event->position())) {
        // The release has gone to the box that refused an entry.
        if (QGuiApplication::mouseButtons().testFlag(Qt::LeftButton))
            m_drag.emplace(m_session, &chart.items, *hit, m_last_mouse);
        emit CellPicked(*hit + 1);
    } else if (m_session->facts().hasTimes() && IsInView(event->position())) {
        QList<QPointF> points(chart.items.Count());
        for (int i = 0; i < chart.items.Count(); ++i)
            points[i] = chart.items.Place(i);
        if (const auto picked = PickPoint(points, scale.ToValues(event->position())))
            emit CellPicked(static_cast<int>(*picked) + 1);
    }
}

void CGraphView::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
    if (event->button() == Qt::LeftButton && !ItemAt(event->position()))
        m_zoom.ShowAll();
}

void CGraphView::DragPoint(QPoint point, DragWay way) {
    if (m_drag) {
        m_drag->MoveTo(point, Scale(), way);
        Redraw(Due::Items);
    }
    m_session->SetModified();
}

void CGraphView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    m_last_mouse = position;
    m_cursor.SetKeys(event->modifiers());
    if (m_zoom.isPanning()) {
        m_zoom.PanTo(event->position());
        if (!event->buttons().testFlag(Qt::MiddleButton))
            m_zoom.EndPan();
        return;
    }
    if (!m_drag) {
        Hover(position);
        return;
    }
    // The release went elsewhere, or a command has ended the drag.
    if (!event->buttons().testFlag(Qt::LeftButton) || m_drag->WasEnded()) {
        FinishDrag();
        return;
    }
    if (m_drag->IsClick(position))
        return;
    const bool in_time = event->modifiers().testFlag(Qt::ShiftModifier);
    DragPoint(position, in_time ? DragWay::ValueAndTime : DragWay::Value);
    ShowTip(m_drag->item());
}

void CGraphView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton)
        m_zoom.EndPan();
    if (event->button() != Qt::LeftButton || m_zoom.isPanning())
        return;
    m_last_mouse = event->position().toPoint();
    const std::optional<int> item =
        m_drag ? std::optional(m_drag->item()) : ItemAt(event->position());
    FinishDrag();
    if (item)
        emit CellPicked(*item + 1);
}

// Ends a drag wherever it stands.
void CGraphView::FinishDrag() {
    std::optional<ItemDrag> drag = std::exchange(m_drag, std::nullopt);
    if (!drag)
        return;
    drag->End();
    Redraw(Due::Items);
}
