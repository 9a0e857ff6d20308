// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DialogRun.h"

#include "app/PlatformChoice.h"
#include "app/WindowIcon.h"
#include "dialog/CDlgGridChart.h"
#include "dialog/UserPrompts.h"

#include <QApplication>
#include <QThread>
#include <QWindow>

#include <clocale>
#include <string>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

// The toolkit takes over the user's locale. A host that prints its numbers with a decimal point
// must not print commas because it once showed the dialog.
class LocaleKeeper {
public:
    LocaleKeeper() {
        for (const int category : {LC_COLLATE, LC_MONETARY, LC_NUMERIC, LC_TIME})
            m_former.emplace_back(category, std::setlocale(category, nullptr));
    }
    ~LocaleKeeper() {
        for (const auto& [category, name] : m_former)
            std::setlocale(category, name.c_str());
    }
    LocaleKeeper(const LocaleKeeper&) = delete;
    LocaleKeeper& operator=(const LocaleKeeper&) = delete;

private:
    std::vector<std::pair<int, std::string>> m_former;
};

// The window `id` of another program or toolkit, owned by `dialog`. Does nothing where the display
// knows no such windows.
void SetTransientParent(QWidget* dialog, WindowId id) {
    QWindow* const parent = id != 0 ? QWindow::fromWinId(static_cast<WId>(id)) : nullptr;
    if (parent == nullptr)
        return;
    QObject::connect(dialog, &QObject::destroyed, parent, &QObject::deleteLater);
    dialog->winId();  // makes the dialog's own window
    dialog->windowHandle()->setTransientParent(parent);
}

}  // namespace

void MakeApplication() {
    if (QCoreApplication::instance() != nullptr)
        return;
    const std::optional<QByteArray> platform = UsablePlatform();
    if (!platform)
        return;
    const LocaleKeeper locale;
    // The toolkit refers to its arguments until the end of the process.
    static QByteArray words[] = {"functioneditor", "-platform", *platform};
    static char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
    static int count = platform->isEmpty() ? 1 : 3;
    // Never deleted: when the host's process ends, libraries that it needs may be gone already.
    auto* const application = new QApplication(count, arguments);
    application->setQuitOnLastWindowClosed(false);
}

bool CanShowDialog() {
    const auto* const application = qobject_cast<QApplication*>(QCoreApplication::instance());
    return application != nullptr && application->thread() == QThread::currentThread();
}

DialogOutcome RunDialog(SessionSetup setup, WindowId parent) {
    const UserPrompts prompts;
    CDlgGridChart dialog(std::move(setup));
    dialog.setWindowIcon(WindowIcon());
    SetTransientParent(&dialog, parent);
    DialogOutcome outcome;
    outcome.result = dialog.DoModal();
    outcome.name = dialog.session().nameForCaller();
    outcome.last_read = dialog.session().lastRead();
    if (outcome.result == CDlgGridChart::kAccepted) {
        const ProfileTable& table = dialog.session().table();
        outcome.labels = table.Column(ProfileTable::kLabelColumn);
        outcome.values = table.Column(ProfileTable::kValueColumn);
        outcome.names = table.Column(ProfileTable::kNameColumn);
    }
    return outcome;
}
