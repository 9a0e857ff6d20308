// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/ColumnShare.h"

#include <algorithm>
#include <numeric>

QList<int> ShareRoom(QList<int> widths, const QList<int>& needs, int room) {
    if (widths.isEmpty())
        return widths;
    int left = std::max(0, room - std::accumulate(widths.cbegin(), widths.cend(), 0));
    QList<int> order(widths.size());
    std::iota(order.begin(), order.end(), 0);
    const auto lacks = [&](int column) { return std::max(0, needs[column] - widths[column]); };
    std::stable_sort(order.begin(), order.end(),
                     [&](int one, int other) { return lacks(one) < lacks(other); });
    for (const int column : order) {
        const int more = std::min(lacks(column), left);
        widths[column] += more;
        left -= more;
    }
    const int each = left / static_cast<int>(widths.size());
    for (int& width : widths)
        width += each;
    widths.last() += left - each * static_cast<int>(widths.size());
    return widths;
}
