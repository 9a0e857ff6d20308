// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/DailyProfile.h"

#include "dialog/CDlgGridChart.h"
#include "profiles/ProfileSession.h"

#include <QString>
#include <QStringList>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

// What both dialogs have in common.
SessionSetup DailySetup(const ProfileSession& session, DisplayMode mode) {
    SessionSetup setup;
    setup.kind = ProfileKind::Daily;
    setup.mode = mode;
    setup.folders = session.folders();
    return setup;
}

void AddDailyProfile(ProfileSession* session, int row, QWidget* parent) {
    SessionSetup setup = DailySetup(*session, DisplayMode::Edit);
    setup.name = u"Nouveau Profil"_s;
    setup.values = QStringList(Describe(ProfileKind::Daily).rows, u"1"_s);
    CDlgGridChart dialog(std::move(setup), parent);
    if (dialog.DoModal() != CDlgGridChart::kAccepted || dialog.session().savedName().isEmpty())
        return;
    session->AddDailyProfile(dialog.session().savedName());
    session->EnterName(row, dialog.session().savedName());
}

void ViewDailyProfile(const ProfileSession& session, const QString& name, QWidget* parent) {
    if (name.isEmpty())
        return;
    SessionSetup setup = DailySetup(session, DisplayMode::View);
    setup.text = session.folders().DailyProfilePath(name);
    CDlgGridChart(std::move(setup), parent).DoModal();
}

}  // namespace

void RunDailyProfile(ProfileSession* session, int row, const QString& choice, QWidget* parent) {
    if (choice == kAddProfileChoice)
        AddDailyProfile(session, row, parent);
    else
        ViewDailyProfile(*session, session->table().CellText(row, ProfileTable::kNameColumn),
                         parent);
}
