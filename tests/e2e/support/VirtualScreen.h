// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <optional>

/// A screen of its own for real windows: Xvfb and a small window manager under a free display
/// number. Both end with the object.
class VirtualScreen {
public:
    VirtualScreen() = default;
    ~VirtualScreen();
    VirtualScreen(const VirtualScreen&) = delete;
    VirtualScreen& operator=(const VirtualScreen&) = delete;

    /// Waits until the screen is ready; returns "" then, else what went wrong.
    QString Start();

    /// The environment of programs that are to appear on this screen.
    QProcessEnvironment Environment() const;

    /// Runs a tool on this screen. Its standard output, or nothing when it is missing, fails or
    /// takes longer than ten seconds.
    std::optional<QByteArray> Run(const QString& program, const QStringList& arguments) const;

private:
    QString StartOnce();

    QString m_display;
    QProcess m_server;
    QProcess m_window_manager;
};
