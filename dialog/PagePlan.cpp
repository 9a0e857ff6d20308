// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/PagePlan.h"

#include <algorithm>

namespace {

// Of numbers that are not negative.
int DividedUp(int number, int divisor) {
    return number == 0 ? 0 : (number - 1) / divisor + 1;
}

}  // namespace

int PagePlan::PageCount() const {
    return 1 + DividedUp(std::max(rows - blocks * first_room, 0), blocks * room);
}

int PagePlan::RowsBefore(int page) const {
    return page == 0 ? 0 : std::min(blocks * (first_room + (page - 1) * room), rows);
}

int PagePlan::BlockCount(int page) const {
    const int count = RowsOf(page);
    return count == 0 ? 0 : DividedUp(count, RoomOf(page));
}

PagePlan::Block PagePlan::BlockAt(int page, int block) const {
    const int count = RowsOf(page);
    const int length = DividedUp(count, BlockCount(page));
    return {RowsBefore(page) + block * length + 1,
            std::min(length, std::max(count - block * length, 0))};
}
