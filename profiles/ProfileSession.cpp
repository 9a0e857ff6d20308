// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/ProfileSession.h"

#include "base/EnglishAtof.h"
#include "base/FileDialogs.h"
#include "base/FileReplace.h"
#include "base/Message.h"
#include "base/NumberText.h"
#include "profiles/Coefficients.h"

#include <QDir>
#include <QFileInfo>

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLabel = ProfileTable::kLabelColumn;
constexpr int kValue = ProfileTable::kValueColumn;
constexpr int kName = ProfileTable::kNameColumn;

// A function's removal never leaves fewer points.
constexpr int kMinPoints = 2;

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
    : QObject(parent),
      m_setup(std::move(setup)),
      m_name(m_setup.name),
      m_table(m_setup.kind),
      m_history(m_setup.kind) {
    FillDefaults();
}

QString ProfileSession::caption() const {
    return chartTitle().remove(u'\n');
}

QString ProfileSession::chartTitle() const {
    return facts().columns > 0 ? facts().title_prefix.toString() + m_name : QString();
}

bool ProfileSession::canAdd() const {
    return kind() == ProfileKind::Function && !isViewOnly();
}

bool ProfileSession::canRemove() const {
    return canAdd() && m_table.RowCount() > kMinPoints;
}

bool ProfileSession::canEditCoefficients() const {
    return facts().coefficients && !isViewOnly();
}

void ProfileSession::FillDefaults() {
    if (facts().rows == 0)
        return;
    const QStringList values(facts().rows, NumberText7(facts().default_value));
    m_table.ResetRows(RowLabelTexts(kind()), values);
}

bool ProfileSession::InitialFill() {
    if (facts().hasNames()) {
        m_daily_profiles = folders().DailyProfileList();
        m_table.SetChoices(DailyProfileChoices(m_daily_profiles));
    }
    for (int column = 1; isViewOnly() && column <= m_table.ColumnCount(); ++column)
        m_table.SetLocked(column, true);
    bool stays = true;
    switch (m_setup.mode) {
        case DisplayMode::OpenFile:
        case DisplayMode::View: stays = FillFromFile(); break;
        case DisplayMode::Edit: FillFromLists(); break;
    }
    // Not before: the path at the start means a file as seen from the caller's working folder.
    if (facts().hasNames())
        QDir::setCurrent(folders().KindFolder(kind()));
    m_history.Reset();
    emit StateChanged();
    return stays;
}

void ProfileSession::FillFromLists() {
    QStringList times = std::exchange(m_setup.times, {});
    const QStringList values = std::exchange(m_setup.values, {});
    const QStringList names = std::exchange(m_setup.names, {});
    switch (kind()) {
        case ProfileKind::Function:
            if (times.size() > values.size())
                times.resize(values.size());
            m_table.ResetRows(times, values);
            break;
        case ProfileKind::Annual:
        case ProfileKind::Daily:
            m_table.SetColumn(kValue, values);
            Adjust();
            break;
        case ProfileKind::Monthly:
            m_table.SetColumn(kValue, values);
            m_table.SetColumn(kName, names);
            break;
        case ProfileKind::Weekly: break;  // starts from its defaults whatever was handed over
    }
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
    EndDrag();
    const QString path = AskOpenPath(RequestIn(folders().KindFolder(kind())));
    if (!path.isEmpty())
        ReadFile(path);
}

ProfileFileStatus ProfileSession::ReadFile(const QString& path) {
    const ProfileReading reading = ReadProfile(kind(), path);
    if (reading.status != ProfileFileStatus::Read)
        return reading.status;
    const ProfileContent& content = reading.content;
    if (kind() == ProfileKind::Function) {
        m_table.ResetRows(content.labels, content.values);
    } else if (facts().coefficients && !isViewOnly() && !content.values.isEmpty()) {
        m_table.SetColumn(kValue, AdjustCoefficients(kind(), content.values, content.sum));
    } else {
        m_table.SetColumn(kValue, content.values);
        m_table.SetColumn(kName, content.names);
    }
    m_last_read = content;
    m_path = AbsolutePath(path);
    m_line_end = reading.line_end;
    m_name = FileTitle(path);
    m_history.Reset();
    m_modified = false;
    m_saved = true;
    emit StateChanged();
    return reading.status;
}

void ProfileSession::Save() {
    EndDrag();
    if (!CheckCoefficients())
        return;
    if (m_path.isEmpty()) {
        ShowMessage(
            u"Aucun nom n'a été sélectionné\npour la sauvegarde des données.\nChoisissez Enregistrer Sous"_s);
        return;
    }
    WriteFile(m_path);
}

