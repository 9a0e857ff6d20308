// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/GridClipboard.h"

#include "base/Message.h"
#include "grid/PasteRules.h"
#include "grid/PasteStore.h"
#include "profiles/EntryRules.h"
#include "profiles/ProfileSession.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// The number of rows and columns of a clipboard text. It is found before the text is split: a text
// that does not fit may be of any size.
struct TextSize {
    int rows = 0;
    int columns = 0;
};

TextSize SizeOf(const QString& text) {
    const auto line_ends = static_cast<int>(text.count(u'\n'));
    int columns = 1;
    int tabs = 0;
    for (const QChar c : text) {
        tabs = c == u'\n' ? 0 : tabs + (c == u'\t' ? 1 : 0);
        columns = std::max(columns, tabs + 1);
    }
    return {text.endsWith(u'\n') ? line_ends : line_ends + 1, columns};
}

// The cells of a clipboard text. One line end at the end of the text ends its last row.
QList<QStringList> CellsOf(QString text) {
    text.replace(u"\r\n"_s, u"\n"_s);
    if (text.endsWith(u'\n'))
        text.chop(1);
    QList<QStringList> cells;
    for (const QString& line : text.split(u'\n'))
        cells.append(line.split(u'\t'));
    return cells;
}

}  // namespace

bool GridClipboard::Copy(const GridSelection& selection) {
    if (m_session->isViewOnly())
        return false;
    QList<int> counted_rows = selection.rows;
    if (selection.whole_column && !selection.rows.isEmpty())
        counted_rows.prepend(0);
    if (const QString refusal = CopyRefusal(counted_rows, selection.columns); !refusal.isEmpty()) {
        ShowMessage(refusal, MessageIcon::Information);
        return false;
    }
    m_copied_column = selection.columns.first();
    m_copied_texts.clear();
    for (const int row : selection.rows)
        m_copied_texts.append(m_session->table().CellText(row, m_copied_column));
    QGuiApplication::clipboard()->setText(m_copied_texts.join(u'\n'));
    return true;
}

void GridClipboard::Paste(const GridSelection& selection) {
    m_session->ClearSaved();
    const QString text = QGuiApplication::clipboard()->text();
    const bool own = !m_copied_texts.isEmpty() && text == m_copied_texts.join(u'\n');
    if (selection.rows.isEmpty() || selection.columns.isEmpty() || (text.isEmpty() && !own) ||
        m_session->isViewOnly())
        return;

    const TextSize size = own ? TextSize{static_cast<int>(m_copied_texts.size()), 1} : SizeOf(text);
    PasteRequest request;
    request.kind = m_session->kind();
    request.foreign = !own;
    request.copied_column = own ? m_copied_column : 0;
    request.copied_rows = size.rows;
    request.foreign_columns = size.columns;
    request.rows = selection.rows;
    request.columns = selection.columns;
    request.row_count = m_session->table().RowCount();
    if (const QString refusal = PasteRefusal(request); !refusal.isEmpty()) {
        ShowMessage(refusal, MessageIcon::Information);
        return;
    }
    QList<QStringList> cells;
    if (!own)
        cells = CellsOf(text);
    for (int i = 0; own && i < PastedRowCount(request); ++i)
        cells.append(QStringList(m_copied_texts[i]));
    if (!m_session->facts().coefficients)
        StorePaste(*m_session, cells, selection.rows.first(), selection.columns.first(),
                   own ? PasteSource::OwnCopy : PasteSource::Foreign);
    else if (!PasteCoefficients(cells, selection.rows.first()))
        return;
    if (selection.whole_column)
        m_session->RewriteHeaders();
}

// All or nothing: one wrong value leaves the column as it was.
bool GridClipboard::PasteCoefficients(const QList<QStringList>& cells, int first_row) {
    QStringList column = m_session->table().Column(ProfileTable::kValueColumn);
    for (qsizetype i = 0; i < cells.size(); ++i) {
        const auto number = CheckNumber(cells[i].first(), EntrySource::Pasted);
        if (!number)
            return false;
        column[first_row - 1 + i] = *number;
    }
    if (const QString refusal = BulkRefusal(m_session->kind(), column); !refusal.isEmpty()) {
        ShowMessage(refusal, MessageIcon::Information);
        return false;
    }
    m_session->EnterColumn(column, first_row);
    m_session->SetModified();
    return true;
}
