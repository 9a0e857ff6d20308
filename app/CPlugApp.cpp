#include "app/CPlugApp.h"

#include "app/Message.h"
#include "profiles/CDlgGridChart.h"
#include "resources/Resources.h"

#include <QStringList>

#include <algorithm>
#include <stdexcept>

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
    InitResources();
    setApplicationName(u"function-editor"_s);
    setApplicationDisplayName(QString());
    setDesktopFileName(u"function-editor"_s);
    setWindowIcon(QIcon(u":/icons/function-editor.svg"_s));
}

bool CPlugApp::InitInstance() {
    m_exchange_file = std::make_unique<CPlugExchangeFile>(ExchangeFileName(arguments()));
    m_parameters.setParameters(m_exchange_file.get());

    QString name = u"Function editor"_s;
    QStringList times;
    QStringList values;
    for (qsizetype i = 0; i < m_parameters.getPointCount(); ++i) {
        const CPlugPoint point = m_parameters.getPoint(i);
        times.append(point.time);
        values.append(point.value);
    }
    QStringList extras(times.size(), u"0"_s);

    SessionSetup setup;
    setup.kind = ProfileKind::Function;
    setup.mode = DisplayMode::Edit;
    setup.name = &name;
    setup.times = &times;
    setup.values = &values;
    setup.names = &extras;
    CDlgGridChart dialog(std::move(setup));
    if (dialog.DoModal() == CDlgGridChart::kAccepted) {
        dialog.CopyRowsTo(times, values);
        WriteBack(times, values);
    }
    return false;
}

void CPlugApp::WriteBack(const QStringList& times, const QStringList& values) {
    m_parameters.clearPoints();
    const qsizetype pairs = std::min(times.size(), values.size());
    for (qsizetype i = 0; i < pairs; ++i)
        m_parameters.addPoint({times[i], values[i]});
    try {
        m_parameters.writeFile();
    } catch (const std::invalid_argument& error) {
        ShowMessage(QString::fromLatin1(error.what()));
    }
}
