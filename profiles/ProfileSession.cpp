// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/ProfileSession.h"

#include "base/FileDialogs.h"
#include "base/FileReplace.h"
#include "base/Message.h"
#include "profiles/Coefficients.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLabel = ProfileTable::kLabelColumn;
constexpr int kValue = ProfileTable::kValueColumn;
constexpr int kName = ProfileTable::kNameColumn;

bool IsReadOnlyFile(const QString& path) {
    const QFileInfo file(path);
    // Not WriteUser: to an administrator every file is writable.
    const auto writable = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    return file.exists() && (!file.isWritable() || (file.permissions() & writable) == 0);
}

FileRequest RequestIn(const QString& folder) {
    return {folder,
            {{u"Fichiers Textes (*.dat)"_s, u"*.dat"_s}, {u"All Files (*.*)"_s, u"*"_s}},
            u"dat"_s};
}

}  // namespace

ProfileSession::ProfileSession(SessionSetup setup, QObject* parent)
    : RowEdits(setup.kind, setup.mode, parent), m_setup(std::move(setup)), m_name(m_setup.name) {
}

QString ProfileSession::caption() const {
    return chartTitle().remove(u'\n');
}

QString ProfileSession::chartTitle() const {
    return facts().columns > 0 ? facts().title_prefix.toString() + m_name : QString();
}

bool ProfileSession::InitialFill() {
    if (facts().hasNames())
        SetDailyProfiles(folders().DailyProfileList());
    bool stays = true;
    switch (mode()) {
        case DisplayMode::OpenFile:
        case DisplayMode::View: stays = FillFromFile(); break;
        case DisplayMode::Edit: FillFromLists(); break;
    }
    // Not before: the path at the start means a file as seen from the caller's working folder.
    if (facts().hasNames())
        QDir::setCurrent(folders().KindFolder(kind()));
    ResetHistory();
    KeepStart();
    emit StateChanged();
    return stays;
}

void ProfileSession::FillFromLists() {
    QStringList times = std::exchange(m_setup.times, {});
    const QStringList values = std::exchange(m_setup.values, {});
    const QStringList names = std::exchange(m_setup.names, {});
    if (!facts().fills_from_lists)
        return;
    if (times.size() > values.size())
        times.resize(values.size());
    Fill(times, values, names);
    if (facts().coefficients)
        Adjust();
}

// Only here can a file that is refused, or none chosen, end the dialog: nothing has been edited
// yet.
bool ProfileSession::FillFromFile() {
    if (m_setup.text.isEmpty() && !canOpen())
        return true;  // nothing to open and nothing to ask for
    if (!m_setup.text.isEmpty())
        m_name = FileTitle(m_setup.text);
    const QString path = m_setup.text.isEmpty()
                             ? AskOpenPath(RequestIn(folders().KindFolder(kind())))
                             : m_setup.text;
    if (path.isEmpty())
        return false;
    const ProfileFileStatus status = ReadFile(path);
    return status == ProfileFileStatus::Read || status == ProfileFileStatus::CannotOpen;
}

void ProfileSession::Open() {
    const QString path = AskOpenPath(RequestIn(folders().KindFolder(kind())));
    if (!path.isEmpty())
        ReadFile(path);
}

ProfileFileStatus ProfileSession::ReadFile(const QString& path) {
    const ProfileReading reading = ReadProfile(kind(), path);
    if (reading.status != ProfileFileStatus::Read)
        return reading.status;
    const ProfileContent& content = reading.content;
    QStringList values = content.values;
    if (facts().coefficients && !isViewOnly() && !values.isEmpty())
        values = AdjustCoefficients(kind(), values, content.sum);
    Fill(content.labels, values, content.names);
    m_last_read = content;
    m_place = {AbsolutePath(path), reading.line_end, savedName()};
    m_name = FileTitle(path);
    m_saved = true;
    KeepStart();
    emit StateChanged();
    return reading.status;
}

void ProfileSession::Save() {
    if (!CheckCoefficients())
        return;
    if (!m_place) {
        ShowMessage(
            u"Aucun nom n'a été sélectionné\npour la sauvegarde des données.\nChoisissez Enregistrer Sous"_s);
        return;
    }
    WriteFile(m_place->path);
}

void ProfileSession::SaveAs() {
    if (!CheckCoefficients())
        return;
    const QString chosen = AskSavePath(RequestIn(folders().KindFolder(kind())));
    if (chosen.isEmpty())
        return;
    const QString path = WithExtension(chosen);
    if (facts().coefficients && !folders().IsInKindFolder(kind(), path))
        ShowMessage(
            u"Ce profil n'est pas enregistré dans le répertoire par défaut\nil ne sera pas enregistré dans les paramètres de la simulation."_s,
            MessageIcon::Warning, u"Attention !"_s);
    if (IsReadOnlyFile(path)) {
        ShowMessage(u"Fichier non modifiable"_s);
        return;
    }
    if (!IsStorableName(FileTitle(path))) {
        ShowMessage(u"Ecriture impossible !"_s);
        return;
    }
    WriteFile(path);
}

void ProfileSession::WriteFile(const QString& path) {
    const ProfileContent content = {table().Column(kLabel), table().Column(kValue),
                                    table().Column(kName)};
    const QByteArray line_end = m_place ? m_place->line_end : QByteArray();
    if (!CanBeReadBack(kind(), content) ||
        !ReplaceFile(path, WriteProfile(kind(), content, line_end))) {
        ShowMessage(u"Ecriture impossible !"_s);
        return;
    }
    m_saved = true;
    ClearModified();
    const QString title = FileTitle(path);
    const bool in_kind_folder = folders().IsInKindFolder(kind(), path);
    m_place = {path, line_end, in_kind_folder ? title : QString()};
    if (facts().save_renames && !title.isEmpty()) {
        m_setup.name = NameAfterSave(kind(), path, m_setup.name, in_kind_folder);
        m_name = title;
    }
    emit StateChanged();
}

bool ProfileSession::CheckCoefficients() {
    EndDrag();
    const float sum = RoundedSum(kind(), table().Column(kValue));
    if (SumIsRight(kind(), sum))
        return true;
    if (!AskYesNo(AdjustQuestion(kind(), sum)))
        return false;
    Rescale();
    m_saved = false;
    return true;
}

void ProfileSession::CopyRowsTo(QStringList& times, QStringList& values) const {
    times = table().Column(kLabel);
    values = table().Column(kValue);
}
