// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/StartRows.h"

#include <algorithm>

bool StartRows::Differ(const ProfileTable& table) const {
    const QList<QStringList>& now = table.Columns();
    if (m_texts.isEmpty() || now.first().size() != m_texts.first().size())
        return !m_texts.isEmpty();
    if (m_row < now.first().size() && now[m_column][m_row] != m_texts[m_column][m_row])
        return true;
    for (qsizetype column = 0; column < now.size(); ++column) {
        if (now[column].isSharedWith(m_texts[column]))
            continue;
        const auto [at, other] =
            std::mismatch(now[column].cbegin(), now[column].cend(), m_texts[column].cbegin());
        if (at == now[column].cend())
            continue;
        m_column = column;
        m_row = at - now[column].cbegin();
        return true;
    }
    return false;
}
