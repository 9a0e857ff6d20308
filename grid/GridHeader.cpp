// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/GridHeader.h"

#include "grid/CellSelection.h"
#include "grid/GridMetrics.h"
#include "profiles/ProfileKind.h"

#include <QScrollBar>
#include <QTableView>

#include <algorithm>

namespace {

constexpr int kScrollBarWidth = 15;
constexpr int kSmallHeaderFont = 10;  // pixels
constexpr int kMaxRowsInFullSize = 9'999;

void LayOutProfile(QTableView* grid) {
    grid->verticalHeader()->hide();
    QHeaderView* const header = grid->horizontalHeader();
    QFont small = header->font();
    small.setPixelSize(kSmallHeaderFont);
    header->setFont(small);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter | Qt::Alignment(Qt::TextWordWrap));
}

// As wide as the largest row number needs; the columns share the rest. Long numbers are small, so
// that a value of six characters still fits.
void FitRowHeader(QTableView* grid) {
    const int rows = std::max(10, grid->model()->rowCount());
    const bool is_long = rows > kMaxRowsInFullSize;
    QFont digits = grid->font();
    if (is_long)
        digits.setPixelSize(kSmallHeaderFont);
    grid->verticalHeader()->setFont(digits);
    const QFontMetrics metrics(digits);
    grid->verticalHeader()->setFixedWidth(metrics.horizontalAdvance(QString::number(rows)) +
                                          (is_long ? 6 : 10));
}

void LayOutPoints(QTableView* grid) {
    const auto fit = [grid] { FitRowHeader(grid); };
    QObject::connect(grid->model(), &QAbstractItemModel::rowsInserted, grid, fit);
    QObject::connect(grid->model(), &QAbstractItemModel::rowsRemoved, grid, fit);
    QObject::connect(grid->model(), &QAbstractItemModel::modelReset, grid, fit);
    fit();
}

}  // namespace

GridHeader::GridHeader(Qt::Orientation orientation, QTableView* grid)
    : QHeaderView(orientation, grid) {
    setSectionsClickable(true);
    setHighlightSections(true);
}

CellSelection* GridHeader::Selection() const {
    return static_cast<CellSelection*>(selectionModel());
}

void GridHeader::mousePressEvent(QMouseEvent* event) {
    emit PressBegins();
    Selection()->KeepCurrent(true);
    QHeaderView::mousePressEvent(event);
    Selection()->KeepCurrent(false);
}

void GridHeader::mouseMoveEvent(QMouseEvent* event) {
    Selection()->KeepCurrent(true);
    QHeaderView::mouseMoveEvent(event);
    Selection()->KeepCurrent(false);
}

void LayOutColumns(QTableView* grid, const KindDescriptor& facts) {
    const bool is_shared = facts.columnsWidth() == 0;
    grid->horizontalHeader()->setSectionResizeMode(is_shared ? QHeaderView::Stretch
                                                             : QHeaderView::Fixed);
    for (int column = 0; !is_shared && column < facts.columns; ++column)
        grid->setColumnWidth(column, facts.column_widths[static_cast<size_t>(column)]);
}

void LayOutGrid(QTableView* grid, const KindDescriptor& facts) {
    grid->setUpdatesEnabled(false);
    grid->verticalScrollBar()->setFixedWidth(kScrollBarWidth);
    QHeaderView* const numbers = grid->verticalHeader();
    numbers->setSectionResizeMode(QHeaderView::Fixed);
    numbers->setMinimumSectionSize(kGridRowHeight);
    numbers->setDefaultSectionSize(kGridRowHeight);
    numbers->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QHeaderView* const titles = grid->horizontalHeader();
    titles->setFixedHeight(facts.header_height);
    titles->setDefaultAlignment(Qt::AlignCenter | Qt::Alignment(Qt::TextWordWrap));
    titles->setHighlightSections(false);
    if (facts.rows == 0)
        LayOutPoints(grid);
    else
        LayOutProfile(grid);
    LayOutColumns(grid, facts);
    grid->setUpdatesEnabled(true);
}
