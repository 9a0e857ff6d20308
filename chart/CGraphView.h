// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ChartPlot.h"

#include <QPoint>
#include <QWidget>

#include <optional>

class CGraphControl;
class ProfileSession;

/// Shows the chart of a CGraphControl. The user reads items in tips and drags them. A dragged value
/// goes into the session's table and comes back through the control, so chart and grid always show
/// the same numbers. Neither pointer is owned; both outlive the view.
class CGraphView : public QWidget {
    Q_OBJECT

public:
    CGraphView(ProfileSession* session, CGraphControl* control, QWidget* parent = nullptr);

    /// Shows the tip of the item `index` at the last mouse position, for 10 seconds.
    void ShowTip(int index);

    /// Moves the item that is being dragged to the height of `point`. Marks the session as
    /// modified, also when nothing is being dragged.
    void DragPoint(QPoint point);

    /// The mapping between axis units and the pixels of this widget, as drawn last.
    PlotScale Scale() const { return m_plot.Scale(); }

signals:
    /// A press on the chart begins; an open cell editor is to be closed.
    void PressBegins();
    /// The item of this grid row was picked.
    void CellPicked(int row);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    /// What the next painting draws anew.
    enum class Due { Nothing, Items, Everything };

    /// An item in the user's hand, from the press to the release.
    struct ItemDrag {
        int item = 0;
        QPoint press;
        bool began = false;  ///< the mouse has moved far enough to change values
    };

    void Redraw(Due due);
    void Draw();
    void Hover(QPoint position);
    void FinishDrag();
    QString TipText(int index) const;

    ProfileSession* m_session;
    CGraphControl* m_control;
    ChartPlot m_plot;
    Due m_due = Due::Everything;

    QPoint m_last_mouse;
    std::optional<int> m_tipped_item;
    std::optional<ItemDrag> m_drag;
};
