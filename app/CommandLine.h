// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <optional>

/// The arguments behind the program's name. Once there is an application object, without those of
/// the toolkit.
QStringList ProgramArguments(int argc, char** argv);

/// The first argument that is not a switch; "" when there is none. A switch begins with "-", on
/// Windows also with one "/".
QString FirstFile(const QStringList& arguments);

/// Runs what the program does without a window: "--help" or "--version" as the only argument, and
/// "--check FILE...". `arguments` are those behind the program's name. Writes to standard output
/// and waits until all of it is taken. Returns the exit status; nothing when the arguments ask for
/// the editor.
///
/// The status of "--check" is 0 when every file is right, 1 when one has faults, 2 when one cannot
/// be read or none is named.
std::optional<int> RunWithoutWindow(const QStringList& arguments);
