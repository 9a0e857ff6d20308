// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <QString>
#include <QStringList>

#include <optional>
#include <set>
#include <span>
#include <vector>

/// The extent of the items that are drawn.
struct DataBounds {
    double x_low = 0.0;
    double x_high = 0.0;
    double y_low = 0.0;
    double y_high = 0.0;
};

/// The items of a chart. They are counted from 0 and stand in row order. An item has one value in
/// every group, NaN where none was set yet; an item with a value that is not finite keeps its place
/// and is not drawn.
class ChartItems {
public:
    /// Drops all items; from now on each has `groups` values (1 or 2).
    void Clear(int groups);

    int GroupCount() const { return static_cast<int>(m_groups.size()); }
    int Count() const { return static_cast<int>(m_groups.front().size()); }

    /// NaN for an item or group that is not there.
    double Value(int index, int group) const;

    /// Stores one value. `index` may be one past the last item, which adds an item; throws
    /// std::invalid_argument beyond that.
    void SetValue(int index, int group, double value);

    /// Replaces all items by those with these values: a list a group, all of the same length.
    void SetGroups(std::vector<std::vector<double>> groups);

    std::span<const double> Group(int group) const {
        return m_groups.at(static_cast<size_t>(group));
    }

    /// Text under an item; "" when it has none.
    QString Label(int index) const { return m_labels.value(index); }
    void SetLabel(int index, const QString& label);

    /// Inserts `count` items without values before item `first`, or removes items. Labels and
    /// highlights move with their items. A range is cut to the items that exist.
    void Insert(int first, int count);
    void Remove(int first, int count);

    void SetHighlighted(int index, bool on);
    void ClearHighlights() { m_highlighted.clear(); }
    bool IsHighlighted(int index) const { return m_highlighted.contains(index); }
    const std::set<int>& Highlighted() const { return m_highlighted; }
    std::optional<int> FirstHighlighted() const {
        return m_highlighted.empty() ? std::nullopt : std::optional(*m_highlighted.begin());
    }

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
