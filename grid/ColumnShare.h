// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>

/// Shares `room` pixels among columns that are as wide as `widths` at the start, in all at most
/// that. What is left goes to the columns whose texts need more: first to those that lack least, so
/// that as many as possible show their texts whole. The rest goes to all of them.
QList<int> ShareRoom(QList<int> widths, const QList<int>& needs, int room);
