// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/Command.h"
#include "profiles/PointReading.h"

#include <QObject>
#include <QString>

class CGridControl;
class QWidget;
struct TableFormat;

/// The commands of the submenu "Points": points and tables from and to other programs.
class PointCommands : public QObject {
    Q_OBJECT

public:
    /// Works on the session and the grid of `dialog`, its parent.
    PointCommands(ProfileSession* session, CGridControl* grid, QWidget* dialog);

    CommandRows Rows();

private:
    void InsertCopied();
    void CopyTable(const TableFormat& format) const;
    void Import();
    void Export();

    ProfileSession* m_session;  // not owned
    CGridControl* m_grid;       // not owned
    QWidget* m_dialog;          // not owned
    QString m_folder;           // of the file chosen last
};
