// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/TableText.h"

#include "base/EnglishAtof.h"
#include "base/FileReplace.h"
#include "profiles/ProfileTable.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

QString CellOf(QString text, const TableFormat& format) {
    if (format.decimal_sign != u'.' && IsNumber(text))
        text.replace(u'.', format.decimal_sign);
    const bool is_plain = std::none_of(text.cbegin(), text.cend(), [&](QChar c) {
        return c == format.separator || c == u'"' || c == u'\n' || c == u'\r';
    });
    return is_plain ? text : u'"' + text.replace(u"\""_s, u"\"\""_s) + u'"';
}

}  // namespace

QString TableText(const ProfileTable& table, const TableFormat& format, const QList<int>& rows,
                  QStringView line_end) {
    QList<int> lines = table.DataRows(rows);
    if (rows.isEmpty()) {
        lines.resize(table.RowCount());
        std::iota(lines.begin(), lines.end(), 1);
    }
    if (format.has_headers)
        lines.prepend(0);
    QString text;
    for (const int row : std::as_const(lines)) {
        for (int column = 1; column <= table.ColumnCount(); ++column) {
            if (column > 1)
                text += format.separator;
            text += CellOf(table.CellText(row, column), format);
        }
        text += line_end;
    }
    return text;
}

bool ExportTable(const ProfileTable& table, const TableFormat& format, const QString& path) {
    const QString line_end = QString::fromLatin1(kPlatformLineEnd);
    return ReplaceFile(AbsolutePath(path), TableText(table, format, {}, line_end).toUtf8());
}
