// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/RowEdits.h"

#include "base/EnglishAtof.h"
#include "base/Message.h"
#include "base/NumberText.h"
#include "profiles/Coefficients.h"
#include "profiles/EntryRules.h"
#include "profiles/ProfileFolders.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLabel = ProfileTable::kLabelColumn;
constexpr int kValue = ProfileTable::kValueColumn;
constexpr int kName = ProfileTable::kNameColumn;

// A function's removal never leaves fewer points.
constexpr int kMinPoints = 2;

}  // namespace

RowEdits::RowEdits(ProfileKind kind, DisplayMode mode, QObject* parent)
    : QObject(parent), m_kind(kind), m_mode(mode), m_table(kind), m_history(kind) {
    if (facts().rows > 0) {
        const QStringList values(facts().rows, NumberText7(facts().default_value));
        m_table.ResetRows(RowLabelTexts(kind), values);
    }
    for (int column = 1; isViewOnly() && column <= m_table.ColumnCount(); ++column)
        m_table.SetLocked(column, true);
    m_table.SetEntryHook([this](int row, int column, const QString& text) {
        return Enter(row, column, text).has_value();
    });
}

bool RowEdits::canRemove() const {
    return canAdd() && m_table.RowCount() > kMinPoints;
}

void RowEdits::SetDailyProfiles(const QStringList& names) {
    m_daily_profiles = names;
    m_table.SetChoices(DailyProfileChoices(names));
}

void RowEdits::AddDailyProfile(const QString& name) {
    if (IsChoosableName(name) && !m_daily_profiles.contains(name))
        SetDailyProfiles(m_daily_profiles + QStringList(name));
}

RowState RowEdits::RowStateOf(int row) const {
    return {row - 1, m_table.CellText(row, kLabel), m_table.CellText(row, kValue),
            m_table.CellText(row, kName)};
}

// The columns are shared with the table, and an edit then copies the column. So an edit of one row
// takes the row only.
RowEdits::Before RowEdits::StateBefore(int row, Scope scope) const {
    const bool all = scope == Scope::Table || facts().coefficients;
    return {RowStateOf(row), all ? m_table.Columns() : TableTexts()};
}

// Does one user action on `row`; `edit` returns the row where it stands afterwards.
template <typename Edit>
void RowEdits::Record(int row, const Edit& edit, Scope scope) {
    EndDrag();
    const Before before = StateBefore(row, scope);
    const int row_after = edit();
    RecordSince(before, row_after);
}

void RowEdits::RecordSince(const Before& before, int row_after) {
    const bool is_row = before.table.isEmpty();
    const RowState after = RowStateOf(row_after);
    if (is_row ? after == before.row : m_table.Columns() == before.table)
        return;
    if (facts().coefficients)
        m_history.PushSnapshot(before.table[kValue - 1]);
    else if (is_row)
        m_history.PushStep({before.row, after});
    else
        m_history.PushStep({{}, {}, TableStep{before.table, m_table.Columns()}});
    Changed();
}

void RowEdits::Changed() {
    m_modified = true;
    emit StateChanged();
}

void RowEdits::WriteRows(const QStringList& times, const QStringList& values,
                         const QStringList& names) {
    if (facts().hasTimes()) {
        m_table.ResetRows(times, values);
        return;
    }
    m_table.SetColumn(kValue, values);
    m_table.SetColumn(kName, names);
}

void RowEdits::Fill(const QStringList& times, const QStringList& values, const QStringList& names) {
    EndDrag();
    WriteRows(times, values, names);
    m_history.Reset();
    m_modified = false;
}

std::optional<int> RowEdits::Enter(int row, int column, const QString& text) {
    if (column == kName) {
        if (IsProfileCommand(text))
            return std::nullopt;
        EnterName(row, text);
    } else {
        const std::optional<QString> number = CheckNumber(text, EntrySource::Typed);
        if (!number || (column == kValue && !CheckTypedBound(m_kind, EnglishAtof(*number))))
            return std::nullopt;
        if (column == kValue) {
            EnterValue(row, *number);
        } else {
            const int from = row;
            row = TargetRow(m_table.Column(kLabel), row, EnglishAtof(*number));
            EnterTime(from, row, *number);
        }
    }
    SetModified();
    return row;
}

// The row's value stands in the table; the other coefficients follow it.
void RowEdits::Rebalance(int row) {
    if (!facts().coefficients || m_edition || isViewOnly())
        return;
    const QStringList column = m_table.Column(kValue);
    const float value = EnglishAtof(column.value(row - 1));
    m_table.SetColumn(
        kValue, SettleRemainder(m_kind, RebalanceCoefficients(m_kind, column, row - 1, value)));
}

void RowEdits::EnterValue(int row, const QString& text) {
    Record(row, [&] {
        m_table.SetCellText(row, kValue, text);
        Rebalance(row);
        return row;
    });
}

