// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CPlugApp.h"

#include "app/CommandLine.h"
#include "app/WindowIcon.h"
#include "base/Message.h"
#include "dialog/CDlgGridChart.h"

#include <QEvent>
#include <QStringList>

#include <new>
#include <stdexcept>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

CPlugApp::CPlugApp(int& argc, char** argv)
    : QApplication(argc, argv), m_exchange_file(FirstFile(ProgramArguments(argc, argv))) {
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
