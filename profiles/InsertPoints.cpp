// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/InsertPoints.h"

#include "base/EnglishAtof.h"
#include "base/NumberText.h"
#include "profiles/PointCells.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>
#include <vector>

namespace {

ColumnSeparator SeparatorOf(QStringView line) {
    if (line.contains(u'\t'))
        return ColumnSeparator::Tab;
    return line.contains(u';') ? ColumnSeparator::Semicolon : ColumnSeparator::WideBlanks;
}

// The times that go on from those of the present rows, in hours.
class NextTimes {
public:
    explicit NextTimes(const QStringList& times) {
        if (times.size() > 1)
            m_step = std::fabs(ParseNumber(times.last()) - ParseNumber(times[times.size() - 2]));
        m_last = times.isEmpty() ? -m_step : ParseNumber(times.last());
    }

    /// The `n`-th of them, from 0.
    QString Text(qsizetype n) const {
        return NumberText13(m_last + m_step * static_cast<double>(n + 1));
    }

private:
    double m_step = 1.0;
    double m_last = 0.0;
};

}  // namespace

PointReading ReadPastedPoints(QStringView text, const QStringList& times) {
    const NextTimes next(times);
    PointCollector points(PointCollector::DecimalSigns::Any);
    qsizetype columns = 0;
    bool may_be_header = true;
    for (qsizetype number = 1; !text.isEmpty(); ++number) {
        const QStringView line = TakeLine(text);
        const PointCells cells = SplitCells(line, SeparatorOf(line), 3);
        if (cells.isEmpty() || (std::exchange(may_be_header, false) &&
                                std::none_of(cells.begin(), cells.end(), BeginsLikeNumber)))
            continue;
        if (columns == 0)
            columns = cells.size();
        const bool is_point = cells.size() == columns && columns <= 2 && !cells.first().isEmpty();
        const QString next_time = columns == 1 ? next.Text(points.count()) : QString();
        const bool is_added =
            is_point ? points.AddTime(columns == 1 ? next_time : cells.first(), number) &&
                           points.AddValue(cells.last(), number)
                     : points.Fail(PointFault::Kind::NoPoint, number, line);
        if (!is_added)
            break;
    }
    return points.Take();
}

InsertedPoints InsertPoints(const PointTexts& present, const PointTexts& added) {
    const std::vector<double> added_times = ParseNumbers(added.times);
    std::vector<qsizetype> order(added_times.size());
    std::iota(order.begin(), order.end(), 0);
    const auto time_of = [&](qsizetype point) { return added_times[static_cast<size_t>(point)]; };
    std::stable_sort(order.begin(), order.end(),
                     [&](qsizetype a, qsizetype b) { return time_of(a) < time_of(b); });

    InsertedPoints all;
    auto& [times, values] = all.points;
    times.reserve(present.times.size() + added.times.size());
    values.reserve(times.capacity());
    const std::vector<double> present_times = ParseNumbers(present.times);
    qsizetype row = 0;
    for (const qsizetype point : order) {
        for (; row < present.times.size() &&
               present_times[static_cast<size_t>(row)] <= time_of(point);
             ++row) {
            times.append(present.times[row]);
            values.append(present.values[row]);
        }
        times.append(added.times[point]);
        values.append(added.values[point]);
        all.rows.append(static_cast<int>(times.size()));
    }
    times += present.times.sliced(row);
    values += present.values.sliced(row);
    return all;
}
