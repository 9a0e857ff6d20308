// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dialog/Command.h"

class CGraphControl;
class CGraphView;
class CGridControl;

/// The commands that change what the chart shows, for `CDlgGridChart`. No pointer is owned.
CommandRows ChartCommands(CGraphControl* chart, CGraphView* view, CGridControl* grid);
