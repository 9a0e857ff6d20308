// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/Command.h"

class CGraphView;
class CGridControl;

/// The commands that change what the chart shows, for `CDlgGridChart`. Neither pointer is owned.
CommandRows ChartCommands(CGraphView* view, CGridControl* grid);
