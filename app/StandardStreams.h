// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

/// Makes standard input, output and error safe to use, in whatever state the host handed them over.
/// Call it before anything else is opened. A closed stream is opened on the null device; else the
/// next file or socket would get its number. Neither the trace nor errors ever wait afterwards:
/// what a pipe or a terminal has no room for is lost. The host's own ends keep their settings.
void PrepareStandardStreams();

/// Whether standard output is a pipe or a file.
bool OutputIsPipeOrFile();

/// Writes to prepared standard output. Waits for room in a full pipe no longer than `patience`, in
/// ms, which it uses up. False when not all was taken.
bool WriteToOutput(QByteArrayView bytes, qint64& patience);

/// Writes to standard output that need not be prepared, and waits until all of it is taken. Without
/// one, Windows shows the text on the console that the program was started from.
void Print(const QString& text);

/// Writes "function-editor: ", `text` and a line end to standard error, as far as there is room.
void WriteError(const QString& text);
