// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHeaderView>

class CellSelection;
class QTableView;
struct KindDescriptor;

/// A header whose size the grid sets, so that no title is measured. A press on it selects cells but
/// keeps the current cell: a header cell is no row of the function.
class GridHeader : public QHeaderView {
    Q_OBJECT

public:
    GridHeader(Qt::Orientation orientation, QTableView* grid);

    QSize sizeHint() const override { return minimumSize(); }

signals:
    /// Comes before the selection changes.
    void PressBegins();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    CellSelection* Selection() const;
};

/// Gives the columns of `grid` their widths at the start.
void LayOutColumns(QTableView* grid, const KindDescriptor& facts);

/// Gives `grid` the headers, row heights and column widths of a kind.
void LayOutGrid(QTableView* grid, const KindDescriptor& facts);
