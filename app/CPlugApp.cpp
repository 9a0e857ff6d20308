#include "app/CPlugApp.h"

#include "app/Message.h"
#include "app/WindowIcon.h"
#include "profiles/CDlgGridChart.h"

#include <QEvent>
#include <QStringList>

#include <algorithm>
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

// The first argument that is not a switch; "" when there is none.
QString ExchangeFileName(const QStringList& arguments) {
    const auto found = std::find_if_not(
        arguments.cbegin() + std::min<qsizetype>(1, arguments.size()), arguments.cend(), IsSwitch);
    return found != arguments.cend() ? *found : QString();
}

}  // namespace

CPlugApp::CPlugApp(int& argc, char** argv) : QApplication(argc, argv) {
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
        // A box over a window that cannot be painted would have it painted again.
        const QEvent::Type type = event->type();
        if (type != QEvent::Paint && type != QEvent::UpdateRequest && type != QEvent::Expose)
            ShowMessage(u"There is not enough memory for this."_s);
        return true;
    }
}

bool CPlugApp::InitInstance() {
    m_exchange_file = std::make_unique<CPlugExchangeFile>(ExchangeFileName(arguments()));
    m_parameters.setParameters(m_exchange_file.get());

    SessionSetup setup;
    setup.kind = ProfileKind::Function;
    setup.mode = DisplayMode::Edit;
    setup.name = u"Function editor"_s;
    std::tie(setup.times, setup.values) = m_parameters.takePoints();
    QStringList times;
    QStringList values;
    if (EditPoints(std::move(setup), times, values))
        WriteBack(std::move(times), std::move(values));
    return false;
}

// The dialog is gone at the end: a large function is then held once only.
bool CPlugApp::EditPoints(SessionSetup setup, QStringList& times, QStringList& values) {
    CDlgGridChart dialog(std::move(setup));
    if (dialog.DoModal() != CDlgGridChart::kAccepted)
        return false;
    dialog.CopyRowsTo(times, values);
    return true;
}

void CPlugApp::WriteBack(QStringList times, QStringList values) {
    m_parameters.setPoints(std::move(times), std::move(values));
    try {
        m_parameters.writeFile();
    } catch (const std::invalid_argument& error) {
        ShowMessage(QString::fromLatin1(error.what()));
    }
}
