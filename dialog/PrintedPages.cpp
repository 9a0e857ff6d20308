// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/PrintedPages.h"

#include "profiles/ProfileSession.h"

#include <QDate>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPrinter>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Pixels, of which an inch has that many.
constexpr double kPixelsPerInch = 96.0;
constexpr int kTextHeight = 11;
constexpr int kHeaderHeight = 26;  // of a page
constexpr int kFooterHeight = 22;
constexpr int kRowHeight = 17;
constexpr int kPadding = 5;
constexpr int kBlockGap = 24;

// Part of the shorter side of a page.
constexpr double kChartHeight = 0.6;

constexpr int kMaxBlocks = 6;

// Columns of more rows are as wide as their longest text made of digits.
constexpr int kMaxMeasuredRows = 1000;

constexpr int kShapeScale = 4;

constexpr double kLineWidth = 0.5;
const QColor kQuietText(80, 80, 80);
const QColor kHeaderGround(232, 232, 232);
const QColor kRowLine(210, 210, 210);

QFont Bold(QFont font) {
    font.setBold(true);
    return font;
}

template <typename Columns>
double WidthOf(const Columns& columns) {
    double width = 0.0;
    for (const auto& column : columns)
        width += column.width;
    return width;
}

}  // namespace

PrintedPages::PrintedPages(const ProfileSession* session, std::optional<ChartPicture> chart,
                           Table table)
    : m_session(session),
      m_chart(std::move(chart)),
      m_rows(table == Table::All ? session->table().RowCount() : 0),
      m_font(QGuiApplication::font()) {
    m_font.setPixelSize(kTextHeight);
}

PrintedPages::Column PrintedPages::ColumnOf(int number) const {
    const QFontMetrics metrics(m_font);
    const QFontMetrics bold_metrics(Bold(m_font));
    const ProfileTable& table = m_session->table();
    const QStringList texts =
        number == 0 ? QStringList(QString::number(m_rows)) : table.Column(number);
    Column column = {.header = table.HeaderText(number), .number = number};
    qsizetype longest = 0;
    for (const QString& text : texts) {
        if (texts.size() <= kMaxMeasuredRows)
            column.width = std::max<double>(column.width, metrics.horizontalAdvance(text));
        longest = std::max(longest, text.size());
    }
    if (texts.size() > kMaxMeasuredRows)
        column.width = static_cast<double>(longest) * metrics.horizontalAdvance(u'0');
    column.width = std::max<double>(column.width, bold_metrics.horizontalAdvance(column.header)) +
                   2 * kPadding;
    if (number == 0 || number == ProfileTable::kValueColumn || m_session->facts().hasTimes())
        column.alignment = Qt::AlignRight;
    return column;
}

// Columns that are together not wider than `most`. The rows of a function are counted.
std::vector<PrintedPages::Column> PrintedPages::Columns(double most) const {
    std::vector<Column> columns;
    for (int i = m_session->facts().hasTimes() ? 0 : 1; i <= m_session->table().ColumnCount(); ++i)
        columns.push_back(ColumnOf(i));
    const double width = WidthOf(columns);
    for (Column& column : columns) {
        column.shortened = width > most;
        column.width *= std::min(most / width, 1.0);
    }
    return columns;
}

PrintedPages::Plan PrintedPages::PlanFor(const QPrinter& printer) const {
    const QSizeF paper = printer.pageRect(QPrinter::Inch).size() * kPixelsPerInch;
    Plan plan;
    plan.page = QRectF(QPointF(), paper);
    const QRectF body = plan.page.adjusted(0, kHeaderHeight, 0, -kFooterHeight);
    plan.chart = plan.blocks = body;
    if (m_chart) {
        plan.chart.setHeight(std::min(paper.width(), body.height()) * kChartHeight);
        plan.blocks.setTop(plan.chart.bottom() + kBlockGap);
    }
    plan.columns = Columns(body.width());
    plan.block_width = WidthOf(plan.columns);
    PagePlan& pages = plan.pages;
    pages.rows = m_rows;
    pages.blocks =
        std::clamp(static_cast<int>((body.width() + kBlockGap) / (plan.block_width + kBlockGap)), 1,
                   kMaxBlocks);
    const auto room = [](double height) {
        return std::max(static_cast<int>(height) / kRowHeight - 1, 0);
    };
    pages.first_room = room(plan.blocks.height());
    pages.room = std::max(room(body.height()), 1);
    // The first page is as wide as any.
    const int count = pages.PageCount() > 1 ? pages.blocks : std::max(pages.BlockCount(0), 1);
    const double width = count * (plan.block_width + kBlockGap) - kBlockGap;
    plan.blocks.setLeft((body.width() - width) / 2.0);
    return plan;
}

