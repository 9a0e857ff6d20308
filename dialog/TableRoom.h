// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/Command.h"
#include "dialog/DialogTemplate.h"

#include <QObject>

class CGridControl;
class DialogControls;
class QWidget;

/// The room of the table beside the chart, as the user wants it and as the texts in view need it.
/// The grip between both gives any width; a double click on it, or a command, what the texts need
/// and, where that is given already, the former width. Extra width of the window goes to the table
/// first, as far as the texts in view need it. Nothing of it is stored.
class TableRoom : public QObject {
    Q_OBJECT

public:
    /// Nothing is owned; all outlive this object, but for `dialog`, its owner.
    TableRoom(const ProfileSession* session, const DialogControls* controls, QWidget* dialog);

    /// Places the controls in the dialog as large as it is now.
    void Place();

    CommandRows Rows();

signals:
    /// The user or the texts ask for another width; the controls are to be placed anew.
    void Asked();

private:
    QSize Extra() const;
    int StartWidth() const;
    int WidthWith(const TableWidth& width) const;
    int NeededWidth() const;
    int FittingWidth() const;
    bool canToggle() const;
    void Toggle();
    void Ask(int width);
    void FollowTexts();

    const ProfileSession* m_session;
    const DialogControls* m_controls;
    QWidget* m_dialog;
    CGridControl* m_grid;
    TableWidth m_width;
};
