// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ReadOutOverlay.h"

#include "base/ColourContrast.h"
#include "base/QtColour.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "chart/IndexLabels.h"
#include "profiles/ProfileSession.h"

#include <QAbstractItemModel>
#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QRegion>
#include <QSinglePointEvent>
#include <QStringList>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// Pixels.
constexpr int kTextHeight = 11;
constexpr int kAboveAxes = 3;
constexpr int kFocusFrame = 2;
constexpr int kElideStep = 8;

constexpr Colour kHairColour = {110, 110, 110};

// A line that is too wide loses the middles of its widest texts: long numbers and names.
QString Fitted(const QString& line, const QFontMetrics& metrics, int width) {
    const QString gap = kReadOutGap.toString();
    const QString bar = kReadOutBar.toString();
    QString fitted = line;
    for (int most = width; metrics.horizontalAdvance(fitted) > width && most > 0;
         most -= kElideStep) {
        QStringList parts = line.split(gap);
        for (QString& part : parts) {
            QStringList texts = part.split(bar);
            for (QString& text : texts)
                text = metrics.elidedText(text, Qt::ElideMiddle, most);
            part = texts.join(bar);
        }
        fitted = parts.join(gap);
    }
    return fitted;
}

}  // namespace

ReadOutOverlay::ReadOutOverlay(const ProfileSession* session, const CGraphControl* control,
                               CGraphView* view)
    : QWidget(view),
      m_session(session),
      m_control(control),
      m_view(view),
      m_read_out(session->kind(), &control->document(), &session->table()) {
    setObjectName(u"5001_ReadOut"_s);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    view->installEventFilter(this);
    const ProfileTable* const table = &session->table();
    const auto forget = [this] { m_read_out.Forget(); };
    connect(table, &QAbstractItemModel::dataChanged, this, forget);
    connect(table, &QAbstractItemModel::rowsInserted, this, forget);
    connect(table, &QAbstractItemModel::rowsRemoved, this, forget);
    connect(table, &QAbstractItemModel::modelReset, this, forget);
}

bool ReadOutOverlay::eventFilter(QObject* object, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseMove:
        case QEvent::MouseButtonRelease:
        case QEvent::Wheel: {
            const auto* const mouse = static_cast<QSinglePointEvent*>(event);
            m_mouse = mouse->position();
            m_is_dragging = mouse->buttons().testFlag(Qt::LeftButton);
            m_by_keyboard = false;
            Reach();
            break;
        }
        case QEvent::Leave:
            m_mouse.reset();
            Refresh();
            break;
        case QEvent::FocusIn:
        case QEvent::FocusOut:
            m_by_keyboard = event->type() == QEvent::FocusIn;
            Reach();
            update();
            break;
        case QEvent::KeyPress:
            m_by_keyboard = true;
            Refresh();
            break;
        case QEvent::Resize: setGeometry(m_view->rect()); break;
        default: break;
    }
    return QWidget::eventFilter(object, event);
}

void ReadOutOverlay::Reach() {
    if (isHidden()) {
        setGeometry(m_view->rect());
        raise();
        show();
        m_view->KeepFreeAboveAxes(TextRect().height() + kAboveAxes);
    }
    Refresh();
}

std::optional<Reading> ReadOutOverlay::ReadPlace() {
    const PlotScale scale = m_view->Scale();
    const ChartItems& items = m_control->document().items;
    const auto is_over_axes = [&scale](QPointF at) {
        return at.x() >= scale.x.from && at.x() <= scale.x.to && at.y() >= scale.y.to &&
               at.y() <= scale.y.from;
    };
    const bool is_dragging = m_is_dragging && m_session->isDragging();
    if (m_mouse && !m_by_keyboard && !is_dragging && is_over_axes(*m_mouse))
        return m_read_out.At(scale, *m_mouse);
    const std::optional<int> current = items.FirstHighlighted();
    if (current && (m_view->hasFocus() || is_dragging))
        return m_read_out.Of(scale, *current);
    return {};
}

void ReadOutOverlay::Refresh() {
    if (isHidden())
        return;
    const PlotScale scale = m_view->Scale();
    const std::optional<Reading> reading = ReadPlace();
    std::optional<int> hair;
    if (reading && scale.x.Shows(reading->place))
        hair = static_cast<int>(std::lround(scale.x.ToPixel(reading->place)));
    if (hair != m_hair) {
        update(HairRect());
        m_hair = hair;
        update(HairRect());
    }
    const QString text = reading ? reading->text : m_read_out.Whole(scale);
    if (text != m_text) {
        m_text = text;
        update(TextRect());
        m_view->setAccessibleDescription(text);
    }
}

// Between title and axes.
QRect ReadOutOverlay::TextRect() const {
    const int bottom = static_cast<int>(std::lround(m_view->Scale().y.to)) - kAboveAxes;
    const int height = QFontMetrics(TextFont()).height();
    return {kPlotMargin, bottom - height, width() - 2 * kPlotMargin, height};
}

QRect ReadOutOverlay::HairRect() const {
    const AxisScale axis = m_view->Scale().y;
    const int top = static_cast<int>(std::lround(axis.to));
    return m_hair ? QRect(*m_hair, top, 1, static_cast<int>(std::lround(axis.from)) - top)
                  : QRect();
}

QFont ReadOutOverlay::TextFont() const {
    QFont font = m_view->font();
    font.setPixelSize(kTextHeight);
    return font;
}

void ReadOutOverlay::paintEvent(QPaintEvent*) {
    const Colour base = ToColour(palette().color(QPalette::Base));
    QPainter painter(this);
    if (m_hair)
        painter.fillRect(HairRect(), ToQColor(LegibleOn(base, kHairColour)));
    // From the axis on, where it fits there.
    const QRect room = TextRect();
    const QFontMetrics metrics(TextFont());
    const QString text = Fitted(m_text, metrics, room.width());
    const int axis = static_cast<int>(std::lround(m_view->Scale().x.from));
    const int free = room.right() + 1 - metrics.horizontalAdvance(text);
    painter.setFont(TextFont());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(
        QPoint(std::max(std::min(axis, free), room.left()), room.top() + metrics.ascent()), text);
    if (m_view->hasFocus()) {
        const QColor frame =
            ToQColor(LegibleOn(base, ToColour(palette().color(QPalette::Highlight))));
        QRegion edge(rect());
        edge -= rect().adjusted(kFocusFrame, kFocusFrame, -kFocusFrame, -kFocusFrame);
        for (const QRect& part : edge)
            painter.fillRect(part, frame);
    }
}
