// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SessionBench.h"
#include "chart/CGraphControl.h"
#include "chart/CGraphView.h"
#include "chart/ChartPicture.h"
#include "chart/DragRules.h"

#include <QCoreApplication>
#include <QTest>
#include <QWheelEvent>

#include <memory>

/// A shown chart of a session, in the size the dialog gives it.
struct ChartWindow : SessionBench {
    explicit ChartWindow(ProfileKind kind, const QString& time_texts = QStringLiteral("0|10"),
                         const QString& value_texts = QStringLiteral("1|8")) {
        if (kind == ProfileKind::Function) {
            times = Texts(time_texts);
            values = Texts(value_texts);
        }
        Start(Setup(kind));
        control = std::make_unique<CGraphControl>();
        if (kind == ProfileKind::Function)
            control->BuildFunctionChart();
        else
            control->BuildProfileChart(kind);
        control->Attach(&session->table(), kind);
        view = std::make_unique<CGraphView>(session.get(), control.get());
        view->resize(435, 375);
        view->setFocusPolicy(Qt::NoFocus);  // in the dialog the grid has the keyboard
        view->show();
        Picture();
    }

    std::unique_ptr<CGraphControl> control;
    std::unique_ptr<CGraphView> view;

    QImage Picture() const { return view->grab().toImage(); }
    ChartPicture Exported() const {
        return {control->document(), view->size(), view->font(), view->Zoom().zoom()};
    }

    // Where item `index` stands, or would stand with another value.
    QPoint At(int index) const { return At(index, control->document().items.Place(index).y()); }
    QPoint At(int index, double value) const {
        return view->Scale()
            .ToPixels({control->document().items.Place(index).x(), value})
            .toPoint();
    }

    // What a drag to the height of `point` stores.
    QString Dragged(QPoint point) const {
        const double value = view->Scale().y.ToValue(point.y());
        return AcceptDrag(session->kind(), value).value_or(QString());
    }

    QString Cell(int row) const { return session->table().CellText(row, 2); }

    void Press(QPoint at, Qt::MouseButton button = Qt::LeftButton) const {
        QTest::mousePress(view.get(), button, {}, at);
    }
    void Move(QPoint at) const { QTest::mouseMove(view.get(), at); }
    // Moves with a button held down.
    void Drag(QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers keys = {}) const {
        QMouseEvent event(QEvent::MouseMove, at, view->mapToGlobal(at), Qt::NoButton, button, keys);
        QCoreApplication::sendEvent(view.get(), &event);
    }
    void Wheel(QPoint at, int turn, Qt::KeyboardModifiers keys = {}) const {
        QWheelEvent event(at, view->mapToGlobal(at), {}, {0, turn}, {}, keys, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(view.get(), &event);
    }
    void Release(QPoint at, Qt::MouseButton button = Qt::LeftButton) const {
        QTest::mouseRelease(view.get(), button, {}, at);
    }
};
