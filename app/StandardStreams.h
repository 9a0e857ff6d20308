// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Makes standard input, output and error as they were handed over safe to live with; to be called
/// before anything else is opened. A stream that was closed is opened on the null device, or the
/// next file or socket would take its number. From then on no write to output or error waits: what
/// a pipe or a terminal has no room for is lost. The host's own ends keep their settings.
void PrepareStandardStreams();

/// Writes "function-editor: ", `text` and a line end to standard error, as far as there is room.
void WriteError(const QString& text);
