// SPDX-License-Identifier: GPL-3.0-or-later
#include "dialog/PointCommands.h"

#include "base/FileDialogs.h"
#include "base/Message.h"
#include "dialog/CDlgImport.h"
#include "dialog/DialogTemplate.h"
#include "dialog/ReadProgress.h"
#include "grid/CGridControl.h"
#include "profiles/InsertPoints.h"
#include "profiles/PointFile.h"
#include "profiles/ProfileSession.h"
#include "profiles/TableText.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>

using namespace Id;
using namespace Qt::StringLiterals;

namespace {

struct ExportType {
    QStringView caption;
    const TableFormat& format;
};

constexpr ExportType kExportTypes[] = {
    {u"CSV : point-virgule, virgule décimale", kSemicolonFile},
    {u"CSV : virgule, point décimal", kCommaFile},
    {u"CSV : tabulation, point décimal", kTabFile},
};

bool HasRows(const ProfileSession& session) {
    return session.table().RowCount() > 0;
}

QString Question(qsizetype present, qsizetype read) {
    const QString points = present == 1 ? u"le point"_s : u"les %1 points"_s.arg(present);
    const QString new_points = read == 1 ? u"le point"_s : u"les %1 points"_s.arg(read);
    return u"Remplacer %1 par %2 du fichier ?"_s.arg(points, new_points);
}

}  // namespace

PointCommands::PointCommands(ProfileSession* session, CGridControl* grid, QWidget* dialog)
    : QObject(dialog), m_session(session), m_grid(grid), m_dialog(dialog) {
}

// A change of the rows marks the profile itself: the user may think better of a command.
CommandRows PointCommands::Rows() {
    using S = ProfileSession;
    using enum MenuPlace;
    constexpr bool kMarks = true;
    const auto insert = [this] { InsertCopied(); };
    const auto copy = [this] { CopyTable(kCopiedTable); };
    const auto copy_with_commas = [this] { CopyTable(kCopiedTableWithCommas); };
    const auto read_file = [this] { Import(); };
    const auto write_file = [this] { Export(); };
    return {
        {kInsertPoints, insert, &S::canAdd, !kMarks, u"Ctrl+Shift+V",
         u"Ajoute les points d'un tableau copié, chacun à son temps", Points,
         u"Insérer les points copiés"},
        {kCopyTable, copy, HasRows, !kMarks, u"Ctrl+Shift+C",
         u"Copie les lignes choisies, sinon toutes, avec toutes les colonnes", Points,
         u"Copier le tableau"},
        {kCopyTableWithCommas, copy_with_commas, HasRows, !kMarks, u"",
         u"De même, pour un tableur réglé en français", Points,
         u"Copier le tableau (virgule décimale)"},
        {kImportPoints, read_file, &S::canAdd, !kMarks, u"Ctrl+I",
         u"Remplace tous les points par ceux d'un fichier", Points, u"Importer des points..."},
        {kExportPoints, write_file, HasRows, !kMarks, u"Ctrl+E",
         u"Enregistre le tableau pour un tableur", Points, u"Exporter les points..."},
    };
}

void PointCommands::InsertCopied() {
    const ProfileTable& table = m_session->table();
    const PointTexts present = {table.Column(ProfileTable::kLabelColumn),
                                table.Column(ProfileTable::kValueColumn)};
    const PointReading copied =
        ReadPastedPoints(QGuiApplication::clipboard()->text(), present.times);
    if (copied.fault) {
        ShowMessage(FaultMessage(*copied.fault, PointTask::Insert));
        return;
    }
    const InsertedPoints all = ::InsertPoints(present, copied.points);
    m_session->ReplaceRows(all.points.times, all.points.values);
    m_grid->SelectRows(all.rows);
}

void PointCommands::CopyTable(const TableFormat& format) const {
    QList<int> rows = m_grid->SelectedRows();
    if (rows.size() <= 1 && m_grid->SelectedColumns().size() <= 1)
        rows.clear();
    QGuiApplication::clipboard()->setText(TableText(m_session->table(), format, rows));
}

void PointCommands::Import() {
    const QString path = AskOpenPath({m_folder,
                                      {{u"Fichiers de points"_s, u"*.csv *.txt *.tsv *.dat"_s},
                                       {u"Tous les fichiers"_s, u"*"_s}},
                                      {}});
    if (path.isEmpty())
        return;
    m_folder = QFileInfo(path).path();
    const PointFile file = PointFile::Open(path);
    PointColumns columns = file.likelyColumns();
    if (file.needsChoice()) {
        CDlgImport dialog(file, m_dialog);
        if (dialog.exec() != QDialog::Accepted)
            return;
        columns = dialog.columns();
    }
    PointReading reading;
    {
        ReadProgress progress(m_dialog);
        reading = file.Read(columns, [&](int percent) { return progress.Show(percent); });
    }
    if (reading.fault)
        ShowMessage(FaultMessage(*reading.fault, PointTask::Import));
    else if (!reading.cancelled &&
             AskYesNo(Question(m_session->table().RowCount(), reading.points.times.size())))
        m_session->ReplaceRows(reading.points.times, reading.points.values);
}

void PointCommands::Export() {
    FileRequest request = {m_folder, {}, u"csv"_s};
    for (const ExportType& type : kExportTypes)
        request.types.append({type.caption.toString(), u"*.csv"_s});
    const ChosenFile file = AskSaveFile(request);
    if (file.path.isEmpty())
        return;
    m_folder = QFileInfo(file.path).path();
    if (!ExportTable(m_session->table(), kExportTypes[file.type].format, file.path))
        ShowMessage(u"Ecriture impossible !"_s);
}
