// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/CGraphControl.h"

#include "base/EnglishAtof.h"
#include "profiles/ProfileTable.h"

#include <QModelIndex>

#include <utility>

namespace {

constexpr int kLabelColumn = ProfileTable::kLabelColumn;
constexpr int kValueColumn = ProfileTable::kValueColumn;

constexpr Colour kBlack = {0, 0, 0};
constexpr Colour kRed = {255, 0, 0};
constexpr Colour kPureBlue = {0, 0, 255};
constexpr Colour kBlue = {56, 102, 224};
constexpr Colour kLightBlue = {115, 170, 232};
constexpr Colour kOrange = {255, 207, 54};
constexpr Colour kGreen = {0, 128, 0};
constexpr Colour kGrey = {205, 205, 205};
constexpr Colour kLightGrey = {230, 230, 230};

// Per cent of the chart.
constexpr double kPlainTitleHeight = 17.0;

constexpr double kPointHeadroom = 10.0;
constexpr double kTimeLabelAngle = 330.0;
constexpr int kLineWidth = 2;

// An unknown kind still gets a chart of that many items.
constexpr int kNamelessItems = 12;

constexpr PercentRect Band(double top, double bottom) {
    return {0.0, top, 100.0, bottom};
}

constexpr ItemStyle kPointStyle = {
    .points = PointLook::MarkersOnLine, .colour = kRed, .second_colour = kBlue};

ItemStyle Highlighted(ItemStyle style, DisplayForm form) {
    if (form == DisplayForm::Points) {
        style.colour = kOrange;
    } else {
        style.second_colour = kRed;
        ++style.width;
    }
    return style;
}

bool IsProfile(ProfileKind kind) {
    return Describe(kind).rows > 0;
}

}  // namespace

CGraphControl::CGraphControl(QObject* parent) : QObject(parent) {
    BuildPlainChart();
}

void CGraphControl::StartBuild(int groups) {
    m_document = CDocControl();
    m_document.items.Clear(groups);
    m_document.title.text = m_title;
}

// A build replaces the items; those of an attached table come back at once.
void CGraphControl::EndBuild() {
    if (m_table)
        Refill();
    else
        emit Rebuilt();
}

void CGraphControl::BuildProfileChart(ProfileKind kind) {
    static constexpr KindDescriptor kNoFacts = {};
    const KindDescriptor& facts = IsProfile(kind) ? Describe(kind) : kNoFacts;
    StartBuild(1);
    CDocControl& chart = m_document;
    const double title_height = facts.title_height;
    chart.title.rect = Band(0.0, title_height);
    chart.display_rect = Band(title_height, 100.0);
    chart.has_scales = chart.value_axis_on = chart.index_axis_on = true;
    chart.value_scale = {.interval = facts.value_step, .headroom = ScaleHeadroom::Kept};
    chart.index_scale = {.labels = ScaleLabels::ItemTexts};
    chart.tick_marks = {{.colour = kBlue, .sides = TickSides::Both},
                        {.colour = kRed, .axis = ChartAxis::Items}};
    chart.grid_lines = {{.colour = kGrey, .on = true},
                        {kGreen, LinePattern::Dotted, MarkLevel::BetweenLabels, true}};
    chart.value_label = {facts.value_axis_title.toString(), true, 0xFF};
    chart.index_label = {facts.index_axis_title.toString()};
    chart.display = {DisplayForm::Bars, title_height, {}};
    chart.item_style = {.colour = kLightBlue, .second_colour = kBlue};
    // Hours stand so close together that their labels are turned upright.
    if (facts.labels == RowLabels::Hours)
        chart.item_style.label_turn = ItemLabelTurn::Upright;
    chart.highlighted_style = Highlighted(chart.item_style, DisplayForm::Bars);

    if (IsProfile(kind)) {
        const QStringList labels = RowLabelTexts(kind);
        for (int i = 0; i < facts.rows; ++i) {
            chart.items.SetValue(i, 0, facts.default_value);
            chart.items.SetLabel(i, labels.value(i));
        }
    } else {
        chart.items.Insert(0, kNamelessItems);
    }
    EndBuild();
}

void CGraphControl::BuildFunctionChart() {
    const KindDescriptor& facts = Describe(ProfileKind::Function);
    StartBuild(2);
    CDocControl& chart = m_document;
    chart.title.rect = Band(0.0, facts.title_height);
    chart.display_rect = Band(facts.title_height, 100.0);
    chart.has_scales = chart.value_axis_on = chart.index_axis_on = true;
    chart.value_scale = {.headroom = ScaleHeadroom::Kept};
    chart.index_scale = {
        .limits = ScaleLimits::CloseToData, .labels_turn = true, .label_angle = kTimeLabelAngle};
    chart.tick_marks = {{.colour = kBlack},
                        {.colour = kRed, .axis = ChartAxis::Items},
                        {.colour = kPureBlue, .level = MarkLevel::BetweenLabels}};
    chart.grid_lines.assign(2, {.colour = kLightGrey, .pattern = LinePattern::Dashed, .on = true});
    chart.value_label = {facts.value_axis_title.toString(), true, 0xFF};
    chart.index_label = {facts.index_axis_title.toString()};
    chart.display = {DisplayForm::Points, kPointHeadroom, {}};
    chart.item_style = kPointStyle;
    chart.highlighted_style = Highlighted(chart.item_style, DisplayForm::Points);
    SetTitle(m_title);
    EndBuild();
}

