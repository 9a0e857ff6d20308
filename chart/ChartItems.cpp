// SPDX-License-Identifier: GPL-3.0-or-later
#include "chart/ChartItems.h"

#include "chart/PlotScale.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

namespace {

constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

}  // namespace

void ChartItems::Clear(int groups) {
    m_groups.assign(static_cast<size_t>(std::clamp(groups, 1, 2)), {});
    m_labels.clear();
    m_highlighted.clear();
}

void ChartItems::SetGroups(std::vector<std::vector<double>> groups) {
    Clear(static_cast<int>(groups.size()));
    m_groups = std::move(groups);
}

double ChartItems::Value(int index, int group) const {
    if (group < 0 || group >= GroupCount() || index < 0 || index >= Count())
        return kNoValue;
    return m_groups[static_cast<size_t>(group)][static_cast<size_t>(index)];
}

void ChartItems::SetValue(int index, int group, double value) {
    if (group < 0 || group >= GroupCount() || index < 0 || index > Count())
        throw std::invalid_argument("no such chart item");
    if (index == Count())
        Insert(index, 1);
    m_groups[static_cast<size_t>(group)][static_cast<size_t>(index)] = value;
}

void ChartItems::SetLabel(int index, const QString& label) {
    if (index < 0 || index >= Count())
        return;
    m_labels.resize(Count());
    m_labels[index] = label;
}

void ChartItems::Insert(int first, int count) {
    first = std::clamp(first, 0, Count());
    count = std::max(count, 0);
    for (std::vector<double>& values : m_groups)
        values.insert(values.begin() + first, static_cast<size_t>(count), kNoValue);
    if (!m_labels.isEmpty())
        m_labels.insert(first, count, QString());
    std::set<int> moved;
    for (int index : m_highlighted)
        moved.insert(index < first ? index : index + count);
    m_highlighted = std::move(moved);
}

void ChartItems::Remove(int first, int count) {
    first = std::clamp(first, 0, Count());
    count = std::clamp(count, 0, Count() - first);
    for (std::vector<double>& values : m_groups)
        values.erase(values.begin() + first, values.begin() + first + count);
    if (!m_labels.isEmpty())
        m_labels.remove(first, count);
    std::set<int> moved;
    for (int index : m_highlighted) {
        if (index < first || index >= first + count)
            moved.insert(index < first ? index : index - count);
    }
    m_highlighted = std::move(moved);
}

void ChartItems::SetHighlighted(int index, bool on) {
    if (on && index >= 0 && index < Count())
        m_highlighted.insert(index);
    else
        m_highlighted.erase(index);
}

bool ChartItems::IsDrawn(int index) const {
    const QPointF place = Place(index);
    return IsFinitePlace(place.x(), place.y());
}

QPointF ChartItems::Place(int index) const {
    return GroupCount() == 1 ? QPointF(index, Value(index, 0))
                             : QPointF(Value(index, 0), Value(index, 1));
}

std::optional<DataBounds> ChartItems::Bounds() const {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    DataBounds bounds = {kInfinity, -kInfinity, kInfinity, -kInfinity};
    const std::vector<double>& values = m_groups.back();
    const bool indexed = GroupCount() == 1;
    for (size_t i = 0; i < values.size(); ++i) {
        const double x = indexed ? static_cast<double>(i) : m_groups.front()[i];
        const double y = values[i];
        if (!IsFinitePlace(x, y))
            continue;
        bounds.x_low = std::min(bounds.x_low, x);
        bounds.x_high = std::max(bounds.x_high, x);
        bounds.y_low = std::min(bounds.y_low, y);
        bounds.y_high = std::max(bounds.y_high, y);
    }
    if (bounds.x_low > bounds.x_high)
        return {};
    return bounds;
}
