// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Colour.h"

#include <QPointF>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <vector>

/// A place in per cent of the chart, 0.0 to 100.0.
struct PercentRect {
    double left = 0.0;
    double top = 0.0;
    double right = 100.0;
    double bottom = 100.0;

    friend bool operator==(const PercentRect&, const PercentRect&) = default;
};

struct ChartTitle {
    QString text;  ///< may hold line breaks
    PercentRect rect;
    int alignment = 1;     ///< 0 left, 1 centred, 2 right
    int text_height = 14;  ///< pixels
};

/// What stands beside the marks of a scale.
enum class ScaleLabels : int { None = 0, Numbers = 1, ItemTexts = 2 };

struct ChartScale {
    double interval = 0.0;  ///< between labels; 0 is automatic
    int limits = 0;         ///< 0 widened to whole intervals, 1 close to the data
    int headroom = 0;       ///< 1 keeps the display's headroom free beyond the data
    ScaleLabels labels = ScaleLabels::Numbers;
    bool labels_turn = false;  ///< labels that do not fit side by side turn to `label_angle`
    double label_angle = 0.0;  ///< degrees, clockwise
};

/// Which of the two axes something belongs to.
enum class ChartAxis : int { Values = 0, Items = 1 };

struct TickMarks {
    Colour colour;
    int level = 0;  ///< 0 at the labels, 1 between them
    int sides = 1;  ///< 1 outside the axis, 2 inside, 3 both
    ChartAxis axis = ChartAxis::Values;
};

struct GridLines {
    Colour colour;
    int pattern = 0;  ///< 0 solid, 1 dotted, 2 dashed
    int level = 0;    ///< 0 at the labels, 1 between them
    int on = 0;
};

struct AxisLabel {
    QString text;
    bool bold = false;
    int opacity = 0xFF;  ///< 0 invisible, 0xFF solid
};

/// How the items are shown: bars on an index, or points at their own places.
enum class DisplayForm { Bars, Points };

struct DataDisplay {
    DisplayForm form = DisplayForm::Points;
    double headroom = 10.0;  ///< per cent of the data's extent
    PercentRect rect;        ///< of a display without scales
};

struct ItemStyle {
    // The low byte of the flags says where the colours come from, the second byte how points look,
    // the third how labels stand.
    static constexpr unsigned kOwnColour = 0x1;
    static constexpr unsigned kMarkers = 0x400;
    static constexpr unsigned kLine = 0x800;
    static constexpr unsigned kUprightLabel = 0x10000;

    unsigned flags = 0;
    Colour colour;         ///< of a bar's face, of a marker
    Colour second_colour;  ///< of a bar's outline, of the line through the points
    Colour own_colour;     ///< takes the place of `colour` while `kOwnColour` is set
    int width = 1;         ///< of outlines and lines, pixels

    Colour FaceColour() const { return (flags & kOwnColour) != 0 ? own_colour : colour; }

    friend bool operator==(const ItemStyle&, const ItemStyle&) = default;
};

/// The extent of the items that are drawn.
struct DataBounds {
    double x_low = 0.0;
    double x_high = 0.0;
    double y_low = 0.0;
    double y_high = 0.0;
};

/// The chart as built: what is drawn, free of how. Items are counted from 0 and stand in row order.
/// An item has one value in every group, NaN where none was set yet; an item with a value that is
/// not finite keeps its place and is not drawn.
class CDocControl {
public:
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

    /// Drops all items; from now on each has `groups` values (1 or 2).
    void ClearItems(int groups);

    int GroupCount() const { return static_cast<int>(m_groups.size()); }
    int ItemCount() const { return static_cast<int>(m_groups.front().size()); }

    /// NaN for an item or group that is not there.
    double Value(int index, int group) const;

    /// Stores one value. `index` may be one past the last item, which adds an item; throws
    /// std::invalid_argument beyond that.
    void SetValue(int index, int group, double value);

    std::span<const double> Group(int group) const {
        return m_groups.at(static_cast<size_t>(group));
    }

    /// Text under an item; "" when it has none.
    QString Label(int index) const { return m_labels.value(index); }
    void SetLabel(int index, const QString& label);

    /// Makes room for `count` items without values before item `first`, or takes items away. Labels
    /// and highlights move with their items. Ranges that are not there are cut to what is.
    void InsertItems(int first, int count);
    void RemoveItems(int first, int count);

    void SetHighlighted(int index, bool on);
    bool IsHighlighted(int index) const { return m_highlighted.contains(index); }
    const std::set<int>& Highlighted() const { return m_highlighted; }
    ItemStyle StyleOf(int index) const;

    bool IsDrawn(int index) const;

    /// Where an item stands in axis units: its two values, or its index and its only value.
    QPointF Place(int index) const;

    /// Nothing when no item is drawn.
    std::optional<DataBounds> Bounds() const;

private:
    std::vector<std::vector<double>> m_groups = {{}};
    QStringList m_labels;  // empty or one an item
    std::set<int> m_highlighted;
};