// True when a move of the row with `text` as its time would change no text.
bool RowEdits::PassesTwinsOnly(int row, int target, const QString& text) const {
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

void RowEdits::EnterTime(int row, int target, const QString& text) {
    Record(row, [&] {
        if (PassesTwinsOnly(row, target, text))
            return row;
        m_table.MoveRow(row, target, RewrittenNumber);
        m_table.SetCellText(target, kLabel, text);
        return target;
    });
}

void RowEdits::EnterName(int row, const QString& name) {
    Record(row, [&] {
        m_table.SetCellText(row, kName, name);
        return row;
    });
}

void RowEdits::EnterColumn(const QStringList& column, int row) {
    const auto enter = [&] {
        m_table.SetColumn(kValue, column);
        Rebalance(row);
        return row;
    };
    Record(row, enter, Scope::Table);
}

void RowEdits::EnterSeries(int row, const QList<std::pair<int, QStringList>>& columns,
                           const QList<HistoryStep>& steps) {
    EndDrag();
    SetModified();
    if (steps.isEmpty())
        return;
    for (const auto& [column, texts] : columns)
        m_table.SetColumn(column, texts, row);
    for (const HistoryStep& step : steps)
        m_history.PushStep(step);
    Changed();
}

void RowEdits::ReplaceRows(const QStringList& times, const QStringList& values,
                           const QStringList& names) {
    const auto replace = [&] {
        // The selection stays where the rows do.
        if (facts().hasTimes() && times.size() == m_table.RowCount())
            m_table.SetColumns({times, values});
        else
            WriteRows(times, values, names);
        return 0;
    };
    Record(0, replace, Scope::Table);
}

void RowEdits::ReturnToStart() {
    const TableTexts start = m_start.texts();
    ReplaceRows(start.value(kLabel - 1), start.value(kValue - 1), start.value(kName - 1));
}

void RowEdits::RewriteHeaders() {
    for (int column = 1; column <= m_table.ColumnCount(); ++column) {
        const QStringView header = facts().pasted_headers[static_cast<size_t>(column - 1)];
        if (!header.isEmpty())
            m_table.SetHeaderText(column, header.toString());
    }
}

void RowEdits::Rescale() {
    Record(0, [&] {
        const QStringList column = m_table.Column(kValue);
        const float sum = RoundedSum(m_kind, column);
        if (!SumIsRight(m_kind, sum))
            m_table.SetColumn(kValue, AdjustCoefficients(m_kind, column, sum));
        return 0;
    });
}

void RowEdits::Adjust() {
    Rescale();
    Changed();
}

void RowEdits::SetEdition(bool on) {
    EndDrag();
    m_edition = on;
    if (!on)
        Adjust();
    Changed();
}

bool RowEdits::Undo() {
    return Travel(Direction::Back);
}

bool RowEdits::Redo() {
    return Travel(Direction::Forth);
}

bool RowEdits::Travel(Direction direction) {
    EndDrag();
    const bool back = direction == Direction::Back;
    if (!(back ? canUndo() : canRedo()))
        return false;
    if (facts().coefficients) {
        RestoreColumn(
            (back ? m_history.UndoSnapshot(m_table.Column(kValue)) : m_history.RedoSnapshot())
                .value());
    } else {
        const HistoryStep step = (back ? m_history.UndoStep() : m_history.RedoStep()).value();
        if (step.table)
            RestoreTable(back ? step.table->before : step.table->after);
        else
            RestoreRow(back ? step.after : step.before, back ? step.before : step.after);
    }
    emit StateChanged();
    return true;
}

void RowEdits::RestoreRow(const RowState& from, const RowState& to) {
    m_table.MoveRow(from.row + 1, to.row + 1);
    const int row = to.row + 1;
    m_table.SetCellText(row, kLabel, to.label);
    m_table.SetCellText(row, kValue, to.value);
    m_table.SetCellText(row, kName, to.name);
    const bool is_value = from.label == to.label && from.name == to.name;
    emit CellRestored(row, is_value ? kValue : from.label != to.label ? kLabel : kName);
}

// The others followed the row that the user had changed: none of them by more than it.
void RowEdits::RestoreColumn(const QStringList& column) {
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

void RowEdits::RestoreTable(const TableTexts& texts) {
    const TableTexts former = m_table.Columns();
    m_table.SetColumns(texts);
    qsizetype first = std::max(former[0].size(), texts[0].size());
    int changed = kValue;
    // The value's column is named before its neighbours of the same row.
    for (int column : {kValue, kLabel, kName}) {
        if (column > former.size())
            continue;
        const QStringList& now = texts[column - 1];
        const auto [at, other] = std::mismatch(
            now.cbegin(), now.cend(), former[column - 1].cbegin(), former[column - 1].cend());
        if (at - now.cbegin() < first) {
            first = at - now.cbegin();
            changed = column;
        }
    }
    // Rows that are gone again were behind the last one.
    const int row = std::min(static_cast<int>(first) + 1, m_table.RowCount());
    if (row > 0)
        emit CellRestored(row, changed);
}

bool RowEdits::RemoveRows(const QList<int>& rows) {
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

void RowEdits::InsertPoint(int row, const QString& time, const QString& value) {
    EndDrag();
    m_table.InsertRow(row, time, value);
    Changed();
}

void RowEdits::ForgetHistory() {
    m_history.Reset();
    Changed();
}

void RowEdits::BeginDrag(int row) {
    EndDrag();
    if (!isViewOnly() && row >= 1 && row <= m_table.RowCount())
        m_drag = StateBefore(row, Scope::Row);
}

void RowEdits::DragTo(const QString& text, const QString& time) {
    if (!m_drag)
        return;
    const bool could_undo = canUndo();
    const RowState& began = m_drag->row;
    m_table.SetCellText(began.row + 1, kValue, text);
    if (facts().hasTimes())
        m_table.SetCellText(began.row + 1, kLabel, time.isEmpty() ? began.label : time);
    if (canUndo() != could_undo)
        emit StateChanged();
}

bool RowEdits::hasDragged() const {
    return m_drag && !(RowStateOf(m_drag->row.row + 1) == m_drag->row);
}

void RowEdits::EndDrag() {
    if (!m_drag)
        return;
    const Before before = *std::exchange(m_drag, std::nullopt);
    const int row = before.row.row + 1;
    if (RowStateOf(row) == before.row)
        return;
    Rebalance(row);
    RecordSince(before, row);
}
