// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/Command.h"

#include <QString>

/// The Aide-mémoire as rich text: the menu and the keys of `commands` with their help, then what
/// else keys and mouse do, and the limits.
QString ReminderText(const CommandRows& commands);
