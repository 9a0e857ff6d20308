// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/Command.h"

class CGridControl;

/// The commands that work on the session and the selected cells alone: files, history, clipboard
/// and rows. Neither is owned.
CommandRows EditCommands(ProfileSession* session, CGridControl* grid);
