// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QString>
#include <QStringList>

class VirtualScreen;

/// Places in the main dialog, in pixels of its client area.
/// @{
constexpr QPoint kOkButton{493, 396};
constexpr QPoint kCancelButton{571, 396};
constexpr QPoint kRemoveButton{573, 11};
constexpr QRect kChart{11, 33, 434, 374};

/// A place in a cell of the point grid of at most 12 rows; row and column count from 1.
QPoint CellPlace(int row, int column);
/// @}

/// One run of the built program as its host starts it, and the user before its windows. Operations
/// that wait give up after some seconds and return false. A program that still runs at the end of
/// the object is killed; if the test failed, a picture of the screen is kept then.
class HostRun {
public:
    explicit HostRun(const VirtualScreen& screen);
    ~HostRun();
    HostRun(const HostRun&) = delete;
    HostRun& operator=(const HostRun&) = delete;

    /// The program under test.
    static QString ProgramPath();

    /// For settings before the start: working folder, standard output.
    QProcess& Program() { return m_program; }

    void Start(const QStringList& arguments);

    /// Starts the copy of the program at `program` as a user who owns nothing, if this process may
    /// choose its user; else as the same user.
    void StartAsStranger(const QString& program, const QStringList& arguments);

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
    bool TypeInto(QPoint cell, const QString& text);

    /// Presses the button "OK" of the main dialog and waits for the end.
    bool PressOk();

    /// Waits until the program has ended by itself; true when it did so with status 0.
    bool HasEnded();

    /// The window once it no longer changes.
    QImage Picture();

private:
    bool Tool(const QStringList& arguments);
    bool FindWindow(const QString& title);
    QImage PictureNow(const QString& window);

    const VirtualScreen& m_screen;
    QProcess m_program;
    QString m_window;
};
