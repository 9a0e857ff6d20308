// SPDX-License-Identifier: GPL-3.0-or-later
#include "HostRun.h"

#include <QRegularExpression>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kToolLimit = 10'000;  // ms
constexpr int kLimit = 30'000;      // ms, for a window, a picture at rest or the end of the program

QByteArray FileOf(const Points& points, const QByteArray& time, const QByteArray& value) {
    QByteArray text = ReadAll(QStringLiteral(SAMPLES_DIR "pump-start.txt"));
    text.truncate(text.indexOf("7 ! Number of points"));
    text += QByteArray::number(points.size() - 1) + " ! Points less one\n";
    text += QByteArray::number(2 * points.size()) + " ! Point lines\n";
    text += points[0].first + " ! Time|hr|0|100\n" + points[0].second + " ! Host's m\xb3/h\n";
    for (const auto& point : points.sliced(1))
        text += point.first + time + point.second + value;
    return text + "! End\n";
}

QImage PictureNow(const QString& window) {
    return QImage::fromData(RunTool(u"import"_s, {u"-window"_s, window, u"png:-"_s}), "PNG")
        .convertToFormat(QImage::Format_RGB32);
}

bool XDoTool(const QStringList& arguments) {
    return !RunTool(u"xdotool"_s, arguments).isNull();
}

}  // namespace

QByteArray HostFile(const Points& points) {
    return FileOf(points, " ! Host's time\n", " ! Host's value\n");
}

QByteArray SavedFile(const Points& points) {
    return FileOf(points, " ! Time at point|hr|0|+Inf\n", " ! Value at point |any|-Inf|+Inf\n") +
           '\n';
}

QByteArray RunTool(const QString& program, const QStringList& arguments) {
    QProcess tool;
    tool.start(program, arguments);
    if (!tool.waitForFinished(kToolLimit) || tool.exitStatus() != QProcess::NormalExit ||
        tool.exitCode() != 0)
        return {};
    const QByteArray output = tool.readAllStandardOutput();
    return output.isNull() ? "" : output;
}

HostRun::HostRun() {
    m_program.setStandardOutputFile(QProcess::nullDevice());
    m_program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

HostRun::~HostRun() {
    if (QTest::currentTestFailed()) {
        const QString path =
            QStringLiteral(FAILURE_PICTURES "%1-%2.png")
                .arg(QLatin1StringView(QTest::currentTestFunction()),
                     QString::fromLatin1(QTest::currentDataTag()).replace(u'/', u'_'));
        if (PictureNow(u"root"_s).save(path))
            qWarning("picture of the screen: %s", qPrintable(path));
    }
    if (m_program.state() != QProcess::NotRunning) {
        m_program.kill();
        m_program.waitForFinished(kLimit);
    }
}

bool HostRun::FindWindow(const QString& title) {
    const QString pattern = u'^' + QRegularExpression::escape(title) + u'$';
    const QByteArray found =
        RunTool(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, pattern});
    const QByteArray active = RunTool(u"xdotool"_s, {u"getactivewindow"_s}).trimmed();
    m_window = found.split('\n').contains(active) ? QString::fromLatin1(active) : QString();
    return !m_window.isEmpty();
}

bool HostRun::WaitForWindow(const QString& title) {
    const auto found_or_ended = [&] {
        return FindWindow(title) || m_program.state() == QProcess::NotRunning;
    };
    return QTest::qWaitFor(found_or_ended, kLimit) && !m_window.isEmpty();
}

bool HostRun::WaitUntilClosed() {
    return QTest::qWaitFor([this] { return !XDoTool({u"getwindowname"_s, m_window}); }, kLimit);
}

bool HostRun::PassMessage() {
    return WaitForWindow(u"Function editor"_s) && Keys({u"Return"_s}) && WaitUntilClosed();
}

bool HostRun::Keys(const QStringList& keys) {
    return XDoTool(QStringList{u"key"_s} + keys);
}

bool HostRun::Type(const QString& text) {
    return XDoTool({u"type"_s, u"--"_s, text});
}

QStringList HostRun::MoveTo(QPoint place) const {
    return {u"mousemove"_s, u"--window"_s, m_window, QString::number(place.x()),
            QString::number(place.y())};
}

bool HostRun::Click(QPoint place) {
    return XDoTool(MoveTo(place) + QStringList{u"click"_s, u"1"_s});
}

bool HostRun::Drag(QPoint from, QPoint to) {
    return XDoTool(MoveTo(from) + QStringList{u"mousedown"_s, u"1"_s}) &&
           XDoTool(MoveTo((from + to) / 2)) &&
           XDoTool(MoveTo(to) + QStringList{u"mouseup"_s, u"1"_s});
}

bool HostRun::HasEnded(int status) {
    const auto ended = [this] { return m_program.state() == QProcess::NotRunning; };
    return QTest::qWaitFor(ended, kLimit) && m_program.exitStatus() == QProcess::NormalExit &&
           m_program.error() == QProcess::UnknownError && m_program.exitCode() == status;
}

QImage HostRun::Picture() {
    QImage picture;
    const auto at_rest = [&] {
        const QImage former = std::exchange(picture, PictureNow(m_window));
        return !picture.isNull() && picture == former;
    };
    return QTest::qWaitFor(at_rest, kLimit) ? picture : QImage();
}

EditorRun::EditorRun(const QStringList& arguments, const std::function<void(QProcess&)>& prepare) {
    if (prepare)
        prepare(Program());
    Start(arguments);
    if (!WaitForDialog())
        QTest::qFail("the dialog does not come", __FILE__, __LINE__);
}

HostTest::HostTest() {
    // Keys and mouse are not to reach the user's own windows.
    if (!qEnvironmentVariableIsSet("VIRTUAL_SCREEN"))
        qFatal("To be run by tools/virtual-screen.");
}
