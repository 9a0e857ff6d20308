// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileKind.h"

#include <QList>
#include <QString>
#include <QStringList>

/// Rows that can be copied at a time.
inline constexpr qsizetype kMaxCopiedRows = 25;

/// Why the selection may not be copied, or "" when it may. Rows and columns are grid numbers; a
/// whole column selected by its header includes row 0.
QString CopyRefusal(const QList<int>& rows, const QList<int>& columns);

/// What is to be pasted and where.
struct PasteRequest {
    int copied_column = 0;  ///< 0 before any copy and for text of other programs
    int copied_rows = 0;
    QList<int> rows;          ///< selected rows
    QList<int> columns;       ///< selected columns
    int row_count = 0;        ///< data rows of the grid
    bool foreign = false;     ///< the text comes from another program: its column is not known
    int foreign_columns = 1;  ///< columns of such a text
    ProfileKind kind = ProfileKind::Function;
};

/// The rows a paste fills: `copied_rows`, or 1 when that is below 1 or, for the grid's own copies,
/// above the row count.
int PastedRowCount(const PasteRequest& request);

/// Why the paste is refused, or "" when it may go ahead. Without a selection there is nothing to
/// paste into and nothing to say.
QString PasteRefusal(const PasteRequest& request);

/// The message when a value of a pasted coefficient column is negative or above the bound of
/// `kind`, or "" when all are right. All rows are looked at.
QString BulkRefusal(ProfileKind kind, const QStringList& column);
