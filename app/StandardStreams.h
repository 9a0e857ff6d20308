// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Makes standard input, output and error safe to use, in whatever state the host handed them over.
/// Call it before anything else is opened. A closed stream is opened on the null device; else the
/// next file or socket would get its number. Writes to output and error never wait afterwards: what
/// a pipe or a terminal has no room for is lost. The host's own ends keep their settings.
void PrepareStandardStreams();

/// Writes "function-editor: ", `text` and a line end to standard error, as far as there is room.
void WriteError(const QString& text);
