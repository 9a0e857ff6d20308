// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Colour.h"
#include "chart/ChartItems.h"

#include <QString>

#include <vector>

/// A place in per cent of the chart, 0.0 to 100.0.
struct PercentRect {
    double left = 0.0;
    double top = 0.0;
    double right = 100.0;
    double bottom = 100.0;

    friend bool operator==(const PercentRect&, const PercentRect&) = default;
};

enum class TitleAlignment : int { Left = 0, Centre = 1, Right = 2 };

struct ChartTitle {
    QString text;  ///< may hold line breaks
    PercentRect rect;
    TitleAlignment alignment = TitleAlignment::Centre;
    int text_height = 14;  ///< pixels
};

/// Where a scale ends.
enum class ScaleLimits : int { WholeIntervals = 0, CloseToData = 1 };

/// Whether a scale keeps the display's headroom free beyond the data.
enum class ScaleHeadroom : int { None = 0, Kept = 1 };

/// What stands beside the marks of a scale.
enum class ScaleLabels : int { None = 0, Numbers = 1, ItemTexts = 2 };

struct ChartScale {
    double interval = 0.0;  ///< between labels; 0 is automatic
    ScaleLimits limits = ScaleLimits::WholeIntervals;
    ScaleHeadroom headroom = ScaleHeadroom::None;
    ScaleLabels labels = ScaleLabels::Numbers;
    bool labels_turn = false;  ///< labels that do not fit side by side turn to `label_angle`
    double label_angle = 0.0;  ///< degrees, clockwise
};

/// Which of the two axes something belongs to.
enum class ChartAxis : int { Values = 0, Items = 1 };

/// Where marks and grid lines of an axis stand.
enum class MarkLevel : int { AtLabels = 0, BetweenLabels = 1 };

enum class TickSides : int { Outside = 1, Inside = 2, Both = 3 };

struct TickMarks {
    Colour colour;
    MarkLevel level = MarkLevel::AtLabels;
    TickSides sides = TickSides::Outside;
    ChartAxis axis = ChartAxis::Values;
};

enum class LinePattern : int { Solid = 0, Dotted = 1, Dashed = 2 };

struct GridLines {
    Colour colour;
    LinePattern pattern = LinePattern::Solid;
    MarkLevel level = MarkLevel::AtLabels;
    bool on = false;
};

struct AxisLabel {
    QString text;
    bool bold = false;
    int opacity = 0xFF;  ///< 0 invisible, 0xFF solid
};

/// How the items are shown: bars on an index, or points at their own places.
enum class DisplayForm { Bars, Points };

/// How the line leads from a point to the next one: straight, or the value holds until there.
enum class LineForm { Straight, Steps };

struct DataDisplay {
    DisplayForm form = DisplayForm::Points;
    double headroom = 10.0;  ///< per cent of the data's extent
    PercentRect rect;        ///< of a display without scales
    LineForm line = LineForm::Straight;
};

enum class PointLook : int { None = 0, MarkersOnLine = 0xC00 };

/// How labels under items stand that do not fit side by side.
enum class ItemLabelTurn { Slanted, Upright };

struct ItemStyle {
    PointLook points = PointLook::None;
    ItemLabelTurn label_turn = ItemLabelTurn::Slanted;
    Colour colour;         ///< of a bar's face, of a marker
    Colour second_colour;  ///< of a bar's outline, of the line through the points
    int width = 1;         ///< of outlines and lines, pixels

    friend bool operator==(const ItemStyle&, const ItemStyle&) = default;
};

/// What the chart shows, independent of how it is drawn.
struct CDocControl {
    ChartTitle title;
    PercentRect display_rect;  ///< of axes and data together
    bool has_scales = false;
    bool value_axis_on = false;
    bool index_axis_on = false;
    ChartScale value_scale;
    ChartScale index_scale;
    std::vector<TickMarks> tick_marks;
    std::vector<GridLines> grid_lines;  ///< of the value axis, of the index axis
    AxisLabel value_label;
    AxisLabel index_label;
    DataDisplay display;
    ItemStyle item_style;  ///< of every item that is not highlighted
    ItemStyle highlighted_style;
    ChartItems items;
    ChartItems preview;  ///< what would become of the items; none while nothing is being asked

    const ItemStyle& StyleOf(int index) const {
        return items.IsHighlighted(index) ? highlighted_style : item_style;
    }
};
