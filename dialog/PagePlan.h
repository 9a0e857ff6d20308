// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// How the rows of a table go onto pages: in blocks side by side, which are read one after the
/// other. The blocks of a page are equally long, up to the last. Pages and blocks count from 0.
struct PagePlan {
    int rows = 0;        ///< of the table
    int blocks = 1;      ///< for which a page is wide enough
    int first_room = 1;  ///< rows of a block that the first page has room for; may be 0
    int room = 1;        ///< the same of the other pages

    struct Block {
        int first_row = 0;  ///< from 1
        int rows = 0;
    };

    /// At least 1.
    int PageCount() const;

    int BlockCount(int page) const;
    Block BlockAt(int page, int block) const;

private:
    int RoomOf(int page) const { return page == 0 ? first_room : room; }
    int RowsBefore(int page) const;
    int RowsOf(int page) const { return RowsBefore(page + 1) - RowsBefore(page); }
};
