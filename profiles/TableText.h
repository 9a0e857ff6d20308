// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QChar>
#include <QList>
#include <QString>

class ProfileTable;

/// How cells become a text. With a decimal comma the points of numbers become commas; other texts
/// stay.
struct TableFormat {
    QChar separator;
    QChar decimal_sign;
    bool has_headers;
};

constexpr TableFormat kCopiedTable = {u'\t', u'.', false};
constexpr TableFormat kCopiedTableWithCommas = {u'\t', u',', false};

/// Files with headers. A decimal comma goes with ";" alone: it is a separator in one of the others,
/// and other programs expect a point in the third.
/// @{
constexpr TableFormat kSemicolonFile = {u';', u',', true};
constexpr TableFormat kCommaFile = {u',', u'.', true};
constexpr TableFormat kTabFile = {u'\t', u'.', true};
/// @}

/// All columns of the data rows `rows` (from 1), or of all rows when there are none given: a line
/// a row, each ended by `line_end`. A cell that holds the separator, a quote or a line end is put
/// between double quotes.
QString TableText(const ProfileTable& table, const TableFormat& format, const QList<int>& rows = {},
                  QStringView line_end = u"\n");

/// Writes all rows as a file in UTF-8, which replaces the one at `path` in one step (see
/// `ReplaceFile`). False when the system refuses that.
bool ExportTable(const ProfileTable& table, const TableFormat& format, const QString& path);
