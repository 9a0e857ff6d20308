// SPDX-License-Identifier: GPL-3.0-or-later
#include "HostRun.h"

#include "VirtualScreen.h"

#include <QRegularExpression>
#include <QTest>

#include <utility>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLimit = 30'000;  // ms, for a window, a picture at rest or the end of the program

QString PlainNumber(int number) {
    return QString::number(number);
}

}  // namespace

QPoint CellPlace(int row, int column) {
    constexpr int kLeft = 456;
    constexpr int kWidth = 146;
    constexpr int kTop = 65 + 24;
    constexpr int kRowHeight = 21;
    return {kLeft + kWidth - (column == 1 ? 85 : 20), kTop + row * kRowHeight - kRowHeight / 2};
}

HostRun::HostRun(const VirtualScreen& screen) : m_screen(screen) {
    m_program.setProcessEnvironment(screen.Environment());
    m_program.setStandardOutputFile(QProcess::nullDevice());
    m_program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

HostRun::~HostRun() {
    if (QTest::currentTestFailed()) {
        QString name = QString::fromLatin1(QTest::currentTestFunction());
        if (const char* const row = QTest::currentDataTag())
            name += u'-' + QString::fromLatin1(row).replace(u'/', u'_').replace(u' ', u'_');
        const QString path = QStringLiteral(FAILURE_PICTURES) + name + u".png"_s;
        if (PictureNow(u"root"_s).save(path))
            qWarning("picture of the screen: %s", qPrintable(path));
    }
    if (m_program.state() != QProcess::NotRunning) {
        m_program.kill();
        m_program.waitForFinished(kLimit);
    }
}

QString HostRun::ProgramPath() {
    return QStringLiteral(EDITOR_PROGRAM);
}

void HostRun::Start(const QStringList& arguments) {
    m_program.start(ProgramPath(), arguments);
}

void HostRun::StartAsStranger(const QString& program, const QStringList& arguments) {
    if (geteuid() != 0) {
        m_program.start(program, arguments);
        return;
    }
    // A build with sanitizers must not look for options in files that only this user can read.
    QProcessEnvironment environment = m_screen.Environment();
    environment.insert(u"LSAN_OPTIONS"_s, u"detect_leaks=0"_s);
    m_program.setProcessEnvironment(environment);
    m_program.start(u"setpriv"_s, QStringList{u"--reuid=65534"_s, u"--regid=65534"_s,
                                              u"--clear-groups"_s, u"--"_s, program} +
                                      arguments);
}

bool HostRun::Tool(const QStringList& arguments) {
    return m_screen.Run(u"xdotool"_s, arguments).has_value();
}

bool HostRun::FindWindow(const QString& title) {
    const QString pattern = u'^' + QRegularExpression::escape(title) + u'$';
    const auto found =
        m_screen.Run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, pattern});
    const auto active = m_screen.Run(u"xdotool"_s, {u"getactivewindow"_s});
    if (!found || !active)
        return false;
    const QByteArray window = active->trimmed();
    if (!found->split('\n').contains(window))
        return false;
    m_window = QString::fromLatin1(window);
    return true;
}

bool HostRun::WaitForWindow(const QString& title) {
    m_window.clear();
    const bool started = !m_program.program().isEmpty();
    const auto found_or_ended = [&] {
        return FindWindow(title) || (started && m_program.state() == QProcess::NotRunning);
    };
    return QTest::qWaitFor(found_or_ended, kLimit) && !m_window.isEmpty();
}

bool HostRun::WaitUntilClosed() {
    return QTest::qWaitFor([this] { return !Tool({u"getwindowname"_s, m_window}); }, kLimit);
}

bool HostRun::PassMessage() {
    return WaitForWindow(u"Function editor"_s) && Keys({u"Return"_s}) && WaitUntilClosed();
}

bool HostRun::Keys(const QStringList& keys) {
    return Tool(QStringList{u"key"_s} + keys);
}

bool HostRun::Type(const QString& text) {
    return Tool({u"type"_s, u"--"_s, text});
}

bool HostRun::Click(QPoint place) {
    return Tool({u"mousemove"_s, u"--window"_s, m_window, PlainNumber(place.x()),
                 PlainNumber(place.y()), u"click"_s, u"1"_s});
}

bool HostRun::Drag(QPoint from, QPoint to) {
    const auto move = [this](QPoint place) {
        return QStringList{u"mousemove"_s, u"--window"_s, m_window, PlainNumber(place.x()),
                           PlainNumber(place.y())};
    };
    return Tool(move(from) + QStringList{u"mousedown"_s, u"1"_s}) && Tool(move((from + to) / 2)) &&
           Tool(move(to) + QStringList{u"mouseup"_s, u"1"_s});
}

bool HostRun::TypeInto(QPoint cell, const QString& text) {
    return Click(cell) && Type(text);
}

bool HostRun::PressOk() {
    return Click(kOkButton) && HasEnded();
}

bool HostRun::HasEnded() {
    const auto ended = [this] { return m_program.state() == QProcess::NotRunning; };
    return QTest::qWaitFor(ended, kLimit) && m_program.exitStatus() == QProcess::NormalExit &&
           m_program.error() == QProcess::UnknownError && m_program.exitCode() == 0;
}

QImage HostRun::PictureNow(const QString& window) {
    const auto bytes = m_screen.Run(u"import"_s, {u"-window"_s, window, u"png:-"_s});
    return QImage::fromData(bytes.value_or(QByteArray()), "PNG")
        .convertToFormat(QImage::Format_RGB32);
}

QImage HostRun::Picture() {
    QImage picture;
    const auto at_rest = [&] {
        const QImage former = std::exchange(picture, PictureNow(m_window));
        return !picture.isNull() && picture == former;
    };
    return QTest::qWaitFor(at_rest, kLimit) ? picture : QImage();
}
