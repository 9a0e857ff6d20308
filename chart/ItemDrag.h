// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ChartItems.h"
#include "chart/PlotScale.h"

#include <QPoint>
#include <QString>

class ProfileSession;

/// What follows the pointer in a drag. Without times, and in a column of points that leaves no
/// room, it is the value alone.
enum class DragWay { Value, ValueAndTime };

/// An item in the user's hand, from the press to the release. Of a point that moves in time too the
/// order of the rows stays: its time ends at those of its neighbours, and where it has none at the
/// end of the axis. Without moving in time, or back in the pressed pixel column, it has the time
/// that the drag began with.
class ItemDrag {
public:
    /// Neither pointer is owned; both outlive the drag.
    ItemDrag(ProfileSession* session, const ChartItems* items, int item, QPoint press)
        : m_session(session), m_items(items), m_item(item), m_press(press) {}

    int item() const { return m_item; }

    /// Whether the mouse has not moved far enough yet to change anything.
    bool IsClick(QPoint point) const;

    /// Whether a command has ended the drag since.
    bool WasEnded() const;

    /// Moves the item to `point` of a chart with that scale.
    void MoveTo(QPoint point, const PlotScale& scale, DragWay way);

    /// The last accepted place stays, one step.
    void End();

private:
    QString TimeAt(double time, const AxisScale& axis) const;

    ProfileSession* m_session;
    const ChartItems* m_items;
    int m_item;
    QPoint m_press;
    bool m_began = false;
};
