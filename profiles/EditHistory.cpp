// SPDX-License-Identifier: GPL-3.0-or-later
#include "profiles/EditHistory.h"

#include "base/EnglishAtof.h"

#include <algorithm>

namespace {

constexpr qsizetype kMaxSnapshots = EditHistory::kTableRows;

// Rows of the table that hold one bank of steps.
constexpr size_t kBankRows = 3;

qsizetype BytesOf(const TableTexts& texts) {
    qsizetype bytes = 0;
    for (const QStringList& column : texts) {
        for (const QString& text : column)
            bytes += text.size() * static_cast<qsizetype>(sizeof(QChar));
    }
    return bytes;
}

}  // namespace

EditHistory::EditHistory(ProfileKind kind) : m_kind(kind) {
}

void EditHistory::Reset() {
    m_store = {};
}

bool EditHistory::CanUndo() const {
    return m_store.position >= 0;
}

bool EditHistory::CanRedo() const {
    return m_store.position < m_store.limit;
}

// Drops the undone records, then the oldest one when there are too many.
template <typename Record>
void EditHistory::Push(QList<Record>& records, const Record& record, qsizetype most) {
    records.resize(m_store.position + 1);
    if (records.size() == most)
        records.removeFirst();
    records.append(record);
    m_store.position = m_store.limit = static_cast<int>(records.size()) - 1;
}

void EditHistory::PushSnapshot(const QStringList& column) {
    if (!Describe(m_kind).coefficients)
        return;
    Push(m_store.snapshots, column, kMaxSnapshots);
    m_store.shown.clear();
}

std::optional<QStringList> EditHistory::UndoSnapshot(const QStringList& shown) {
    if (!Describe(m_kind).coefficients || !CanUndo())
        return std::nullopt;
    if (!CanRedo())
        m_store.shown = shown;
    return m_store.snapshots[m_store.position--];
}

std::optional<QStringList> EditHistory::RedoSnapshot() {
    if (!Describe(m_kind).coefficients || !CanRedo())
        return std::nullopt;
    ++m_store.position;
    return CanRedo() ? m_store.snapshots[m_store.position + 1] : m_store.shown;
}

void EditHistory::PushStep(const HistoryStep& step) {
    if (Describe(m_kind).coefficients || (step.before == step.after && !step.table))
        return;
    if (step.table && BytesOf(step.table->before) + BytesOf(step.table->after) > kMaxTableBytes)
        Reset();
    Push(m_store.steps, step, kMaxSteps);
}

std::optional<HistoryStep> EditHistory::UndoStep() {
    if (Describe(m_kind).coefficients || !CanUndo())
        return std::nullopt;
    return m_store.steps[m_store.position--];
}

std::optional<HistoryStep> EditHistory::RedoStep() {
    if (Describe(m_kind).coefficients || !CanRedo())
        return std::nullopt;
    return m_store.steps[++m_store.position];
}

EditHistory::FloatTable EditHistory::Table(const QStringList& daily_profiles) const {
    FloatTable table;
    for (auto& row : table)
        row.fill(kEmptySlot);
    for (qsizetype i = 0; i < m_store.snapshots.size(); ++i) {
        const QStringList& column = m_store.snapshots[i];
        const qsizetype slots_used = std::min<qsizetype>(column.size(), kTableSlots);
        for (qsizetype slot = 0; slot < slots_used; ++slot)
            table[static_cast<size_t>(i)][static_cast<size_t>(slot)] = EnglishAtof(column[slot]);
    }
    const auto put = [&](size_t bank, size_t slot, const RowState& state) {
        table[bank][slot] = static_cast<float>(state.row);
        table[bank + 1][slot] = Describe(m_kind).hasNames()
                                    ? static_cast<float>(daily_profiles.indexOf(state.name))
                                    : EnglishAtof(state.label);
        table[bank + 2][slot] = EnglishAtof(state.value);
    };
    for (qsizetype i = 0; i < m_store.steps.size(); ++i) {
        if (m_store.steps[i].table)
            continue;
        put(0, static_cast<size_t>(i), m_store.steps[i].before);
        put(kBankRows, static_cast<size_t>(i), m_store.steps[i].after);
    }
    return table;
}
