// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "functioneditor_export.h"

#include <QString>
#include <QStringList>

/// The profile dialog for a C++ program that loads the module: fill the fields, call `Prompt`.
/// Nothing is owned; a null list counts as an empty one, a null name as "".
class InputAPI {
public:
    QStringList* m_pTimeList = nullptr;   ///< the times of a function's points, or the row labels
    QStringList* m_pValueList = nullptr;  ///< the values, entry i belongs to row i
    QStringList* m_pExtraList = nullptr;  ///< daily profiles of monthly and weekly rows
    QString* m_pName = nullptr;           ///< shown in the title; a save of the user may change it

    /// Shows the dialog and returns once the user has closed it: 1 after OK, 2 after Cancel, 0 when
    /// the file to start with was refused or its choice cancelled, -1 when no dialog can be shown:
    /// no display, or not the thread for windows. No exception leaves it.
    ///
    /// `profileKind`: -1 function, 0 annual, 1 monthly, 2 weekly, 3 daily. `displayMode`: 1 open
    /// the file `text`, 2 view it, 3 edit the lists. An empty `text` asks the user for the file.
    ///
    /// When a file was read, at the start or by the user, the lists hold its texts afterwards, as
    /// they were before any rescaling: the times of a function (empty for the other kinds), the
    /// values, the daily profiles. Nothing else changes the lists: edits are in the files that the
    /// user saved.
    FUNCTIONEDITOR_EXPORT int Prompt(int profileKind, int displayMode, QString text);

protected:
    /// Makes the toolkit's application object if the process has none. `Prompt` does so by itself;
    /// further calls do nothing. Returns 1.
    FUNCTIONEDITOR_EXPORT int Init();
};
