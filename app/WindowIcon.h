// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

/// The icon of the editor's windows, in the sizes that window managers ask for.
QIcon WindowIcon();
