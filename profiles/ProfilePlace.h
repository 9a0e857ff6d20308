// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// Where a profile lies: the file that was read or written last.
struct ProfilePlace {
    QString path;         ///< absolute
    QByteArray line_end;  ///< of the file when it was read; empty for the platform's own

    /// The name under which the last save can be found again; "" before one, and after one that
    /// cannot be found by name.
    QString saved_name;
};
