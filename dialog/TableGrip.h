// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include <optional>

/// The grip in the gap between chart and table. It is seen while the mouse is over it.
class TableGrip : public QWidget {
    Q_OBJECT

public:
    explicit TableGrip(QWidget* parent);

signals:
    /// A press begins; an open cell editor is to be closed.
    void PressBegins();
    /// The user drags the grip that many pixels to the right of where it is.
    void Dragged(int by);
    void DoubleClicked();

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<int> m_held_at;  // pixels from the left end
};
