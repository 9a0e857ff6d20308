// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/PointReading.h"

#include <QList>
#include <QStringList>
#include <QStringView>

/// Reads the points of `text`, as the clipboard holds it: one a line, time and value separated by a
/// tab, ";" or two or more blanks. A text of one column holds values; their times go on from the
/// last of `times`, the texts of the present rows, by the distance of the last two of them, or by 1
/// hour where there are no two. A first line without numbers is a header, blank lines are passed
/// over. Numbers are those of `PointNumber`.
PointReading ReadPastedPoints(QStringView text, const QStringList& times);

/// All rows of a function after points were added.
struct InsertedPoints {
    PointTexts points;
    QList<int> rows;  ///< the added ones, from 1, in rising order
};

/// Adds `added` to the points `present`, which keep their order. Each goes before the
/// first row with a greater time, and so behind all equal ones; points with equal times keep their
/// order. Takes n log n steps for n points.
InsertedPoints InsertPoints(const PointTexts& present, const PointTexts& added);