void ProfileSession::SaveAs() {
    EndDrag();
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
    const ProfileContent content = {m_table.Column(kLabel), m_table.Column(kValue),
                                    m_table.Column(kName)};
    if (!CanBeReadBack(kind(), content) ||
        !ReplaceFile(path, WriteProfile(kind(), content, m_line_end))) {
        ShowMessage(u"Ecriture impossible !"_s);
        return;
    }
    m_path = path;
    m_saved = true;
    m_modified = false;
    const QString title = FileTitle(path);
    const bool in_kind_folder = folders().IsInKindFolder(kind(), path);
    m_saved_name = in_kind_folder ? title : QString();
    if (facts().save_renames && !title.isEmpty()) {
        m_setup.name = NameAfterSave(kind(), path, m_setup.name, in_kind_folder);
        m_name = title;
    }
    emit StateChanged();
}

bool ProfileSession::CheckCoefficients() {
    const float sum = RoundedSum(kind(), m_table.Column(kValue));
    if (SumIsRight(kind(), sum))
        return true;
    if (!AskYesNo(AdjustQuestion(kind(), sum)))
        return false;
    Rescale(sum);
    m_saved = false;
    return true;
}

void ProfileSession::Adjust() {
    EndDrag();
    const float sum = RoundedSum(kind(), m_table.Column(kValue));
    if (!SumIsRight(kind(), sum))
        Rescale(sum);
    Changed();
}

void ProfileSession::Rescale(float sum) {
    const QStringList before = m_table.Column(kValue);
    const QStringList after = AdjustCoefficients(kind(), before, sum);
    if (after == before)
        return;
    m_table.SetColumn(kValue, after);
    m_history.PushSnapshot(before);
    emit StateChanged();
}

void ProfileSession::SetEdition(bool on) {
    EndDrag();
    m_edition = on;
    if (!on)
        Adjust();
    Changed();
}

void ProfileSession::Changed() {
    m_modified = true;
    emit StateChanged();
}

RowState ProfileSession::RowStateOf(int row) const {
    return {row - 1, m_table.CellText(row, kLabel), m_table.CellText(row, kValue),
            m_table.CellText(row, kName)};
}

void ProfileSession::RestoreRow(const RowState& from, const RowState& to) {
    m_table.MoveRow(from.row + 1, to.row + 1);
    const int row = to.row + 1;
    m_table.SetCellText(row, kLabel, to.label);
    m_table.SetCellText(row, kValue, to.value);
    m_table.SetCellText(row, kName, to.name);
    const bool is_value = from.label == to.label && from.name == to.name;
    emit CellRestored(row, is_value ? kValue : from.label != to.label ? kLabel : kName);
}

// The others followed the row that the user had changed: none of them by more than it.
void ProfileSession::RestoreColumn(const QStringList& column) {
    const QStringList former = m_table.Column(kValue);
    m_table.SetColumn(kValue, column);
    int row = 0;
    float largest = -1.0F;
    for (int i = 0; i < m_table.RowCount(); ++i) {
        const float change = std::abs(EnglishAtof(column.value(i)) - EnglishAtof(former[i]));
        if (column.value(i) != former[i] && change > largest) {
            largest = change;
            row = i + 1;
        }
    }
    if (row > 0)
        emit CellRestored(row, kValue);
}

bool ProfileSession::Undo() {
    EndDrag();
    if (!canUndo())
        return false;
    if (facts().coefficients) {
        if (const auto column = m_history.UndoSnapshot(m_table.Column(kValue)))
            RestoreColumn(*column);
    } else if (const auto step = m_history.UndoStep()) {
        RestoreRow(step->after, step->before);
    }
    emit StateChanged();
    return true;
}

bool ProfileSession::Redo() {
    EndDrag();
    if (!canRedo())
        return false;
    if (facts().coefficients) {
        if (const auto column = m_history.RedoSnapshot())
            RestoreColumn(*column);
    } else if (const auto step = m_history.RedoStep()) {
        RestoreRow(step->before, step->after);
    }
    emit StateChanged();
    return true;
}

bool ProfileSession::RemoveRows(const QList<int>& rows) {
    EndDrag();
    const QList<int> there = m_table.DataRows(rows);
    if (!canAdd() || there.isEmpty())
        return false;
    if (m_table.RowCount() - there.size() < kMinPoints) {
        ShowMessage(u"Deux points au moins doivent rester."_s, MessageIcon::Information);
        return false;
    }
    m_history.Reset();
    m_table.RemoveRows(there);
    Changed();
    return true;
}

