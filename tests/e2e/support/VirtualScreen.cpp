// SPDX-License-Identifier: GPL-3.0-or-later
#include "VirtualScreen.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kToolLimit = 10'000;    // ms
constexpr int kStartLimit = 30'000;   // ms
constexpr int kManagerLimit = 8'000;  // ms
constexpr int kAttempts = 5;

void End(QProcess& process) {
    process.terminate();
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(kToolLimit)) {
        process.kill();
        process.waitForFinished(kToolLimit);
    }
}

}  // namespace

VirtualScreen::~VirtualScreen() {
    End(m_window_manager);
    End(m_server);
}

QString VirtualScreen::Start() {
    QString problem;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        problem = StartOnce();
        if (problem.isEmpty())
            return Run(u"xdotool"_s, {u"version"_s}) ? QString() : u"xdotool is missing"_s;
        End(m_window_manager);
        End(m_server);
    }
    return problem;
}

// The server can look for a free number by itself, but two that start or end at the same time then
// get in each other's way. With a number given it locks it, or ends at once if it is in use.
QString VirtualScreen::StartOnce() {
    m_display = u":%1"_s.arg(QRandomGenerator::global()->bounded(100, 10'000));
    m_server.start(u"Xvfb"_s, {m_display, u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s,
                               u"1280x1024x24"_s, u"-nolisten"_s, u"tcp"_s});
    // It writes the number once it is ready.
    if (!m_server.waitForReadyRead(kStartLimit))
        return u"Xvfb does not start: "_s + m_server.errorString() + u'\n' +
               QString::fromLocal8Bit(m_server.readAllStandardError());
    m_window_manager.setProcessEnvironment(Environment());
    m_window_manager.start(u"openbox"_s, {u"--sm-disable"_s});
    const auto ready = [this] {
        const auto answer = Run(u"xprop"_s, {u"-root"_s, u"_NET_SUPPORTING_WM_CHECK"_s});
        return answer && answer->contains('#');
    };
    if (!QTest::qWaitFor(ready, kManagerLimit))
        return u"openbox does not answer, or xprop is missing: "_s +
               m_window_manager.errorString() + u'\n' +
               QString::fromLocal8Bit(m_window_manager.readAllStandardError());
    return {};
}

QProcessEnvironment VirtualScreen::Environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, m_display);
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.remove(u"XAUTHORITY"_s);
    environment.remove(u"QT_SCALE_FACTOR"_s);
    return environment;
}

std::optional<QByteArray> VirtualScreen::Run(const QString& program,
                                             const QStringList& arguments) const {
    QProcess tool;
    tool.setProcessEnvironment(Environment());
    tool.start(program, arguments);
    if (!tool.waitForFinished(kToolLimit) || tool.exitStatus() != QProcess::NormalExit ||
        tool.exitCode() != 0)
        return std::nullopt;
    return tool.readAllStandardOutput();
}
