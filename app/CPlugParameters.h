// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/CPlugPoint.h"

#include <QStringList>

#include <utility>

class CPlugExchangeFile;

/// The function's parameters in the exchange file. Line numbers below count from 0: line 10 holds
/// the cycles count, 11 the number of points less one, 12 twice the number of points, and from line
/// 13 on each point has a line with its time and one with its value.
class CPlugParameters {
public:
    /// Reads the file and takes the parameters out of it. Each failure shows its message; what was
    /// read before it stays. `file` must outlive this object.
    void setParameters(CPlugExchangeFile* file);

    qsizetype getPointCount() const { return m_times.size(); }

    /// Part of the given interface, not used by the dialog: it takes all points at once.
    /// @throws std::invalid_argument when i is not in 0 .. getPointCount() - 1
    CPlugPoint getPoint(qsizetype i) const;

    void addPoint(const CPlugPoint& point);
    void clearPoints();

    /// All points at once, as the times and the values of each: lists of the same length. Taking
    /// them leaves no points; setting them drops what has no partner in the other list.
    /// @{
    std::pair<QStringList, QStringList> takePoints();
    void setPoints(QStringList times, QStringList values);
    /// @}

    /// The declared number of point lines; 0 before it was read.
    int pointLineCount() const { return m_point_line_count; }

    /// Puts the points into the lines of the file and writes it. The first point keeps the comments
    /// of the host's lines, the others get fixed ones. Without points a message is shown and
    /// nothing is written. False when the write was refused, by the system or by the user: it can
    /// be tried again, with other points too.
    /// @throws std::invalid_argument when the declared old point lines are not inside the file; the
    /// file and its lines have not changed then
    bool writeFile();

private:
    bool readHeader();
    void readPoints();
    bool readText(qsizetype index, QString& text, qsizetype& missing);

    CPlugExchangeFile* m_file = nullptr;
    int m_cycles_count = 0;
    int m_point_count_minus_one = 0;
    int m_point_line_count = 0;
    // The texts of point i are m_times[i] and m_values[i]: whole lists go to the grid and back
    // without a copy.
    QStringList m_times;
    QStringList m_values;
};
