// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chart/CDocControl.h"
#include "chart/PlotScale.h"
#include "profiles/ProfileKind.h"

#include <QPointF>
#include <QString>
#include <QStringView>

#include <optional>

class ProfileTable;

/// Between the parts of a line of text, and between the time and the value of a point.
inline constexpr QStringView kReadOutGap = u"   ";
inline constexpr QStringView kReadOutBar = u" | ";

/// What the chart says about one place of it.
struct Reading {
    QString text;        ///< one line
    double place = 0.0;  ///< on the axis of the items
};

/// Reads a chart out, a line of text at a time. Numbers between points have the digits that a pixel
/// of `scale` tells apart, at most six; points have their texts of the table. Times that rise are
/// searched, others gone through.
class ReadOut {
public:
    /// Item i of `chart` shows row i + 1 of `table`. Neither is owned.
    ReadOut(ProfileKind kind, const CDocControl* chart, const ProfileTable* table)
        : m_facts(&Describe(kind)), m_chart(chart), m_table(table) {}

    /// Call when the rows have changed.
    void Forget();

    /// The place under `position`, in pixels. Of a function: the time, the line's value there, if
    /// it has one, and the nearest point; many points whose times do not rise give no value. Of
    /// bars: the one of that column.
    Reading At(const PlotScale& scale, QPointF position);

    /// An item that exists.
    Reading Of(const PlotScale& scale, int item);

    /// All items: number, ranges and mean. That of a function is weighted by time; without an
    /// extent in time there is none.
    QString Whole(const PlotScale& scale);

private:
    struct Statistics {
        std::optional<DataBounds> bounds;
        std::optional<double> mean;
        double sum = 0.0;
        LineForm line = LineForm::Straight;  ///< of which the mean is
    };

    bool Rises();
    const Statistics& Counted();
    std::optional<double> LineValue(QPointF place);
    std::optional<int> NearestPoint(const PlotScale& scale, QPointF position);
    QString PointText(const PlotScale& scale, double time, std::optional<double> value,
                      std::optional<int> item) const;
    QString BarText(int item);

    const KindDescriptor* m_facts;
    const CDocControl* m_chart;
    const ProfileTable* m_table;
    std::optional<bool> m_rises;
    std::optional<Statistics> m_statistics;
};
