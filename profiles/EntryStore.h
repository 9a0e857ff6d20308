// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

class ProfileSession;

/// Where an entry comes from. A typed text that is no number is passed over without a word, since
/// the editor hardly lets one in; a pasted one is reported.
enum class EntrySource { Typed, Pasted };

/// Checks the typed entry `text` for a cell of the session's table (1-based row and column) and
/// stores it: a value with its bound, a time with its place in time order, a daily profile as it
/// is. Returns the row where the entry stands now; nothing when it was refused, with its message
/// shown and the table as it was.
std::optional<int> StoreEntry(ProfileSession& session, int row, int column, QString text);

/// Drops white space around `text` and turns a decimal comma into a point. False when `text` is no
/// number that can be computed with.
bool SettleNumber(QString& text);

/// The same; more than one separator, and any other wrong text that was pasted, shows a message.
bool CheckNumber(QString& text, EntrySource source);

/// Shows that a pasted text cannot stand where it was to go.
void ShowWrongEntry();
