// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// One point of the function. Both members are the very texts of the file or the grid; nothing
/// turns them into numbers on their way through.
struct CPlugPoint {
    QString time;   ///< abscissa, in hours
    QString value;  ///< the function's value at that time

    friend bool operator==(const CPlugPoint&, const CPlugPoint&) = default;
};
