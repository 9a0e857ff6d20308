// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

/// The pointer's shape over the items of a chart: the directions in which a drag moves them. Shift
/// changes it at once, also while the mouse rests.
class ItemCursor : public QObject {
    Q_OBJECT

public:
    /// `view` is not owned and outlives this object. Its points move in time with Shift only where
    /// they `have_times`.
    ItemCursor(QWidget* view, bool have_times) : m_view(view), m_have_times(have_times) {}

    /// The pointer comes to an item, or leaves it.
    void Show();
    void Hide();

    /// The keys that are down, as an event of the mouse tells them.
    void SetKeys(Qt::KeyboardModifiers keys);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void Update();

    QWidget* m_view;
    bool m_have_times;
    bool m_shown = false;
    bool m_shift = false;
};
