// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Sanitized.h"
#include "TestFiles.h"

#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QTemporaryDir>

#include <functional>
#include <utility>

/// Places in the main dialog, in pixels of its client area.
/// @{
constexpr QPoint kOkButton{OK_BUTTON};
constexpr QPoint kCancelButton{571, 396};
constexpr QPoint kRemoveButton{573, 11};
constexpr QRect kChart{11, 33, 434, 374};

/// A place in a cell of the point grid of at most 12 rows; row and column count from 1.
constexpr QPoint CellPlace(int row, int column) {
    return {column == 1 ? 517 : 582, 79 + 21 * row};
}
/// @}

/// Time and value of each point, as they stand in an exchange file.
using Points = QList<std::pair<QByteArray, QByteArray>>;

/// An exchange file as a host writes it, with the host's own comments on all point lines.
QByteArray HostFile(const Points& points);

/// The same file with these points as the editor writes it: only the first point keeps the host's
/// comments, and the line end of the last line has become an empty line.
QByteArray SavedFile(const Points& points);

/// The standard output of a tool; null when it is missing, fails or takes longer than ten seconds.
QByteArray RunTool(const QString& program, const QStringList& arguments);

/// One run of the built program as its host starts it, and the user before its windows. Operations
/// that wait give up after some seconds and return false. A program that still runs at the end of
/// the object is killed; if the test failed, a picture of the screen is kept then.
class HostRun {
public:
    HostRun();
    ~HostRun();
    HostRun(const HostRun&) = delete;
    HostRun& operator=(const HostRun&) = delete;

    /// The program under test.
    static QString ProgramPath() { return QStringLiteral(EDITOR_PROGRAM); }

    /// For settings before the start: working folder, standard output.
    QProcess& Program() { return m_program; }

    void Start(const QStringList& arguments) { m_program.start(ProgramPath(), arguments); }

    /// Waits until a window with this very title is visible and has the keyboard, whichever program
    /// it belongs to. Mouse and picture operations below are about this window then.
    bool WaitForWindow(const QString& title);

    /// Waits for the main dialog.
    bool WaitForDialog() { return WaitForWindow(QStringLiteral(" Function editor")); }

    /// Waits until the window found last is gone.
    bool WaitUntilClosed();

    /// Waits for a message of the editor and closes it with Enter.
    bool PassMessage();

    /// Presses keys named as xdotool names them ("Return", "ctrl+z").
    bool Keys(const QStringList& keys);

    bool Type(const QString& text);
    bool Click(QPoint place);
    bool Drag(QPoint from, QPoint to);

    /// Clicks the cell at the place and types over it; the cell's editor stays open.
    bool TypeInto(QPoint cell, const QString& text) { return Click(cell) && Type(text); }

    /// Presses the button "OK" of the main dialog and waits for the end.
    bool PressOk() { return Click(kOkButton) && HasEnded(); }

    /// Waits until the program has ended by itself; true when it did so with this exit status.
    bool HasEnded(int status = 0);

    /// The window once it no longer changes.
    QImage Picture();

private:
    bool FindWindow(const QString& title);
    QStringList MoveTo(QPoint place) const;

    QProcess m_program;
    QString m_window;
};

/// A run whose main dialog is shown. Fails the running test when it does not come.
struct EditorRun : HostRun {
    explicit EditorRun(const QStringList& arguments,
                       const std::function<void(QProcess&)>& prepare = {});
};

/// A test on a virtual screen, with a folder for its files.
struct HostTest : QObject {
    HostTest();

    QTemporaryDir m_folder;
    QString m_file = m_folder.filePath(QStringLiteral("exchange file.txt"));
};
