#include "grid/GridClipboard.h"

#include "app/Message.h"
#include "grid/EntryStore.h"
#include "grid/PasteRules.h"
#include "profiles/ProfileSession.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>
#include <numeric>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

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
    QStringList lines;
    for (const int row : selection.rows)
        lines.append(m_session->table().CellText(row, selection.columns.first()));
    m_copied_column = selection.columns.first();
    m_copied_row_count = static_cast<int>(lines.size());
    m_copied_text = lines.join(u'\n');
    QGuiApplication::clipboard()->setText(m_copied_text);
    return true;
}

void GridClipboard::Paste(const GridSelection& selection) {
    m_session->ClearSaved();
    const QString text = QGuiApplication::clipboard()->text();
    if (selection.rows.isEmpty() || selection.columns.isEmpty() || text.isEmpty() ||
        m_session->isViewOnly())
        return;
    QList<QStringList> cells = CellsOf(text);
    const bool own = m_copied_row_count > 0 && text == m_copied_text;

    PasteRequest request;
    request.kind = m_session->kind();
    request.foreign = !own;
    request.copied_column = own ? m_copied_column : 0;
    request.copied_rows = own ? m_copied_row_count : static_cast<int>(cells.size());
    for (const QStringList& line : std::as_const(cells))
        request.foreign_columns = std::max(request.foreign_columns, static_cast<int>(line.size()));
    request.rows = selection.rows;
    request.columns = selection.columns;
    request.row_count = m_session->table().RowCount();
    if (const QString refusal = PasteRefusal(request); !refusal.isEmpty()) {
        ShowMessage(refusal, MessageIcon::Information);
        return;
    }
    cells.resize(std::min<qsizetype>(cells.size(), PastedRowCount(request)));
    if (!m_session->facts().coefficients)
        PasteCells(cells, selection.rows.first(), selection.columns.first());
    else if (!PasteCoefficients(cells, selection.rows.first()))
        return;
    if (selection.whole_column)
        RewriteHeaders();
}

// All or nothing: one wrong value leaves the column as it was.
bool GridClipboard::PasteCoefficients(const QList<QStringList>& cells, int first_row) {
    QStringList column = m_session->table().Column(ProfileTable::kValueColumn);
    for (qsizetype i = 0; i < cells.size(); ++i) {
        QString text = cells[i].first();
        if (!CheckNumber(text, EntrySource::Pasted))
            return false;
        column[first_row - 1 + i] = text;
    }
    if (const QString refusal = BulkRefusal(m_session->kind(), column); !refusal.isEmpty()) {
        ShowMessage(refusal, MessageIcon::Information);
        return false;
    }
    m_session->EnterColumn(column, first_row);
    m_session->SetModified();
    return true;
}

// A pasted time may move its row, and others with it; every text still goes to the row it was
// pasted on.
void GridClipboard::PasteCells(const QList<QStringList>& cells, int first_row, int first_column) {
    QList<int> rows(cells.size());
    std::iota(rows.begin(), rows.end(), first_row);
    for (int column = ProfileTable::kNameColumn; column >= first_column; --column) {
        for (qsizetype i = 0; i < cells.size(); ++i) {
            if (column - first_column >= cells[i].size())
                continue;
            const int from = rows[i];
            const std::optional<int> to = StoreEntry(
                *m_session, from, column, cells[i][column - first_column], EntrySource::Pasted);
            if (!to || *to == from)
                continue;
            for (int& row : rows) {
                if (row > from && row <= *to)
                    --row;
                else if (row < from && row >= *to)
                    ++row;
            }
            rows[i] = *to;
        }
    }
}

void GridClipboard::RewriteHeaders() {
    for (int column = 1; column <= m_session->table().ColumnCount(); ++column) {
        const QStringView header =
            m_session->facts().pasted_headers[static_cast<size_t>(column - 1)];
        if (!header.isEmpty())
            m_session->table().SetHeaderText(column, header.toString());
    }
}