void ProfileSession::InsertPoint(int row, const QString& time, const QString& value) {
    EndDrag();
    m_table.InsertRow(row, time, value);
    Changed();
}

void ProfileSession::ForgetHistory() {
    m_history.Reset();
    Changed();
}

QStringList ProfileSession::SnapshotColumn() const {
    return facts().coefficients ? m_table.Column(kValue) : QStringList();
}

// One user action is done; if it changed anything, the step that undoes it goes into the history.
void ProfileSession::RecordChange(const RowState& before, int row_after,
                                  const QStringList& column_before) {
    if (facts().coefficients) {
        if (m_table.Column(kValue) == column_before)
            return;
        m_history.PushSnapshot(column_before);
    } else {
        const RowState after = RowStateOf(row_after);
        if (after == before)
            return;
        m_history.PushStep({before, after});
    }
    Changed();
}

// The row's value stands in the table; the other coefficients follow it.
void ProfileSession::Rebalance(int row) {
    if (!facts().coefficients || m_edition || isViewOnly())
        return;
    const QStringList column = m_table.Column(kValue);
    const float value = EnglishAtof(column.value(row - 1));
    m_table.SetColumn(
        kValue, SettleRemainder(kind(), RebalanceCoefficients(kind(), column, row - 1, value)));
}

void ProfileSession::EnterValue(int row, const QString& text) {
    EndDrag();
    const RowState before = RowStateOf(row);
    const QStringList column_before = SnapshotColumn();
    m_table.SetCellText(row, kValue, text);
    Rebalance(row);
    RecordChange(before, row, column_before);
}

// Whether a move of the row with `text` as its time would leave all texts as they stand.
bool ProfileSession::PassesTwinsOnly(int row, int target, const QString& text) const {
    const QString value = m_table.CellText(row, kValue);
    const int step = target < row ? -1 : 1;
    int passed = row;
    const auto is_twin = [&] {
        return m_table.CellText(passed, kLabel) == text &&
               m_table.CellText(passed, kValue) == value;
    };
    while (passed != target && is_twin())
        passed += step;
    return row != target && is_twin() && passed == target && RewrittenNumber(text) == text &&
           RewrittenNumber(value) == value;
}

void ProfileSession::EnterTime(int row, int target, const QString& text) {
    EndDrag();
    const RowState before = RowStateOf(row);
    if (PassesTwinsOnly(row, target, text))
        return;
    m_table.MoveRow(row, target, RewrittenNumber);
    m_table.SetCellText(target, kLabel, text);
    RecordChange(before, target, {});
}

void ProfileSession::EnterName(int row, const QString& name) {
    EndDrag();
    const RowState before = RowStateOf(row);
    m_table.SetCellText(row, kName, name);
    RecordChange(before, row, {});
}

void ProfileSession::EnterColumn(const QStringList& column, int row) {
    EndDrag();
    const QStringList column_before = SnapshotColumn();
    m_table.SetColumn(kValue, column);
    Rebalance(row);
    RecordChange({}, row, column_before);
}

void ProfileSession::EnterSeries(int row, const QList<std::pair<int, QStringList>>& columns,
                                 const QList<HistoryStep>& steps) {
    EndDrag();
    m_modified = true;
    if (steps.isEmpty())
        return;
    for (const auto& [column, texts] : columns)
        m_table.SetColumn(column, texts, row);
    for (const HistoryStep& step : steps)
        m_history.PushStep(step);
    Changed();
}

void ProfileSession::BeginDrag(int row) {
    EndDrag();
    if (!isViewOnly() && row >= 1 && row <= m_table.RowCount())
        m_drag = Drag{RowStateOf(row), SnapshotColumn()};
}

void ProfileSession::DragTo(const QString& text) {
    if (m_drag)
        m_table.SetCellText(m_drag->before.row + 1, kValue, text);
}

void ProfileSession::EndDrag() {
    if (!m_drag)
        return;
    const Drag drag = *std::exchange(m_drag, std::nullopt);
    const int row = drag.before.row + 1;
    if (m_table.CellText(row, kValue) == drag.before.value)
        return;
    Rebalance(row);
    RecordChange(drag.before, row, drag.column_before);
}

void ProfileSession::AddDailyProfile(const QString& name) {
    if (IsChoosableName(name) && !m_daily_profiles.contains(name))
        m_daily_profiles.append(name);
    m_table.SetChoices(DailyProfileChoices(m_daily_profiles));
}

void ProfileSession::CopyRowsTo(QStringList& times, QStringList& values) const {
    times = m_table.Column(kLabel);
    values = m_table.Column(kValue);
}
