// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/ColumnRoom.h"

#include "grid/ColumnShare.h"
#include "grid/GridCellDelegate.h"
#include "grid/GridHeader.h"
#include "profiles/ProfileKind.h"

#include <QHeaderView>
#include <QStyle>
#include <QTableView>

#include <algorithm>
#include <numeric>
#include <utility>

// Row numbers and scroll bar.
int ColumnRoom::Around() const {
    return m_grid->width() - m_grid->viewport()->width();
}

QList<int> ColumnRoom::StartWidths(int start) const {
    if (m_facts.columnsWidth() > 0)
        return QList<int>(m_facts.column_widths.begin(),
                          m_facts.column_widths.begin() + m_facts.columns);
    return QList<int>(m_facts.columns, (start - Around()) / std::max(m_facts.columns, 1));
}

// A title has as many lines as the header is high.
int ColumnRoom::TitleNeed(int column) const {
    const QHeaderView& titles = *m_grid->horizontalHeader();
    const QFontMetrics metrics = titles.fontMetrics();
    const QString title =
        titles.model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    int widest_word = 0;
    for (const QString& word : title.split(u' '))
        widest_word = std::max(widest_word, metrics.horizontalAdvance(word));
    const QRect room(0, 0, widest_word, titles.height());
    const bool wraps =
        metrics.boundingRect(room, Qt::TextWordWrap, title).height() <= titles.height();
    const int margin = titles.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &titles);
    return (wraps ? widest_word : metrics.horizontalAdvance(title)) + 2 * margin;
}

QList<int> ColumnRoom::Needs() const {
    const QAbstractItemModel& rows = *m_grid->model();
    const int first = std::max(m_grid->rowAt(0), 0);
    const int below = m_grid->rowAt(m_grid->viewport()->height() - 1);
    const int last = below >= 0 ? below : rows.rowCount() - 1;
    const int line = m_grid->showGrid() ? 1 : 0;
    QList<int> needs;
    for (int column = 0; column < m_facts.columns; ++column) {
        int need = TitleNeed(column);
        for (int row = first; row <= last; ++row) {
            const QString text = rows.index(row, column).data().toString();
            need = std::max(need, GridCellDelegate::CellWidth(text, *m_grid) + line);
        }
        needs.append(need);
    }
    return needs;
}

int ColumnRoom::NeededWidth(int start) const {
    const QList<int> widths = StartWidths(start);
    const QList<int> needs = Needs();
    int needed = Around();
    for (int column = 0; column < widths.size(); ++column)
        needed += std::max(widths[column], needs[column]);
    return std::max(needed, start);
}

void ColumnRoom::Share(int start) {
    const bool was_wide = std::exchange(m_start, m_grid->width() > start ? start : 0) > 0;
    if (m_start == 0) {
        if (was_wide)
            LayOutColumns(m_grid, m_facts);
        return;
    }
    QHeaderView& titles = *m_grid->horizontalHeader();
    titles.setSectionResizeMode(QHeaderView::Fixed);
    const QList<int> widths = ShareRoom(StartWidths(start), Needs(), m_grid->viewport()->width());
    for (int column = 0; column < widths.size(); ++column)
        titles.resizeSection(column, widths[column]);
}

void ColumnRoom::Refit() {
    if (m_start == 0)
        return;
    const QList<int> needs = Needs();
    for (int column = 0; column < needs.size(); ++column) {
        if (needs[column] > m_grid->columnWidth(column)) {
            Share(m_start);
            return;
        }
    }
}
