// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/Command.h"

#include <QObject>

class CGraphControl;
class CGridControl;

/// The commands of the submenu "Points" that work on many rows at once, and the way back to the
/// start.
class RowCommands : public QObject {
    Q_OBJECT

public:
    /// Works on the session and the grid of `dialog`, its parent.
    RowCommands(ProfileSession* session, CGridControl* grid, QWidget* dialog);

    CommandRows Rows();

private:
    void Calculate();
    void InsertSeries();
    void ReturnToStart();
    void Fill();
    void FillLine();
    CGraphControl* chart() const;

    ProfileSession* m_session;  // not owned
    CGridControl* m_grid;       // not owned
    QWidget* m_dialog;          // not owned
};
