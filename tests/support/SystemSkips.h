// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTest>

/// Tests that mean nothing on Windows: the function, its row ("" for all of them) and the reason.
/// docs/WINDOWS.md lists them too, and the test programs that are not built there.
struct SystemSkip {
    const char* function;
    const char* row;
    const char* reason;
};

inline constexpr SystemSkip kWindowsSkips[] = {
    {"PathsMeanWhatTheSystemMeans", "", "the names and links are those of Unix"},
    {"sessions", "relative paths are those of the working folder at the start", "makes a link"},
    {"sessions", "files that cannot be read whole, or at all", "makes a named pipe"},
    {"sessions", "a plain save goes to the opened file, inside or outside the folder of the kind",
     "makes a link"},
    {"Print", "", "reads the pages with pdftotext"},
    {"longTitleLeavesRoom", "", "the fonts of the off-screen platform differ from those of Unix"},
    {"Dialog", "", "the fonts of the off-screen platform are not those of Windows"},
};

/// For the slot `init` of a test: skips the running row where it is listed for this system.
inline void SkipOnThisSystem() {
#ifdef Q_OS_WIN
    const QByteArrayView function = QTest::currentTestFunction();
    const QByteArrayView row = QTest::currentDataTag();
    for (const SystemSkip& skip : kWindowsSkips) {
        if (function == skip.function && (*skip.row == '\0' || row == skip.row))
            QSKIP(skip.reason);
    }
#endif
}
