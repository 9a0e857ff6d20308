// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <optional>

/// The points of an exchange file without faults.
struct FileSummary {
    qsizetype points = 0;
    QString first_time;  ///< hours, the text of the file
    QString last_time;
};

/// Takes a fault: an English sentence, and its line in the file, counted from 1.
using FaultHandler = std::function<void(qsizetype line, const QString& text)>;

/// Faults of one file that are handed over one by one. One more call counts the rest.
inline constexpr int kMaxFaults = 100;

/// The outcome of `CheckExchangeFile`.
struct FileCheck {
    bool readable = false;
    qsizetype faults = 0;
    FileSummary summary;  ///< of a readable file without faults
};

/// Reads the exchange file at `path` and hands each fault to `on_fault`, in the order of lines:
/// counts that contradict each other, missing lines and values, texts that are no numbers, times
/// that fall, bytes outside code page 1252. Shows no message and writes nothing.
FileCheck CheckExchangeFile(const QString& path, const FaultHandler& on_fault);
