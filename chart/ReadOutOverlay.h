// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ReadOut.h"

#include <QFont>
#include <QPointF>
#include <QRect>
#include <QString>
#include <QWidget>

#include <optional>

class CGraphControl;
class CGraphView;
class ProfileSession;

/// Lies over a chart and reads it out: a hair line, and one line of text between title and axes.
/// They follow the mouse over the axes, else the current row while the chart has the keyboard or a
/// value is dragged, else tell of all items. Nothing shows before mouse or keyboard first reach the
/// chart. The text is the chart's description for assistive tools. A frame tells that the chart
/// has the keyboard.
class ReadOutOverlay : public QWidget {
    Q_OBJECT

public:
    /// A child of `view`. No pointer is owned.
    ReadOutOverlay(const ProfileSession* session, const CGraphControl* control, CGraphView* view);

    /// Reads out anew; to be called when the chart was drawn.
    void Refresh();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void Reach();
    std::optional<Reading> ReadPlace();
    QRect TextRect() const;
    QRect HairRect() const;
    QFont TextFont() const;

    const ProfileSession* m_session;
    const CGraphControl* m_control;
    CGraphView* m_view;
    ReadOut m_read_out;
    std::optional<QPointF> m_mouse;  // over the view
    bool m_is_dragging = false;      // with its left button down
    bool m_by_keyboard = false;      // it acted last
    QString m_text;
    std::optional<int> m_hair;  // pixels
};
