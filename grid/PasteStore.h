// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QStringList>

class ProfileSession;

/// Where the lines come from. Empty cells of an own copy are pasted as such.
enum class PasteSource { OwnCopy, Foreign };

/// Stores the lines `cells` in the session's table, from the cell (`first_row`, `first_column`) on,
/// in a kind without coefficients. Each cell follows the rules of an entry and is a step of its
/// own; the columns are stored one after the other, from right to left. A pasted time moves its
/// row, and others with it; every text goes to the row it was pasted on. Refused cells keep their
/// texts: the first one shows its message, further ones are counted in one more.
///
/// The cost grows with the rows (times: n log n), and the table tells of the changes at once.
void StorePaste(ProfileSession& session, const QList<QStringList>& cells, int first_row,
                int first_column, PasteSource source);
