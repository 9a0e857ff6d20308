// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileSession.h"

#include <QString>
#include <QStringList>

#include <optional>

// Runs the dialog inside a host's process.

/// Result of a call that could not show a dialog.
inline constexpr int kNoDialog = -1;

/// Makes the toolkit's application object if the process has none and a display answers. It stays
/// until the process ends; the calling thread is the one for windows from then on. The process
/// keeps its locale for numbers, dates and sorting.
void MakeApplication();

/// True when the process can show windows and this is the thread for them.
bool CanShowDialog();

/// The result of a closed dialog.
struct DialogOutcome {
    int result = kNoDialog;                   ///< of `CDlgGridChart::DoModal`
    QString name;                             ///< the profile's name for the caller
    std::optional<ProfileContent> last_read;  ///< the texts of the file read last, if any was
    /// The rows as they stand in the grid, after OK only.
    /// @{
    QStringList labels;
    QStringList values;
    QStringList names;
    /// @}
};

/// A window of the display, such as an X11 window id or an HWND; 0 for none.
using WindowId = unsigned long long;

/// Shows the dialog, with the process's messages and file dialogs as windows meanwhile. The window
/// manager keeps it above `parent` where the display supports windows of other programs.
DialogOutcome RunDialog(SessionSetup setup, WindowId parent = 0);
