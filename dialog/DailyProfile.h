// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class ProfileSession;
class QString;
class QWidget;

/// Runs a dialog on a daily profile over `parent`, as chosen in the third column of `row`: on a new
/// one, whose name the row gets once it is saved, or on the row's, to be looked at.
void RunDailyProfile(ProfileSession* session, int row, const QString& choice, QWidget* parent);
