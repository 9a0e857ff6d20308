#include "VirtualScreen.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int kToolLimit = 10'000;   // ms
constexpr int kStartLimit = 30'000;  // ms

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
    // The server writes the number it found free to its standard output once it is ready.
    m_server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x1024x24"_s,
                               u"-nolisten"_s, u"tcp"_s});
    QByteArray number;
    while (!number.endsWith('\n')) {
        if (!m_server.waitForReadyRead(kStartLimit))
            return u"Xvfb does not start: "_s + m_server.errorString();
        number += m_server.readAllStandardOutput();
    }
    m_display = u':' + QString::fromLatin1(number).trimmed();

    m_window_manager.setProcessEnvironment(Environment());
    m_window_manager.setStandardErrorFile(QProcess::nullDevice());
    m_window_manager.start(u"openbox"_s, {u"--sm-disable"_s});
    if (!m_window_manager.waitForStarted(kStartLimit))
        return u"openbox does not start: "_s + m_window_manager.errorString();
    const auto ready = [this] {
        const auto answer = Run(u"xprop"_s, {u"-root"_s, u"_NET_SUPPORTING_WM_CHECK"_s});
        return answer && answer->contains('#');
    };
    if (!QTest::qWaitFor(ready, kStartLimit))
        return u"openbox does not answer, or xprop is missing"_s;
    if (!Run(u"xdotool"_s, {u"version"_s}))
        return u"xdotool is missing"_s;
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
