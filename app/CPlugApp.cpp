// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CPlugApp.h"

#include "app/WindowIcon.h"
#include "base/FileReplace.h"
#include "base/Message.h"
#include "dialog/CDlgGridChart.h"

#include <QEvent>
#include <QStringList>

#include <algorithm>
#include <iterator>
#include <new>
#include <stdexcept>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

bool IsSwitch(const QString& argument) {
#ifdef Q_OS_WIN
    return argument.startsWith(u'-') || argument.startsWith(u'/');
#else
    return argument.startsWith(u'-');
#endif
}

// The first argument that is not a switch; "" when there is none. The toolkit has removed its own
// options already. Only the bytes hold a name that is not UTF-8; other systems have texts only.
QString ExchangeFileName([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
#ifdef Q_OS_WIN
    const QStringList arguments = QCoreApplication::arguments();
#else
    QStringList arguments;
    std::transform(argv, argv + argc, std::back_inserter(arguments), PathFromBytes);
#endif
    const auto found = std::find_if_not(
        arguments.cbegin() + std::min<qsizetype>(1, arguments.size()), arguments.cend(), IsSwitch);
    return found != arguments.cend() ? *found : QString();
}

}  // namespace

CPlugApp::CPlugApp(int& argc, char** argv)
    : QApplication(argc, argv), m_exchange_file(ExchangeFileName(argc, argv)) {
    setApplicationName(u"function-editor"_s);
    setApplicationDisplayName(QString());
    setDesktopFileName(u"function-editor"_s);
    installEventFilter(this);
}

// The icon can wait until the first window has been painted.
bool CPlugApp::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Expose) {
        removeEventFilter(this);
        QMetaObject::invokeMethod(
            this, [] { setWindowIcon(WindowIcon()); }, Qt::QueuedConnection);
    }
    return QApplication::eventFilter(object, event);
}

bool CPlugApp::notify(QObject* object, QEvent* event) {
    try {
        return QApplication::notify(object, event);
    } catch (const std::bad_alloc&) {
        // A message box would repaint this window, which just ran out of memory.
        const QEvent::Type type = event->type();
        if (type != QEvent::Paint && type != QEvent::UpdateRequest && type != QEvent::Expose)
            ShowMessage(u"There is not enough memory for this."_s);
        return true;
    }
}

bool CPlugApp::InitInstance() {
    m_parameters.setParameters(&m_exchange_file);

    SessionSetup setup;
    setup.kind = ProfileKind::Function;
    setup.mode = DisplayMode::Edit;
    setup.name = u"Function editor"_s;
    std::tie(setup.times, setup.values) = m_parameters.takePoints();
    CDlgGridChart dialog(std::move(setup));
    dialog.SetAcceptance([this, &dialog] { return WriteBack(dialog); });
    dialog.DoModal();
    return false;
}

// False when the write was refused and can be tried again: then the dialog stays.
bool CPlugApp::WriteBack(const CDlgGridChart& dialog) {
    QStringList times;
    QStringList values;
    dialog.CopyRowsTo(times, values);
    m_parameters.setPoints(std::move(times), std::move(values));
    bool is_done = true;
    try {
        is_done = m_parameters.writeFile();
    } catch (const std::invalid_argument& error) {
        ShowMessage(QString::fromLatin1(error.what()));
    }
    // While the lists are shared an edit would copy all rows.
    m_parameters.clearPoints();
    return is_done;
}
