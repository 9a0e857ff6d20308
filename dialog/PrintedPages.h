// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/ChartPicture.h"
#include "dialog/PagePlan.h"

#include <QFont>
#include <QRectF>
#include <QString>

#include <optional>
#include <vector>

class ProfileSession;
class QPainter;
class QPrinter;

/// A profile on paper: the chart above, the table below it and on as many pages as it takes. Each
/// page tells the title, the date and its number.
class PrintedPages {
public:
    enum class Table { None, All };

    /// Without a chart the table begins at the top. `session` is not owned and outlives this
    /// object.
    PrintedPages(const ProfileSession* session, std::optional<ChartPicture> chart, Table table);

    int PageCount(const QPrinter& printer) const { return PlanFor(printer).pages.PageCount(); }

    /// Draws the pages that the user chose for the printer.
    void Print(QPrinter* printer) const;

private:
    struct Column {
        QString header;
        int number = 0;  ///< in the table; 0 counts the rows
        Qt::Alignment alignment = Qt::AlignLeft;
        double width = 0.0;      ///< pixels
        bool shortened = false;  ///< there is no room for all texts
    };

    // Places on paper, in pixels.
    struct Plan {
        QRectF page;
        QRectF chart;
        QRectF blocks;  ///< of the first page, header row included
        PagePlan pages;
        double block_width = 0.0;
        std::vector<Column> columns;
    };

    Plan PlanFor(const QPrinter& printer) const;
    std::vector<Column> Columns(double most) const;
    Column ColumnOf(int number) const;
    void PaintPage(QPainter& painter, const Plan& plan, int page) const;
    void PaintBlock(QPainter& painter, const Plan& plan, PagePlan::Block block, QPointF at) const;
    void PaintRow(QPainter& painter, const Plan& plan, int row, QPointF at) const;

    const ProfileSession* m_session;
    std::optional<ChartPicture> m_chart;
    int m_rows;
    QFont m_font;
};
