// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>

#include <algorithm>

/// Each of `numbers` once, in ascending order.
inline QList<int> SortedDistinct(QList<int> numbers) {
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}
