// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class ProfileSession;

/// The cells selected in the grid, in grid numbers.
struct GridSelection {
    QList<int> rows;  ///< data rows
    QList<int> columns;
    bool whole_column = false;  ///< selected by a header: the header row belongs to it
};

/// Copy and paste between the session's table and the system clipboard, as plain text: a line a
/// row, tabs between columns.
class GridClipboard {
public:
    explicit GridClipboard(ProfileSession* session) : m_session(session) {}

    /// Copies the selected cells. False, after telling why, when they may not be copied.
    bool Copy(const GridSelection& selection);

    /// Pastes the clipboard's text from the first selected cell on. A refusal shows its message and
    /// leaves the table as it was; in the grids without coefficients single cells may be refused.
    void Paste(const GridSelection& selection);

private:
    bool PasteCoefficients(const QList<QStringList>& cells, int first_row);

    ProfileSession* m_session;  // not owned
    int m_copied_column = 0;
    QStringList m_copied_texts;  // a row each; a text may hold line breaks
};
