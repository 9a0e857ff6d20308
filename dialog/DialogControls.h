// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/DialogTemplate.h"

#include <QHash>
#include <QRect>

#include <span>

class ProfileSession;
class QDialog;
class QWidget;

/// The widgets of a dialog template, by their ids.
class DialogControls {
public:
    DialogControls() = default;

    /// Gives `dialog` the templates' font and creates a child widget for each control, at the
    /// template's place. The dialog owns the widgets. A grid works on `session`.
    DialogControls(std::span<const ControlTemplate> controls, QDialog* dialog,
                   ProfileSession* session);

    /// Null when there is no control of that id.
    QWidget* operator[](int id) const { return m_widgets.value(id); }

    /// Null when there is no control of that id and class.
    template <typename Widget>
    Widget* Get(int id) const {
        return qobject_cast<Widget*>(m_widgets.value(id));
    }

    /// Moves the controls to `places`, by their ids in pixels.
    void Place(const QHash<int, QRect>& places) const;

private:
    QHash<int, QWidget*> m_widgets;
};