void PrintedPages::Print(QPrinter* printer) const {
    const Plan plan = PlanFor(*printer);
    QPageRanges wanted = printer->pageRanges();
    if (wanted.isEmpty())
        wanted.addRange(1, plan.pages.PageCount());
    QPainter painter(printer);
    const double scale = printer->resolution() / kPixelsPerInch;
    painter.scale(scale, scale);
    bool first = true;
    for (int page = 0; page < plan.pages.PageCount(); ++page) {
        if (!wanted.contains(page + 1))
            continue;
        if (!std::exchange(first, false))
            printer->newPage();
        PaintPage(painter, plan, page);
    }
}

void PrintedPages::PaintPage(QPainter& painter, const Plan& plan, int page) const {
    painter.setFont(m_font);
    painter.setPen(kQuietText);
    const QString date = QDate::currentDate().toString(u"dd/MM/yyyy"_s);
    const QFontMetrics metrics(m_font);
    const int title_width =
        static_cast<int>(plan.page.width()) - metrics.horizontalAdvance(date) - kBlockGap;
    painter.drawText(plan.page, Qt::AlignTop | Qt::AlignLeft | Qt::TextSingleLine,
                     metrics.elidedText(m_session->caption(), Qt::ElideRight, title_width));
    painter.drawText(plan.page, Qt::AlignTop | Qt::AlignRight, date);
    painter.drawText(plan.page, Qt::AlignBottom | Qt::AlignHCenter,
                     u"Page %1 / %2"_s.arg(page + 1).arg(plan.pages.PageCount()));
    const bool has_chart = m_chart && page == 0;
    if (has_chart) {
        painter.save();
        painter.translate(plan.chart.topLeft());
        m_chart->Resized(plan.chart.size().toSize()).Paint(painter, kShapeScale);
        painter.restore();
    }
    QPointF at(plan.blocks.left(), has_chart ? plan.blocks.top() : plan.page.top() + kHeaderHeight);
    for (int block = 0; block < plan.pages.BlockCount(page); ++block) {
        PaintBlock(painter, plan, plan.pages.BlockAt(page, block), at);
        at.rx() += plan.block_width + kBlockGap;
    }
}

void PrintedPages::PaintBlock(QPainter& painter, const Plan& plan, PagePlan::Block block,
                              QPointF at) const {
    painter.fillRect(QRectF(at, QSizeF(plan.block_width, kRowHeight)), kHeaderGround);
    painter.setFont(Bold(m_font));
    painter.setPen(Qt::black);
    PaintRow(painter, plan, 0, at);
    painter.setFont(m_font);
    for (int row = block.first_row; row < block.first_row + block.rows; ++row) {
        at.ry() += kRowHeight;
        PaintRow(painter, plan, row, at);
        painter.fillRect(QRectF(at + QPointF(0, kRowHeight), QSizeF(plan.block_width, kLineWidth)),
                         kRowLine);
    }
}

// Row 0 is the header row.
void PrintedPages::PaintRow(QPainter& painter, const Plan& plan, int row, QPointF at) const {
    const ProfileTable& table = m_session->table();
    for (const Column& column : plan.columns) {
        const QRectF cell(at, QSizeF(column.width, kRowHeight));
        const QRectF place = cell.adjusted(kPadding, 0, -kPadding, 0);
        at.rx() += column.width;
        QString text = row == 0             ? column.header
                       : column.number == 0 ? QString::number(row)
                                            : table.CellText(row, column.number);
        if (column.shortened)
            text = painter.fontMetrics().elidedText(text, Qt::ElideRight,
                                                    static_cast<int>(place.width()));
        painter.drawText(place,
                         static_cast<int>(column.alignment | Qt::AlignVCenter) | Qt::TextSingleLine,
                         text);
    }
}
