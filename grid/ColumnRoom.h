// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>

class QTableView;
struct KindDescriptor;

/// The widths of a grid's columns when the grid is wider than its kind asks for. Only the rows in
/// view are measured, and the titles: a grid may hold a million rows. `start` is the width for
/// which the kind's layout is made.
class ColumnRoom {
public:
    /// `grid` is not owned and outlives this object.
    ColumnRoom(QTableView* grid, const KindDescriptor& facts) : m_grid(grid), m_facts(facts) {}

    /// The width at which the grid shows all texts in view whole, at least `start`.
    int NeededWidth(int start) const;

    /// Gives the columns the width that the grid has now.
    void Share(int start);

    /// Shares a wide grid anew where a text in view does not fit its column.
    void Refit();

private:
    QList<int> StartWidths(int start) const;
    QList<int> Needs() const;
    int TitleNeed(int column) const;
    int Around() const;

    QTableView* m_grid;
    const KindDescriptor& m_facts;
    int m_start = 0;  // while the grid is wider: that width
};
