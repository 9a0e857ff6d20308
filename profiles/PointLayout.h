// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/PointCells.h"

#include <QList>
#include <QString>
#include <QStringList>

/// One way to read the lines of a text file as columns.
struct PointLayout {
    ColumnSeparator separator = ColumnSeparator::None;
    qsizetype columns = 0;
    QList<qsizetype> numeric;  ///< the columns of numbers, from 0

    friend bool operator==(const PointLayout&, const PointLayout&) = default;
};

/// More columns of a line are not looked at.
constexpr qsizetype kMaxColumns = 256;

/// The layouts by which most of `lines` are rows of numbers, the likeliest first: more than one
/// when the lines do not tell, none when no layout gives a column of numbers. The lines are the
/// first ones of a file without comments and blank lines; headers and some wrong lines among them
/// do no harm.
QList<PointLayout> FindLayouts(const QStringList& lines);
