// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "profiles/ProfileTable.h"

/// The rows as the host or the last opened file gave them, to come back to. They share their texts
/// with the table; the first edit of a column copies its list, 24 bytes a row.
class StartRows {
public:
    void Keep(const ProfileTable& table) { m_texts = table.Columns(); }

    const QList<QStringList>& texts() const { return m_texts; }

    /// Whether any text of `table` is another one than at the start. Asked after every edit: first
    /// looks where the last difference was.
    bool Differ(const ProfileTable& table) const;

private:
    QList<QStringList> m_texts;
    mutable qsizetype m_column = 0;
    mutable qsizetype m_row = 0;
};
