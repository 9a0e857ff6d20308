// SPDX-License-Identifier: GPL-3.0-or-later
#include "grid/PasteStore.h"

#include "base/Message.h"
#include "grid/TimeEntries.h"
#include "profiles/EntryRules.h"
#include "profiles/ProfileSession.h"

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kLabel = ProfileTable::kLabelColumn;
constexpr int kValue = ProfileTable::kValueColumn;
constexpr int kName = ProfileTable::kNameColumn;

struct Refused {
    int count = 0;
    int row = 0;     // of the first one
    int column = 0;  // ...
    QString text;    // ...
};

class Paste {
public:
    Paste(ProfileSession& session, const QList<QStringList>& cells, int row, PasteSource source)
        : m_session(session), m_cells(cells), m_first_row(row), m_source(source) {}

    // Stores the `from`-th texts of the lines in `column`.
    void Store(qsizetype from, int column) {
        if (column == kLabel)
            StoreTimes(from);
        else
            StorePlain(from, column);
    }

    void Report() const {
        if (m_refused.count == 0)
            return;
        if (m_refused.column == kName)
            ShowWrongEntry();
        else
            CheckNumber(m_refused.text, EntrySource::Pasted);
        if (m_refused.count > 1) {
            ShowMessage(u"%1 cellules n'ont pas été collées,\nla première à la ligne %2."_s
                            .arg(m_refused.count)
                            .arg(m_refused.row),
                        MessageIcon::Information);
        }
    }

private:
    // The text to store for a line; nothing when the line has none or it is refused.
    std::optional<QString> TextOf(qsizetype line, qsizetype from, int column) {
        if (from >= m_cells[line].size())
            return std::nullopt;
        const QString& pasted = m_cells[line][from];
        std::optional<QString> text;
        if (column != kName)
            text = NumberEntry(pasted);
        else if ((m_source == PasteSource::OwnCopy && pasted.isEmpty()) ||
                 m_session.dailyProfiles().contains(pasted))
            text = pasted;
        if (!text && m_refused.count++ == 0)
            m_refused = {1, m_first_row + static_cast<int>(line), column, pasted};
        return text;
    }

    void StorePlain(qsizetype from, int column) {
        const ProfileTable& table = m_session.table();
        QStringList texts;
        QList<HistoryStep> steps;
        bool accepted = false;
        texts.reserve(m_cells.size());
        for (qsizetype line = 0; line < m_cells.size(); ++line) {
            const int row = m_first_row + static_cast<int>(line);
            const QString before = table.CellText(row, column);
            const std::optional<QString> text = TextOf(line, from, column);
            accepted = accepted || text.has_value();
            texts.append(text.value_or(before));
            if (texts.last() == before)
                continue;
            RowState state = {row - 1, table.CellText(row, kLabel), table.CellText(row, kValue),
                              table.CellText(row, kName)};
            HistoryStep step = {state, state};
            (column == kName ? step.after.name : step.after.value) = texts.last();
            steps.append(step);
            if (steps.size() > EditHistory::kMaxSteps)
                steps.removeFirst();
        }
        if (accepted)
            m_session.EnterSeries(m_first_row, {{column, texts}}, steps);
    }

    void StoreTimes(qsizetype from) {
        const ProfileTable& table = m_session.table();
        TimeEntries entries(table.Column(kLabel), table.Column(kValue));
        bool accepted = false;
        for (qsizetype line = 0; line < m_cells.size(); ++line) {
            if (const std::optional<QString> text = TextOf(line, from, kLabel)) {
                accepted = true;
                entries.Enter(m_first_row - 1 + static_cast<int>(line), *text);
            }
        }
        if (!accepted)
            return;
        auto [times, values] = entries.Columns();
        m_session.EnterSeries(1, {{kLabel, std::move(times)}, {kValue, std::move(values)}},
                              entries.Steps());
    }

    ProfileSession& m_session;
    const QList<QStringList>& m_cells;
    int m_first_row;
    PasteSource m_source;
    Refused m_refused;
};

}  // namespace

void StorePaste(ProfileSession& session, const QList<QStringList>& cells, int first_row,
                int first_column, PasteSource source) {
    Paste paste(session, cells, first_row, source);
    for (int column = session.table().ColumnCount(); column >= first_column; --column)
        paste.Store(column - first_column, column);
    paste.Report();
}
