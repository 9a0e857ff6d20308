// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ChartKeys.h"
#include "chart/ChartPlot.h"
#include "chart/ItemCursor.h"
#include "chart/ItemDrag.h"
#include "chart/ViewZoom.h"

#include <QPoint>
#include <QWidget>

#include <memory>
#include <optional>

class CGraphControl;
class ProfileSession;
class ReadOutOverlay;

/// Shows the chart of a CGraphControl. The user reads items in tips and drags them. A dragged value
/// goes into the session's table and comes back through the control, so chart and grid always show
/// the same numbers. By keyboard the user goes from item to item and changes values in steps.
/// Neither pointer is owned; both outlive the view.
class CGraphView : public QWidget {
    Q_OBJECT

public:
    CGraphView(ProfileSession* session, CGraphControl* control, QWidget* parent = nullptr);
    ~CGraphView() override;

    /// Shows the tip of the item `index` at the last mouse position, for 10 seconds.
    void ShowTip(int index);

    /// Moves the item that is being dragged to the height of `point`, and a function's point in
    /// time as well if asked to. Marks the session as modified, also when nothing is being dragged.
    void DragPoint(QPoint point, DragWay way = DragWay::Value);

    /// The mapping between axis units and the pixels of this widget, as drawn last.
    PlotScale Scale() const { return m_plot.Scale(); }

    /// See ChartPlot::KeepFreeAboveAxes.
    void KeepFreeAboveAxes(int height) {
        m_plot.KeepFreeAboveAxes(height);
        update();
    }

    ViewZoom& Zoom() { return m_zoom; }

    /// Pans to the item of this grid row if it is out of a zoomed chart's view. A drag holds it
    /// where it is.
    void BringIntoView(int row);

signals:
    /// A press on the chart begins; an open cell editor is to be closed.
    void PressBegins();
    /// The item of this grid row was picked, by mouse or keyboard.
    void CellPicked(int row);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    /// What the next painting draws anew.
    enum class Due { Nothing, Axes, Items, Everything };

    void Redraw(Due due);
    void Draw();
    bool IsInView(QPointF position) const;
    std::optional<int> ItemAt(QPointF position) const;
    void Hover(QPoint position);
    void FinishDrag();
    QString TipText(int index) const;

    ProfileSession* m_session;
    CGraphControl* m_control;
    ChartKeys m_keys;  // first: a child of the view sends an event that it looks at
    ChartPlot m_plot;
    ViewZoom m_zoom;
    // A child over all others. It looks at the plot until it ends.
    std::unique_ptr<ReadOutOverlay> m_read_out;
    Due m_due = Due::Everything;

    QPoint m_last_mouse;
    ItemCursor m_cursor;
    std::optional<int> m_tipped_item;
    std::optional<ItemDrag> m_drag;
};
