// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/RowCommands.h"

#include "base/Message.h"
#include "chart/CGraphControl.h"
#include "dialog/CDlgCalculate.h"
#include "dialog/CDlgSeries.h"
#include "dialog/DialogTemplate.h"
#include "grid/CGridControl.h"
#include "profiles/ProfileSession.h"
#include "profiles/RowCalculation.h"

using namespace Id;
using namespace Qt::StringLiterals;

namespace {

constexpr int kValue = ProfileTable::kValueColumn;

template <Operation operation>
bool CanCalculateRows(const ProfileSession& session) {
    return session.table().RowCount() > 0 && CanCalculate(session, operation);
}

}  // namespace

RowCommands::RowCommands(ProfileSession* session, CGridControl* grid, QWidget* dialog)
    : QObject(dialog), m_session(session), m_grid(grid), m_dialog(dialog) {
}

CommandRows RowCommands::Rows() {
    using S = ProfileSession;
    using enum MenuPlace;
    constexpr bool kMarks = true;
    return {
        {kCalculate, [this] { Calculate(); }, CanCalculateRows<Operation::Multiply>, !kMarks,
         u"Ctrl+M", u"Calcule les lignes choisies, sinon toutes", Points, u"Calculer..."},
        {kFill, [this] { Fill(); }, CanCalculateRows<Operation::Set>, !kMarks, u"Ctrl+D",
         u"Donne aux valeurs choisies le texte de la première", Points,
         u"Recopier la première valeur"},
        {kFillLine, [this] { FillLine(); }, CanCalculateRows<Operation::Linear>, !kMarks,
         u"Ctrl+Shift+D", u"Met les valeurs choisies sur la droite de la première à la dernière",
         Points, u"Relier la première valeur à la dernière"},
        {kInsertSeries, [this] { InsertSeries(); }, &S::canAdd, !kMarks, u"",
         u"Fait des points à pas constant", Points, u"Insérer une série..."},
        {kReturnToStart, [this] { ReturnToStart(); }, &S::canReturnToStart, !kMarks, u"",
         u"Rend les lignes du début ou du dernier fichier ouvert", Points, u"Revenir au début"},
    };
}

CGraphControl* RowCommands::chart() const {
    return m_dialog->findChild<CGraphControl*>();
}

void RowCommands::Calculate() {
    const QList<int> rows = RowsToCalculate(*m_session, m_grid->SelectedRows());
    CDlgCalculate(m_session, chart(), rows, m_dialog).exec();
}

void RowCommands::InsertSeries() {
    CDlgSeries dialog(m_session, chart(), m_dialog);
    dialog.exec();
    if (!dialog.addedRows().isEmpty())
        m_grid->SelectRows(dialog.addedRows());
}

void RowCommands::ReturnToStart() {
    if (AskYesNo(u"Revenir aux lignes du début ?"_s))
        m_session->ReturnToStart();
}

void RowCommands::Fill() {
    FillRows(*m_session, m_grid->SelectedRows(kValue));
}

void RowCommands::FillLine() {
    CalculateRows(*m_session, kValue, {.operation = Operation::Linear},
                  m_grid->SelectedRows(kValue));
}
