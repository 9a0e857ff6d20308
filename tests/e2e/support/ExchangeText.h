// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TestFiles.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <utility>

/// Time and value of each point, as they stand in the file.
using Points = QList<std::pair<QByteArray, QByteArray>>;

/// An exchange file as a host writes it, with the host's own comments on all point lines.
QByteArray HostFile(const Points& points);

/// The same file with these points as the editor writes it: only the first point keeps the host's
/// comments, and the line end of the last line has become an empty line.
QByteArray SavedFile(const Points& points);

/// The points of an exchange file.
Points PointsOf(const QByteArray& file);
