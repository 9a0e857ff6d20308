// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <optional>

class CGraphControl;
class ProfileSession;
class QEvent;
class QKeyEvent;

/// The keyboard on a chart: Left, Right, Home and End choose a row, Up and Down change the value of
/// the current one. Such steps are one drag of the session until something else happens.
class ChartKeys : public QObject {
    Q_OBJECT

public:
    /// Neither pointer is owned. The current row is the highlighted item of `control`.
    ChartKeys(ProfileSession* session, const CGraphControl* control);

    /// True when the key is one of these. Up and Down change by `mark`, in units of the values, or
    /// by the least that a drag can store.
    bool Press(const QKeyEvent& event, double mark);

    /// To be called with all events of the chart: another key, a press of the mouse and the loss of
    /// the focus each end the drag.
    void Watch(const QEvent& event);

signals:
    /// This grid row shall become current.
    void RowChosen(int row);

private:
    void Step(double distance);
    void EndSteps();

    ProfileSession* m_session;
    const CGraphControl* m_control;
    std::optional<int> m_dragged_row;  // as long as the session drags
};