void CGraphControl::BuildPlainChart() {
    StartBuild(1);
    CDocControl& chart = m_document;
    chart.title.rect = Band(0.0, kPlainTitleHeight);
    chart.display = {DisplayForm::Points, kPointHeadroom, Band(kPlainTitleHeight, 100.0)};
    chart.display_rect = chart.display.rect;
    chart.item_style = kPointStyle;
    chart.highlighted_style = Highlighted(chart.item_style, DisplayForm::Points);
    EndBuild();
}

void CGraphControl::ApplyPointStyle() {
    ItemStyle& style = m_document.item_style;
    style.points = PointLook::MarkersOnLine;
    style.width = kLineWidth;
    m_document.highlighted_style = Highlighted(style, m_document.display.form);
    emit Rebuilt();
}

void CGraphControl::SetValue(int index, int group, double value) {
    const int count = m_document.items.Count();
    m_document.items.SetValue(index, group, value);
    if (m_document.items.Count() == count)
        emit ItemsChanged(index, index);
    else
        emit Rebuilt();
}

void CGraphControl::SetTitle(const QString& title) {
    m_title = title;
    if (m_document.title.text == title)
        return;
    m_document.title.text = title;
    emit Rebuilt();
}

void CGraphControl::SetLineForm(LineForm form) {
    m_document.display.line = form;
    emit ItemsChanged(0, m_document.items.Count() - 1);
}

void CGraphControl::SetHighlighted(int index, bool on) {
    m_document.items.SetHighlighted(index, on);
    emit ItemsChanged(index, index);
}

void CGraphControl::SetPreview(std::vector<std::vector<double>> groups) {
    if (groups.empty())
        m_document.preview.Clear(1);
    else
        m_document.preview.SetGroups(std::move(groups));
    emit ItemsChanged(0, m_document.items.Count() - 1);
}

void CGraphControl::Attach(const ProfileTable* table, ProfileKind kind) {
    if (m_table)
        m_table->disconnect(this);
    m_table = table;
    m_kind = kind;
    connect(table, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& from, const QModelIndex& to) {
                OnDataChanged(from.row(), to.row(), from.column() + 1, to.column() + 1);
            });
    connect(table, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int first, int last) { OnRowsInserted(first, last); });
    connect(table, &QAbstractItemModel::rowsRemoved, this,
            [this](const QModelIndex&, int first, int last) { OnRowsRemoved(first, last); });
    connect(table, &QAbstractItemModel::modelReset, this, &CGraphControl::Refill);
    Refill();
}

void CGraphControl::Refill() {
    m_document.items.Clear(m_document.items.GroupCount());
    m_document.items.Insert(0, m_table->RowCount());
    ReadRows(0, m_document.items.Count() - 1, kLabelColumn, kValueColumn);
    if (Describe(m_kind).hasTimes())
        ApplyPointStyle();
    emit Rebuilt();
}

void CGraphControl::ReadRows(int first, int last, int first_column, int last_column) {
    const bool has_times = m_document.items.GroupCount() == 2;
    const int value_group = has_times ? 1 : 0;
    for (int i = first; i <= last; ++i) {
        if (first_column <= kLabelColumn && kLabelColumn <= last_column) {
            const QString label = m_table->CellText(i + 1, kLabelColumn);
            if (has_times)
                m_document.items.SetValue(i, 0, ParseNumber(label));
            else
                m_document.items.SetLabel(i, label);
        }
        if (first_column <= kValueColumn && kValueColumn <= last_column)
            m_document.items.SetValue(i, value_group,
                                      ParseNumber(m_table->CellText(i + 1, kValueColumn)));
    }
}

void CGraphControl::OnDataChanged(int first, int last, int first_column, int last_column) {
    if (first_column > kValueColumn)
        return;
    ReadRows(first, last, first_column, last_column);
    emit ItemsChanged(first, last);
}

void CGraphControl::OnRowsInserted(int first, int last) {
    m_document.items.Insert(first, last - first + 1);
    ReadRows(first, last, kLabelColumn, kValueColumn);
    emit Rebuilt();
}

void CGraphControl::OnRowsRemoved(int first, int last) {
    m_document.items.Remove(first, last - first + 1);
    emit Rebuilt();
}
